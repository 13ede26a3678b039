-- Computer players: the holder chases the nearest opponent; the others run from the holder, keep
-- off the walls and go for power-ups when the potato is far. Returns a wish, not a velocity: a
-- direction on the floor (x, z) of length at most 1.
local Bots = {}

local kArenaHalf = 9

local function Length(x, z) return math.sqrt(x * x + z * z) end

local function Normalised(x, z)
  local l = Length(x, z)
  if l < 1e-6 then return 0, 0 end
  return x / l, z / l
end

-- me and others are {x, z, alive, side}; holder is one of them or nil; pickups is a list of {x, z}.
function Bots.Steer(me, others, holder, pickups, wobble)
  if holder == me then
    local best, bestDistance = nil, math.huge
    for _, other in ipairs(others) do
      local d = Length(other.x - me.x, other.z - me.z)
      if other ~= me and other.alive and other.side ~= me.side and d < bestDistance then
        best, bestDistance = other, d
      end
    end
    if best == nil then return 0, 0 end
    return Normalised(best.x - me.x, best.z - me.z)
  end
  local x, z = 0, 0
  if holder then
    local awayX, awayZ = me.x - holder.x, me.z - holder.z
    local d = math.max(Length(awayX, awayZ), 0.1)
    local nx, nz = Normalised(awayX, awayZ)
    -- Flee harder when close, and sideways so that a corner is not a trap.
    local urgency = math.min(6 / d, 3)
    x, z = nx * urgency - nz * wobble, nz * urgency + nx * wobble
  end
  for _, p in ipairs(pickups) do
    local px, pz = Normalised(p.x - me.x, p.z - me.z)
    x, z = x + px * 0.8, z + pz * 0.8
  end
  -- Walls push back from two metres before them.
  if me.x > kArenaHalf - 2 then x = x - 2 elseif me.x < -kArenaHalf + 2 then x = x + 2 end
  if me.z > kArenaHalf - 2 then z = z - 2 elseif me.z < -kArenaHalf + 2 then z = z + 2 end
  -- Far from danger a bot strolls; it runs flat out only when the holder is close.
  local pace = math.min(Length(x, z) / 2, 1)
  x, z = Normalised(x, z)
  return x * pace, z * pace
end

return Bots
