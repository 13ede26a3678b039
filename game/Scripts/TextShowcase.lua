-- Text showcase: loads the scene shaders, counts the seconds in the HUD timer and lets the
-- "Pulse" line breathe through "SetObjectAlpha", as a game's scripts would change text and fades.

local frames = 0
local timerPath = "Levels.TextShowcase.GameObjects.Timer.SpriteHUD.Message"

function Start(me)
  Send("LoadShaders")
end

function Update()
  frames = frames + 1
  if frames % 60 == 0 then
    local seconds = math.floor(frames / 60)
    SetData(timerPath, string.format("%d:%02d", math.floor(seconds / 60), seconds % 60))
  end
  Send("SetObjectAlpha", "Pulse", 0.55 + 0.45 * math.sin(frames / 20))
end

function End() end
