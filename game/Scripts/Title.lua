-- Title screen: Return, Space, Start or A begins a match in the Arena; the orb turns slowly.
-- Attached to the LevelTitleScreen level's "TitleOrb" object.

local angle = 0

function OnKey(key)
  if key == "Return" or key == "Space" then SetData("NextLevel", "Arena") end
end

function OnButton(button, pad)
  if button == "Start" or button == "A" then
    SetData("GlobalVariables.ActivePlayer" .. pad, 1)
    SetData("NextLevel", "Arena")
  end
end

function Start(me)
  -- Only the first request loads the scene shaders; it matters when the game starts on this level.
  Send("LoadShaders")
  Listen("SCR:KeyboardTriggered", "OnKey")
  Listen("SCR:ControllerButtonTriggered", "OnButton")
end

function Update()
  angle = angle + 0.02
  if angle > math.pi then angle = angle - 2 * math.pi end
  Send("SCR:RotateObjectAboutY", "TitleOrb", angle)
end

function End() end
