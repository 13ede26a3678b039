-- The results screen: who won the match and every player's round wins; back to the lobby after a
-- few seconds or on any confirm. In autoplay the one unattended match is over: the game quits.
-- Attached to the Results level's "MenuController".
local Globals = require("Game.Globals")
local Controls = require("Game.Controls")
local Hud = require("Game.Hud")
local Match = require("Game.Match")

local waited = 0
local leaving = false

local function Leave()
  if leaving then return end
  leaving = true
  if Globals.AutoPlay() then Send("ExitGameMSG") else Globals.GoTo("Lobby") end
end

local function OnEvent(event)
  if event == "confirm" or event == "start" or event == "click" then Leave() end
end

function OnCheat(cheat)
  if cheat == "MainMenu" then Send("ExitToMainMenuMSG") else Leave() end
end

function Start(me)
  -- Only the first request loads the scene shaders; it matters when the game starts here.
  Send("LoadShaders")
  Controls.Install(OnEvent)
  Listen("SCR:Cheat", "OnCheat")
  Globals.PlaySong("TitleTheme")
  Send("PlayVO", "Winner")
  Hud.Text("Title", Globals.Get("MatchWinner", "Nobody") .. " wins the match!")
  local winner = Match.Winner()
  for slot = 0, Match.kSlots - 1 do
    local wins = Match.Wins(slot)
    Hud.Text("Score" .. slot, "Player " .. (slot + 1) .. ": " .. wins .. (wins == 1 and " round" or " rounds"))
    local lift = (Match.Side(slot) == winner) and 1.2 or 0
    Match.Dress(slot, "Player" .. slot)
    SetData("*CurrentLevel.GameObjects.Player" .. slot .. ".Transform.PositionY", -2 + lift)
  end
end

function Update()
  waited = waited + (FindData("DT") or 0)
  if waited > (Globals.AutoPlay() and 0.5 or 6) then Leave() end
  Controls.EndFrame()
end

function End() end
