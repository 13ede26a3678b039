-- The arena camera: looks down the arena's +z axis from behind and above the middle of the living
-- players, further back the further apart they are, and eases towards that place each frame.
-- Also turns a screen-relative stick into a floor direction for the camera it keeps.
local CameraRig = {}

local kPath = "*CurrentLevel.GameObjects.MainCamera.Camera."
local eye = nil

function CameraRig.Frame(points, dt)
  if #points == 0 then return end
  local cx, cz, spread = 0, 0, 0
  for _, p in ipairs(points) do cx, cz = cx + p.x, cz + p.z end
  cx, cz = cx / #points, cz / #points
  for _, p in ipairs(points) do
    spread = math.max(spread, math.abs(p.x - cx), math.abs(p.z - cz))
  end
  local height, back = 8 + spread * 1.1, 6 + spread * 0.9
  local target = {cx, height, cz - back}
  eye = eye or target
  local ease = math.min(1, dt * 3)
  for i = 1, 3 do eye[i] = eye[i] + (target[i] - eye[i]) * ease end
  SetData(kPath .. "PositionX", eye[1])
  SetData(kPath .. "PositionY", eye[2])
  SetData(kPath .. "PositionZ", eye[3])
  SetData(kPath .. "viewX", cx - eye[1])
  SetData(kPath .. "viewY", -eye[2])
  SetData(kPath .. "viewZ", cz - eye[3])
end

-- Screen right and screen up as floor directions, from where the camera looks.
function CameraRig.ToFloor(screenX, screenY)
  local fx = FindData(kPath .. "viewX") or 0
  local fz = FindData(kPath .. "viewZ") or 1
  local l = math.sqrt(fx * fx + fz * fz)
  if l < 1e-6 then fx, fz, l = 0, 1, 1 end
  fx, fz = fx / l, fz / l
  -- Looking along +z in a right-handed world, the screen's right is -x.
  local rx, rz = -fz, fx
  return screenX * rx + screenY * fx, screenX * rz + screenY * fz
end

return CameraRig
