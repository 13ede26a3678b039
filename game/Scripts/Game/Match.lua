-- The match between rounds: who plays (slots 0..3, each a human device or the computer), the mode
-- (free for all or two teams), round wins, and how often each slot held the potato. All of it
-- lives in GlobalVariables so that it survives the level changes between rounds.
local Globals = require("Game.Globals")

local Match = {}

Match.kSlots = 4
Match.kWinsNeeded = 3
Match.kCharacters = {"Red", "Blue", "Green", "Yellow"}

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
