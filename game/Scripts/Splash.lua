-- The splash screen: the game's name for 180 frames (three seconds at full speed; ten frames in
-- autoplay), or until any key, button or click; then the main menu. Being the first level, it also asks for the scene shaders.
-- Attached to the SplashScreens level's "Logo".
local Globals = require("Game.Globals")

local shown = 0
local frames = 0
local left = false

local function Leave()
  if left then return end
  left = true
  Globals.GoTo("LevelTitleScreen")
end

function OnAny() Leave() end

function OnCheat(cheat)
  if cheat == "StartEarly" or cheat == "NextLevel" then Leave() end
end

function Start(me)
  Send("LoadShaders")
  Globals.Set("MusicVolume", Globals.Get("MusicVolume", 0.8))
  Globals.Set("SoundVolume", Globals.Get("SoundVolume", 1))
  Listen("SCR:KeyboardTriggered", "OnAny")
  Listen("SCR:ControllerButtonTriggered", "OnAny")
  Listen("SCR:MouseButtonTriggered", "OnAny")
  Listen("SCR:Cheat", "OnCheat")
end

function Update()
  frames = frames + 1
  shown = shown + (FindData("DT") or 0)
  SetData("*CurrentObject.Transform.PositionY", -0.3 + 0.2 * math.sin(shown * 4))
  if frames >= (Globals.AutoPlay() and 10 or 180) then Leave() end
end

function End() end
