-- The main menu (Assets/GameObjects/MainMenu.xml): play, options (music and sound volume, full
-- screen), quit; keyboard, mouse and every pad move through it. In autoplay it chooses Play by
-- itself. Attached to the LevelTitleScreen level's "MenuController".
local Globals = require("Game.Globals")
local Controls = require("Game.Controls")
local Menu = require("Game.Menu")
local MenuFile = require("Game.MenuFile")
local Hud = require("Game.Hud")
local Match = require("Game.Match")

local menus = nil
local menu = nil
local waited = 0
local leaving = false

local function Percent(name) return math.floor(Globals.Get(name, 1) * 100 + 0.5) .. "%" end

local function Label(item)
  if item.Action == "MusicVolume" then return item.Label .. ": " .. Percent("MusicVolume") end
  if item.Action == "SoundVolume" then return item.Label .. ": " .. Percent("SoundVolume") end
  return item.Label
end

local Open

-- Volumes step by a tenth; left or right on the line, or choosing it, which wraps round.
local function StepVolume(name, step)
  local value = Globals.Get(name, 1) + (step or 0.1)
  if value > 1.001 then value = step and 1 or 0 end
  if value < 0 then value = 0 end
  Globals.Set(name, math.floor(value * 10 + 0.5) / 10)
  if name == "MusicVolume" then Globals.RestartSong("MenuTheme") end
end

local function Choose(action, _, step)
  if action == "Play" and not step and not leaving then
    leaving = true
    for slot = 0, Match.kSlots - 1 do Match.SetDevice(slot, nil) end
    Globals.GoTo("Lobby")
  elseif action == "Options" and not step then Open("OptionsMenu")
  elseif action == "Quit" and not step then Send("ExitGameMSG")
  elseif action == "MusicVolume" then StepVolume("MusicVolume", step and step * 0.1)
  elseif action == "SoundVolume" then StepVolume("SoundVolume", step and step * 0.1)
  elseif action == "FullScreen" and not step then Send("FullScreenMSG")
  elseif action == "Back" and not step then Open("MainMenu") end
end

Open = function(name)
  menu = Menu.New("MenuItem", menus[name], Choose, Label)
  menu.name = name
  Hud.Text("Title", name == "MainMenu" and "Potato Panic" or "Options")
  menu:Draw()
end

local function OnEvent(event, device, value)
  if event == "back" and menu.name == "OptionsMenu" then Open("MainMenu"); return end
  if event == "start" then event = "confirm" end
  menu:Handle(event, device, value)
end

function OnCheat(cheat)
  if cheat == "StartEarly" or cheat == "NextLevel" then Choose("Play")
  elseif cheat == "PreviousLevel" then Globals.GoTo("SplashScreens") end
end

function Start(me)
  Send("LoadShaders")
  Globals.Set("DrawSceneOverMenu", 0)
  Globals.PlaySong("MenuTheme")
  menus = MenuFile.Read("Assets/GameObjects/MainMenu.xml")
  Controls.Install(OnEvent)
  Listen("SCR:Cheat", "OnCheat")
  Open("MainMenu")
end

function Update()
  waited = waited + (FindData("DT") or 0)
  if Globals.AutoPlay() and waited > 0.5 then Choose("Play") end
  SetData("*CurrentLevel.GameObjects.TitlePotato.Transform.PositionY", 2.65 + 0.15 * math.sin(waited * 3))
  menu:Draw()
  Controls.EndFrame()
end

function End() end
