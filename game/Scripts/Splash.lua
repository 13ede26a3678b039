-- Splash screens: show the logo for about three seconds (or until a key or button), then the title.
-- Attach to the SplashScreens level's "Logo" object: <Database name="Script"><string name="FileName">Splash.lua</string></Database>

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
