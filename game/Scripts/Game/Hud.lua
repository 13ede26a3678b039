-- The HUD texts and icons of a level: writes a text only when it changed, so a still HUD sends
-- nothing. Objects are the level's SpriteHUD objects by name; missing ones are skipped.
local Hud = {}

local shown = {}
local alphas = {}

local function Path(name) return "*CurrentLevel.GameObjects." .. name .. ".SpriteHUD." end

function Hud.Text(name, text)
  if shown[name] == text then return end
  shown[name] = text
  SetData(Path(name) .. "Message", text)
end

function Hud.Image(name, file)
  if file == nil then
    Hud.Alpha(name, 0)
    return
  end
  if shown[name] ~= file then
    shown[name] = file
    SetData(Path(name) .. "ImageFileName", file)
  end
  Hud.Alpha(name, 1)
end

function Hud.Alpha(name, alpha)
  if alphas[name] == alpha then return end
  alphas[name] = alpha
  Send("SetObjectAlpha", name, alpha)
end

function Hud.Colour(name, r, g, b) Send("SetHUDObjectColor", name, r, g, b) end

-- Each level starts with its own objects; what was written for the last one no longer holds.
function Hud.Forget() shown, alphas = {}, {} end

return Hud
