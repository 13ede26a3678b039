-- The Arena's rules: a 90-second round reported on the console, Escape pauses, the debug keys'
-- cheats, and a crate that falls off the world is replaced by a fresh one from its archetype.
-- Attached to the Arena level's "MainCamera" object.

local roundSeconds = 90
local lastShown = -1
local over = false
local fallen = {}
local spares = 0

function OnKey(key)
  if key == "Escape" then Send("TogglePauseMsg") end
end

function OnCheat(cheat)
  if cheat == "EndRound" then Send("SCR:SetCountdown", 0, 0)
  elseif cheat == "NextLevel" or cheat == "StartEarly" then SetData("NextLevel", "Arena")
  elseif cheat == "PreviousLevel" then SetData("NextLevel", "LevelTitleScreen")
  elseif cheat == "MainMenu" then Send("ExitToMainMenuMSG") end
end

function Start(me)
  -- Only the first request loads the scene shaders; it matters when the game starts on this level.
  Send("LoadShaders")
  -- Countdown 0 carries the round; the AI system counts it down each frame while not paused.
  Send("SCR:SetCountdown", 0, roundSeconds)
  SetData("GlobalVariables.MatchTimeRemaining", roundSeconds)
  Listen("SCR:KeyboardTriggered", "OnKey")
  Listen("SCR:Cheat", "OnCheat")
end

local function CheckCrate(crate)
  if fallen[crate] then return end
  local y = FindData("*CurrentLevel.GameObjects." .. crate .. ".Transform.PositionY")
  if y ~= nil and y < -20 then
    fallen[crate] = true
    Send("SCR:DestroyObject", crate)
    spares = spares + 1
    Send("SCR:CreateObject", "Crate", "SpareCrate" .. spares)
  end
end

function Update()
  local left = math.max(FindData("GlobalVariables.Countdown0") or 0, 0)
  SetData("GlobalVariables.MatchTimeRemaining", left)
  local shown = math.ceil(left / 10) * 10
  if shown ~= lastShown then
    lastShown = shown
    Send("ConsolePrint", "Round: about " .. shown .. " s left")
  end
  if left <= 0 and not over then
    over = true
    Send("ConsolePrint", "Round over")
    Send("ExitToMainMenuMSG")
  end
  for i = 0, 2 do CheckCrate("Crate" .. i) end
  for i = 1, spares do CheckCrate("SpareCrate" .. i) end
end

function End() end
