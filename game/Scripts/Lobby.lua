-- The lobby. First players join: Space joins the WASD keyboard set, Right Shift the arrow keys, Start
-- any pad; left and right then pick a character, up and down a team, and pressing again marks the
-- player ready (a pad's B leaves). When everyone who joined is ready (or on Return or a click) the
-- setup page picks the mode and the world and starts the match. Empty slots play by computer. In
-- autoplay the lobby starts a free-for-all at once. Attached to the Lobby level's "MenuController".
local Globals = require("Game.Globals")
local Controls = require("Game.Controls")
local Menu = require("Game.Menu")
local Hud = require("Game.Hud")
local Match = require("Game.Match")

local kWorlds = {{level = "Arena", name = "Garden"}, {level = "ArenaStorm", name = "Storm"}}

local ready = {}
local setup = nil
local waited = 0
local started = false

local function SlotOf(device)
  for slot = 0, Match.kSlots - 1 do
    if Globals.Get("PlayerInput" .. slot, "") == device then return slot end
  end
  return nil
end

local function FreeSlot()
  for slot = 0, Match.kSlots - 1 do
    if Globals.Get("PlayerInput" .. slot, "") == "" then return slot end
  end
  return nil
end

local function StartMatch()
  if started then return end
  started = true
  Match.Reset()
  local world = kWorlds[Globals.Get("SelectedWorld", 0) + 1]
  Globals.Set("WorldType", world.level)
  Globals.GoTo(world.level)
end

local function SetupLabel(item)
  if item.Action == "Mode" then
    return "Mode: " .. (Match.Teams() and "Teams" or "Free for all")
  elseif item.Action == "World" then
    return "World: " .. kWorlds[Globals.Get("SelectedWorld", 0) + 1].name
  end
  return item.Label
end

local function ChooseSetup(action, _, step)
  if action == "Mode" then Globals.Set("GameMode", 1 - Globals.Get("GameMode", 0))
  elseif action == "World" then Globals.Set("SelectedWorld", 1 - Globals.Get("SelectedWorld", 0))
  elseif action == "Start" and not step then StartMatch()
  elseif action == "Back" and not step then setup = nil end
end

local function OpenSetup()
  setup = Menu.New("MenuItem", {{Label = "Mode", Action = "Mode"}, {Label = "World", Action = "World"},
                                {Label = "Start match", Action = "Start"}, {Label = "Back", Action = "Back"}},
                   ChooseSetup, SetupLabel)
end

local function AllReady()
  local joined = 0
  for slot = 0, Match.kSlots - 1 do
    if Match.Device(slot) then
      joined = joined + 1
      if not ready[slot] then return false end
    end
  end
  return joined > 0
end

local function OnJoinEvent(event, device)
  if event == "back" and device == "Keyboard" then Send("ExitToMainMenuMSG"); return end
  if (event == "confirm" and device == "Keyboard") or event == "click" then OpenSetup(); return end
  local slot = SlotOf(device)
  if slot == nil then
    local free = FreeSlot()
    if free and (event == "confirm" or event == "start") and device ~= "Mouse" then
      Match.SetDevice(free, device)
      ready[free] = false
      Globals.PlaySound("MenuSelect")
    end
    return
  end
  if event == "left" or event == "right" then
    local model = (Globals.Get("PlayerModel" .. slot, slot) + (event == "left" and -1 or 1)) % 4
    Globals.Set("PlayerModel" .. slot, model)
  elseif event == "up" or event == "down" then
    Globals.Set("PlayerTeam" .. slot, 1 - Match.Team(slot))
  elseif event == "confirm" or event == "start" then
    ready[slot] = not ready[slot]
    if AllReady() then OpenSetup() end
  elseif event == "back" then
    Match.SetDevice(slot, nil)
  end
  Globals.PlaySound("MenuMove")
end

local function OnEvent(event, device, value)
  if setup then
    if event == "back" then setup = nil; return end
    if event == "start" then event = "confirm" end
    setup:Handle(event, device, value)
  else
    OnJoinEvent(event, device)
  end
end

function OnCheat(cheat)
  if cheat == "StartEarly" or cheat == "NextLevel" then StartMatch()
  elseif cheat == "PreviousLevel" or cheat == "MainMenu" then Send("ExitToMainMenuMSG") end
end

-- Two short lines, so that four slots side by side do not run into each other.
local function SlotText(slot)
  local text = "P" .. (slot + 1) .. " " .. Match.Character(slot).name
  if Match.Teams() or setup == nil then text = text .. " T" .. (Match.Team(slot) + 1) end
  local device = Match.Device(slot)
  if device == nil then return text .. "\n(computer)" end
  return text .. "\n" .. device .. (ready[slot] and " ready" or "")
end

local function Draw()
  for slot = 0, Match.kSlots - 1 do
    Hud.Text("Slot" .. slot, SlotText(slot))
    Match.Dress(slot, "Player" .. slot, Match.Device(slot) and 1 or 0.45)
  end
  if setup then
    Hud.Text("Help", "Choose the mode and the world")
    setup:Draw()
  else
    Hud.Text("Help", "Join: Space, Right Shift or Start. Ready: press again. Return: play")
    for i = 0, 3 do Hud.Text("MenuItem" .. i, "") end
  end
end

function Start(me)
  -- Only the first request loads the scene shaders; it matters when the game starts here.
  Send("LoadShaders")
  Globals.Set("DrawSceneOverMenu", 0)
  for slot = 0, Match.kSlots - 1 do
    Globals.Set("PlayerModel" .. slot, Globals.Get("PlayerModel" .. slot, slot))
    Globals.Set("PlayerTeam" .. slot, Match.Team(slot))
  end
  Globals.PlaySong("MenuTheme")
  Controls.Install(OnEvent)
  Listen("SCR:Cheat", "OnCheat")
end

function Update()
  waited = waited + (FindData("DT") or 0)
  if Globals.AutoPlay() and waited > 0.5 then
    Globals.Set("GameMode", 0)
    Globals.Set("SelectedWorld", math.random(0, 1))
    StartMatch()
  end
  Draw()
  Controls.EndFrame()
end

function End() end
