-- A vertical menu drawn with the level's HUD text objects <prefix>0, <prefix>1, ... (and, where the
-- level has them, 3D bars <prefix>Bar0, ... lit behind the chosen line). Keyboard, mouse and pads
-- move the cursor through Controls' events; the cursor is GlobalVariables.MenuAdUPosition.
local Globals = require("Game.Globals")

local Menu = {}
Menu.__index = Menu

local kTop, kSpacing = 0.42, 0.085
local kIdle = {0.75, 0.75, 0.8}
local kChosen = {1.0, 0.8, 0.1}
local kBar = {0.15, 0.15, 0.2}
local kBackdrop = {0.12, 0.1, 0.16}

-- items: list of {Label = text, Action = name}; labeller(item) may give a label that changes; top
-- is the first line's height on the screen (0 top, 1 bottom; 0.42 when not given).
function Menu.New(prefix, items, onChoose, labeller, top)
  local self = setmetatable({prefix = prefix, items = items, onChoose = onChoose,
                             labeller = labeller, cursor = 1, visible = true, top = top or kTop}, Menu)
  Globals.Set("MenuAdUPosition", 0)
  return self
end

function Menu:Select(index)
  local count = #self.items
  self.cursor = (index - 1) % count + 1
  Globals.Set("MenuAdUPosition", self.cursor - 1)
  Globals.PlaySound("MenuMove")
  self:Draw()
end

function Menu:Choose()
  Globals.PlaySound("MenuSelect")
  self.onChoose(self.items[self.cursor].Action, self)
end

-- The events of Controls.Install's handler; returns true when the menu used it.
function Menu:Handle(event, device, value)
  if not self.visible then return false end
  if event == "up" then self:Select(self.cursor - 1)
  elseif event == "down" then self:Select(self.cursor + 1)
  elseif event == "confirm" or event == "click" then self:Choose()
  elseif event == "left" or event == "right" then
    self.onChoose(self.items[self.cursor].Action, self, event == "left" and -1 or 1)
    self:Draw()
  elseif event == "point" then
    local line = math.floor((value - self.top) / kSpacing + 0.5) + 1
    if line >= 1 and line <= #self.items and line ~= self.cursor then self:Select(line) end
  else return false end
  return true
end

function Menu:Label(item)
  return self.labeller and self.labeller(item) or item.Label
end

function Menu:Draw()
  for i = 1, 8 do
    local name = self.prefix .. (i - 1)
    local item = self.items[i]
    local shown = self.visible and item ~= nil
    if FindData("*CurrentLevel.GameObjects." .. name .. ".*Name") then
      SetData("*CurrentLevel.GameObjects." .. name .. ".SpriteHUD.Message", shown and self:Label(item) or "")
      SetData("*CurrentLevel.GameObjects." .. name .. ".SpriteHUD.ScreenPositionY", self.top + (i - 1) * kSpacing)
      local colour = (i == self.cursor) and kChosen or kIdle
      Send("SetHUDObjectColor", name, colour[1], colour[2], colour[3])
      Send("SetObjectAlpha", name, shown and 1 or 0)
    end
    local bar = self.prefix .. "Bar" .. (i - 1)
    if FindData("*CurrentLevel.GameObjects." .. bar .. ".*Name") then
      -- Bars without a line take the backdrop's colour and vanish.
      local colour = not shown and kBackdrop or (i == self.cursor and kChosen or kBar)
      Send("SCR:SetObjectColor", bar, colour[1], colour[2], colour[3])
    end
  end
end

function Menu:SetVisible(visible)
  self.visible = visible
  self:Draw()
end

return Menu
