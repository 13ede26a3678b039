-- The Arena's ball: arrow keys or the left stick roll it, Space or A makes it jump, and it glows red
-- while it is in the air. Attached to the Arena level's "Ball" object.

local me = "Ball"
local speed = 6
local moveX, moveZ = 0, 0
local airborne = false

function OnKeyHeld(key)
  if key == "Left" then moveX = -speed
  elseif key == "Right" then moveX = speed
  elseif key == "Up" then moveZ = speed
  elseif key == "Down" then moveZ = -speed end
end

function OnKeyTriggered(key)
  if key == "Space" then Jump() end
end

function OnLeftStick(pad, x, y)
  moveX, moveZ = x * speed, y * speed
end

function OnButton(button, pad)
  if button == "A" then Jump() end
end

function Jump()
  if airborne then return end
  -- Served as an impulse; the physics system replaces the velocity with it.
  Send("SCR:SetRelativeVelocityOnBody", me, moveX, 9, moveZ)
end

function Start(name)
  me = name or FindData("*CurrentObject.*Name")
  Listen("SCR:KeyboardPressed", "OnKeyHeld")
  Listen("SCR:KeyboardTriggered", "OnKeyTriggered")
  Listen("SCR:ControllerLeftStick", "OnLeftStick")
  Listen("SCR:ControllerButtonTriggered", "OnButton")
end

function Update()
  local y = FindData("*CurrentObject.Transform.PositionY") or 0
  -- Anything more than a ball's height above the floor counts as a jump in progress.
  local nowAirborne = RayCast(FindData("*CurrentObject.Transform.PositionX") or 0, y,
                              FindData("*CurrentObject.Transform.PositionZ") or 0, 0, -1, 0) > 0.75
  if nowAirborne ~= airborne then
    airborne = nowAirborne
    if airborne then Send("SCR:SetObjectColor", me, 1, 0.3, 0.2)
    else Send("SCR:SetObjectColor", me, 0.9, 0.9, 0.9) end
  end
  if moveX ~= 0 or moveZ ~= 0 then Send("SCR:SetVelocityXZOnBody", me, moveX, moveZ) end
  moveX, moveZ = 0, 0
end

function End() end
