-- The match between rounds: who plays (slots 0..3, each a human device or the computer), the mode
-- (free for all or two teams), round wins, and how often each slot held the potato. All of it
-- lives in GlobalVariables so that it survives the level changes between rounds.
local Globals = require("Game.Globals")

local Match = {}

Match.kSlots = 4
Match.kWinsNeeded = 3
-- The characters a slot picks from (`PlayerModel*` is the index from 0): a skinned model and the
-- colour its suit is drawn in.
Match.kCharacters = {
  {name = "Runner", model = "Character", colour = {0.9, 0.2, 0.2}},
  {name = "Robot", model = "Robot", colour = {0.2, 0.45, 0.95}},
  {name = "Bunny", model = "Bunny", colour = {0.2, 0.8, 0.3}},
  {name = "Wizard", model = "Wizard", colour = {0.95, 0.8, 0.15}},
}

function Match.Character(slot)
  return Match.kCharacters[Globals.Get("PlayerModel" .. slot, slot) % #Match.kCharacters + 1]
end

-- Shows the object `name` as the slot's character, its colour scaled by `shade` (1 when left out).
function Match.Dress(slot, name, shade)
  local character = Match.Character(slot)
  local c, s = character.colour, shade or 1
  SetData("*CurrentLevel.GameObjects." .. name .. ".ModelSkinned.Name", character.model)
  Send("SCR:SetObjectColor", name, c[1] * s, c[2] * s, c[3] * s)
end

function Match.Teams() return Globals.Get("GameMode", 0) == 1 end

-- The device that controls a slot ("WASD", "Arrows", "Pad0".."Pad3"), or nil for the computer.
function Match.Device(slot)
  local device = Globals.Get("PlayerInput" .. slot, "")
  if device == "" or Globals.AutoPlay() then return nil end
  return device
end

function Match.SetDevice(slot, device)
  Globals.Set("PlayerInput" .. slot, device or "")
  Globals.Set("ActivePlayer" .. slot, device and 1 or 0)
end

function Match.Team(slot) return Globals.Get("PlayerTeam" .. slot, slot % 2) end

-- The side a slot plays for: its team in team mode, itself otherwise.
function Match.Side(slot)
  if Match.Teams() then return "Team" .. Match.Team(slot) end
  return "Player" .. slot
end

function Match.SideName(side)
  local team = string.match(side, "^Team(%d)$")
  if team then return "Team " .. (team + 1) end
  return "Player " .. (string.match(side, "^Player(%d)$") + 1)
end

function Match.Wins(slot) return Globals.Get("WinsPlayer" .. slot, 0) end

function Match.Reset()
  for slot = 0, Match.kSlots - 1 do
    Globals.Set("WinsPlayer" .. slot, 0)
    Globals.Set("PotatoHolds" .. slot, 0)
    Globals.Set("PlayerPowerUp" .. slot, 0)
  end
  Globals.Set("RoundNumber", 0)
end

-- Every slot of the winning side scores the round.
function Match.AwardRound(side)
  for slot = 0, Match.kSlots - 1 do
    if Match.Side(slot) == side then Globals.Set("WinsPlayer" .. slot, Match.Wins(slot) + 1) end
  end
end

-- The side that has won the match, or nil.
function Match.Winner()
  for slot = 0, Match.kSlots - 1 do
    if Match.Wins(slot) >= Match.kWinsNeeded then return Match.Side(slot) end
  end
  return nil
end

function Match.Holds(slot) return Globals.Get("PotatoHolds" .. slot, 0) end

function Match.CountHold(slot) Globals.Set("PotatoHolds" .. slot, Match.Holds(slot) + 1) end

return Match
