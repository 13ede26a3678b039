-- The pause menu of a round (items from Assets/GameObjects/PauseMenu.xml): Escape or a pad's Start
-- pauses; resume, back to the main menu or quit. While paused the scene is drawn small over the
-- menu. The round keeps its own clock and stops it while paused, whether or not the engine still
-- calls its "Update".
local Globals = require("Game.Globals")
local Menu = require("Game.Menu")
local MenuFile = require("Game.MenuFile")
local Hud = require("Game.Hud")

local PauseMenu = {}

local kTop = 0.55
local menu = nil
local paused = false

local function Show(visible)
  Hud.Text("PauseTitle", visible and "Paused" or "")
  Hud.Alpha("PausePanel", visible and 0.85 or 0)
  -- The round's banner would sit half under the paused arena.
  Hud.Alpha("HudBanner", visible and 0 or 1)
  menu:SetVisible(visible)
end

function PauseMenu.Create()
  local items = MenuFile.Read("Assets/GameObjects/PauseMenu.xml").PauseMenu
  -- Left of the paused arena, which is drawn over the middle and the bottom right.
  menu = Menu.New("PauseItem", items, function(action) PauseMenu.Do(action) end, nil, kTop)
  menu.visible = false
end

function PauseMenu.IsPaused() return paused end

function PauseMenu.Pause()
  if paused then return end
  paused = true
  Send("TogglePauseMsg")
  Globals.Set("DrawSceneOverMenu", 1)
  menu:Select(1)
  Show(true)
end

function PauseMenu.Resume()
  if not paused then return end
  paused = false
  Send("TogglePauseMsg")
  Globals.Set("DrawSceneOverMenu", 0)
  Show(false)
end

function PauseMenu.Do(action)
  if action == "Resume" then PauseMenu.Resume()
  elseif action == "MainMenu" then
    paused = false
    Globals.Set("DrawSceneOverMenu", 0)
    -- The engine unpauses on its way to the title level.
    Send("ExitToMainMenuMSG")
  elseif action == "Quit" then Send("ExitGameMSG") end
end

-- Controls' events while the round runs; returns true when the pause menu took the event.
function PauseMenu.Handle(event, device, value)
  if not paused then
    if event == "back" or event == "start" then PauseMenu.Pause(); return true end
    return false
  end
  if event == "back" or event == "start" then PauseMenu.Resume(); return true end
  return menu:Handle(event, device, value)
end

return PauseMenu
