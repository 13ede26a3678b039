-- The arena's three power-ups (phantom bodies named PowerUp*): each waits hidden under the floor,
-- appears at a free spot, and is taken by the first player whose body enters it. Speed and shield
-- last a few seconds (PlayerPowerUp<slot> 1 and 2 meanwhile); the short fuse (3) cuts the fuse.
local Globals = require("Game.Globals")

local PowerUps = {}

PowerUps.kNone, PowerUps.kSpeed, PowerUps.kShield, PowerUps.kFuse = 0, 1, 2, 3
PowerUps.kIcons = {"Speed.png", "Shield.png", "Fuse.png"}

local kKinds = {PowerUpSpeed = PowerUps.kSpeed, PowerUpShield = PowerUps.kShield,
                PowerUpFuse = PowerUps.kFuse}
local kLasts = {5, 5, 1.5}
local kHidden = -30

local items = {}

local function Place(item, x, z)
  item.x, item.z = x, z
  local path = "*CurrentLevel.GameObjects." .. item.name .. ".Transform."
  SetData(path .. "PositionX", x)
  SetData(path .. "PositionY", z and 0.6 or kHidden)
  SetData(path .. "PositionZ", z or 0)
end

function PowerUps.Create()
  items = {}
  for name, kind in pairs(kKinds) do table.insert(items, {name = name, kind = kind, x = 0, z = nil}) end
  -- Sorted before the waits are drawn: the table's own order changes from run to run, and a seeded
  -- run must draw the same wait for the same power-up.
  table.sort(items, function(a, b) return a.name < b.name end)
  for _, item in ipairs(items) do item.wait = 2 + math.random() * 4 end
end

-- Visible power-ups as {x, z} for the computer players.
function PowerUps.Visible()
  local list = {}
  for _, item in ipairs(items) do if item.z then table.insert(list, {x = item.x, z = item.z}) end end
  return list
end

function PowerUps.Update(dt)
  for _, item in ipairs(items) do
    if item.z == nil then
      item.wait = item.wait - dt
      if item.wait <= 0 then Place(item, math.random(-7, 7), math.random(-7, 7)) end
    end
  end
end

-- The power-up `name` was entered; returns its kind and how long it lasts, or nil.
function PowerUps.Take(name)
  for _, item in ipairs(items) do
    if item.name == name and item.z then
      Place(item, 0, nil)
      item.wait = 5 + math.random() * 3
      Globals.PlaySound("PowerUp")
      return item.kind, kLasts[item.kind]
    end
  end
  return nil
end

return PowerUps
