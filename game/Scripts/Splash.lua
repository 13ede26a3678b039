-- Splash screens: show the logo for about three seconds (or until a key or button), then the title.
-- Attached to the SplashScreens level's "Logo" object. Being the first level, it also asks for the
-- scene shader set, without which nothing of the scene is drawn.

local framesLeft = 180

local function Leave()
  if framesLeft > 0 then
    framesLeft = 0
    SetData("NextLevel", "LevelTitleScreen")
  end
end

function OnAnyKey(key) Leave() end
function OnAnyButton(button, pad) Leave() end

function Start(me)
  Send("LoadShaders")
  Listen("SCR:KeyboardTriggered", "OnAnyKey")
  Listen("SCR:ControllerButtonTriggered", "OnAnyButton")
  Listen("SCR:MouseButtonTriggered", "OnAnyKey")
end

function Update()
  if framesLeft > 0 then
    framesLeft = framesLeft - 1
    if framesLeft == 0 then SetData("NextLevel", "LevelTitleScreen") end
  end
end

function End() end
