-- The particle showcase: loads the scene shaders (no menu comes first to ask for them) and sets
-- the three one-shot explosions off again in turn, one every second, so that each can be seen
-- burst, burn out and end.
local frame = 0
local blasts = {"Blast", "SmallBlast", "MineBlast"}

function Start(me)
  Send("LoadShaders")
end

function Update()
  frame = frame + 1
  if frame % 60 == 0 then
    local next = blasts[(frame / 60) % #blasts + 1]
    Send("SCR:RestartParticles", next)
  end
end

function End() end
