-- One round in an arena: a short count-in, then the potato goes to the player who has carried it
-- least; touching another player passes it; when its fuse runs out the holder is knocked out (blast,
-- sound, rumble, "SCR:PotatoExploded") and the potato starts again with someone else. The last
-- player or team standing wins the round; the first side to three wins takes the match and the
-- results screen follows, otherwise the arena is loaded again for the next round.
-- Attached to each arena's "Referee".
local Globals = require("Game.Globals")
local Controls = require("Game.Controls")
local Match = require("Game.Match")
local Bots = require("Game.Bots")
local CameraRig = require("Game.CameraRig")
local Hud = require("Game.Hud")
local PauseMenu = require("Game.PauseMenu")
local PowerUps = require("Game.PowerUps")

-- The physics world advances a fixed step per frame, so the round's clock does too as far as it
-- can: a slow frame counts as at most a twentieth of a second.
local kLongestTick = 0.05
local kSpeed = 2.6
local kTouch = 1.35
local kFuseBoxes = 5

local players = {}
local holder = nil
local phase = "intro"
local now = 0
local fuseLength = 1
local fuseLeft = 0
local phaseLeft = 0
local passBlockedUntil = 0
local blastUntil = -1
local rumble = {}
local winnerSide = nil

local function Objects(name) return "*CurrentLevel.GameObjects." .. name end

local function Place(name, x, y, z)
  local path = Objects(name) .. ".Transform."
  SetData(path .. "PositionX", x)
  SetData(path .. "PositionY", y)
  SetData(path .. "PositionZ", z)
end

local function Living()
  local list = {}
  for _, p in ipairs(players) do if p.alive then table.insert(list, p) end end
  return list
end

local function LivingSides()
  local sides, count = {}, 0
  for _, p in ipairs(Living()) do
    if not sides[p.side] then sides[p.side] = true; count = count + 1 end
  end
  return sides, count
end

local function Fuse(autoplay)
  if autoplay then return 0.3 + math.random() * 0.2 end
  return 8 + math.random() * 6
end

local function GiveTo(p)
  holder = p
  Match.CountHold(p.slot)
  Globals.Log("Potato: " .. Match.SideName("Player" .. p.slot) .. " has the potato")
end

local function StartFuse(p)
  GiveTo(p)
  fuseLength = Fuse(Globals.AutoPlay())
  fuseLeft = fuseLength
  passBlockedUntil = now + 0.5
end

-- Whoever of the living has carried the potato least this match starts the round with it.
local function LeastHolder()
  local least, choices = math.huge, {}
  for _, p in ipairs(Living()) do
    local holds = Match.Holds(p.slot)
    if holds < least then least, choices = holds, {} end
    if holds == least then table.insert(choices, p) end
  end
  return choices[math.random(#choices)]
end

-- After a blast the potato lands on the nearest player still standing.
local function NearestTo(x, z)
  local best, bestDistance = nil, math.huge
  for _, p in ipairs(Living()) do
    local d = (p.x - x) ^ 2 + (p.z - z) ^ 2
    if d < bestDistance then best, bestDistance = p, d end
  end
  return best
end

local function BeginPlay()
  phase = "play"
  Hud.Text("HudBanner", "GO!")
  StartFuse(LeastHolder())
end

local function EndRound(side)
  phase = "over"
  holder = nil
  winnerSide = side
  Match.AwardRound(side)
  Globals.Log("Round " .. Globals.Get("RoundNumber", 1) .. ": " .. Match.SideName(side) .. " wins the round")
  Hud.Text("HudBanner", Match.SideName(side) .. " wins the round!")
  local champion = Match.Winner()
  if champion then
    Globals.Set("MatchWinner", Match.SideName(champion))
    Globals.Log("Winner: " .. Match.SideName(champion))
  end
  phaseLeft = Globals.AutoPlay() and 0.2 or 3
end

local function KnockOut(p)
  p.alive = false
  Place("Dust" .. p.slot, 0, -30, 0)
  Send("SCR:DestroyObject", p.name)
end

local function Rumble(p, seconds)
  local pad = p.device and string.match(p.device, "^Pad(%d)$")
  if pad then
    Send("SCR:SetControllerVibration", tonumber(pad), 1, 1)
    rumble[tonumber(pad)] = now + seconds
  end
end

local function Explode()
  local p = holder
  Globals.Log("Potato exploded: " .. Match.SideName("Player" .. p.slot) .. " is out")
  Send("SCR:PotatoExploded", p.name, p.x, p.z)
  Globals.PlaySound("Explosion")
  Rumble(p, 0.6)
  Place("Blast", p.x, 1, p.z)
  Place("BlastFire", p.x, 1, p.z)
  Send("SCR:RestartParticles", "BlastFire")
  blastUntil = now + 0.6
  KnockOut(p)
  holder = nil
  local sides, count = LivingSides()
  if count <= 1 then
    EndRound(next(sides) or p.side)
  else
    StartFuse(NearestTo(p.x, p.z))
  end
end

local function Finish()
  phase = "done"
  if Match.Winner() then Globals.GoTo("Results") else Globals.GoTo(Globals.CurrentLevel()) end
end

local function ReadPositions()
  for _, p in ipairs(players) do
    if p.alive then
      p.x = FindData(Objects(p.name) .. ".Transform.PositionX") or p.x
      p.z = FindData(Objects(p.name) .. ".Transform.PositionZ") or p.z
    end
  end
end

local function Wish(p)
  if p.device then return CameraRig.ToFloor(Controls.Move(p.device)) end
  return Bots.Steer(p, players, holder, PowerUps.Visible(), p.wobble)
end

local function MovePlayers()
  for _, p in ipairs(Living()) do
    local x, z = 0, 0
    if phase == "play" then x, z = Wish(p) end
    local speed = kSpeed * (p.speedUntil > now and 1.6 or 1) * (p == holder and 1.3 or 1)
    Send("SCR:SetVelocityXZOnBody", p.name, x * speed, z * speed)
    local moving = x * x + z * z > 0.01
    if moving then Send("SCR:RotateObjectAboutY", p.name, math.atan2(x, z)) end
    -- Dust rises at the feet of running players only.
    if moving then Place("Dust" .. p.slot, p.x, 0.05, p.z) else Place("Dust" .. p.slot, 0, -30, 0) end
    -- Written only on a change: writing the clip's name starts it over.
    local clip = moving and "Run" or "Idle"
    if clip ~= p.clip then
      p.clip = clip
      SetData(Objects(p.name) .. ".ModelSkinned.AnimationName", clip)
    end
  end
end

local function CheckPass()
  if holder == nil or now < passBlockedUntil then return end
  for _, p in ipairs(Living()) do
    local dx, dz = p.x - holder.x, p.z - holder.z
    if p ~= holder and dx * dx + dz * dz < kTouch * kTouch and p.shieldUntil <= now then
      GiveTo(p)
      passBlockedUntil = now + 0.6
      Globals.PlaySound("Land")
      return
    end
  end
end

-- The potato rides above its holder and glows faster as the fuse burns; the boxes of the fuse
-- above it go out one by one.
local function ShowPotato()
  local fuse = fuseLeft
  if holder == nil then
    Place("Potato", 0, -30, 0)
    for i = 0, kFuseBoxes - 1 do Place("FuseBar" .. i, 0, -30, 0) end
    Globals.Set("ExplosionTimeRemaining", 0)
    return
  end
  local y = 2.3 + 0.15 * math.sin(now * 6)
  Globals.Set("PotatoY", y)
  Globals.Set("ExplosionTimeRemaining", fuse)
  Place("Potato", holder.x, y, holder.z)
  local lit = math.ceil(kFuseBoxes * fuse / fuseLength)
  for i = 0, kFuseBoxes - 1 do
    if i < lit then Place("FuseBar" .. i, holder.x + (i - 2) * 0.35, 3.1, holder.z)
    else Place("FuseBar" .. i, 0, -30, 0) end
  end
  local pulse = 0.5 + 0.5 * math.sin(now * (4 + 20 * (1 - fuse / fuseLength)))
  SetData(Objects("Potato") .. ".Glow.r", 0.6 + 0.4 * pulse)
  SetData(Objects("Potato") .. ".Glow.g", 0.3 * pulse)
end

local function ShowHud()
  Hud.Text("HudFuse", holder and string.format("Fuse %.1f", fuseLeft) or "")
  Hud.Text("HudHolder", holder and (Match.SideName("Player" .. holder.slot) .. " has the potato!") or "")
  if phase == "intro" then
    Hud.Text("HudBanner", "Round " .. Globals.Get("RoundNumber", 1) .. " - " ..
             math.ceil(phaseLeft))
  elseif phase == "play" and now > passBlockedUntil + 1 then
    Hud.Text("HudBanner", "")
  end
  Globals.Set("MatchTimeRemaining", phaseLeft)
  for _, p in ipairs(players) do
    local wins = Match.Wins(p.slot)
    local text = "P" .. (p.slot + 1) .. " " .. string.rep("*", wins) ..
                 string.rep("-", math.max(Match.kWinsNeeded - wins, 0))
    if Match.Teams() then text = text .. " T" .. (Match.Team(p.slot) + 1) end
    if not p.alive then text = text .. " out" end
    Hud.Text("HudScore" .. p.slot, text)
    local power = Globals.Get("PlayerPowerUp" .. p.slot, 0)
    if power ~= 0 and p.powerUntil <= now then
      power = 0
      Globals.Set("PlayerPowerUp" .. p.slot, 0)
    end
    Hud.Image("HudPower" .. p.slot, PowerUps.kIcons[power])
  end
end

local function Effects()
  if blastUntil >= 0 and now > blastUntil then
    Place("Blast", 0, -30, 0)
    blastUntil = -1
  end
  for pad, untilTime in pairs(rumble) do
    if now > untilTime then
      Send("SCR:SetControllerVibration", pad, 0, 0)
      rumble[pad] = nil
    end
  end
end

function OnEvent(event, device, value)
  if phase ~= "done" then PauseMenu.Handle(event, device, value) end
end

function OnCollision(a, b)
  if string.find(b, "PowerUp", 1, true) then a, b = b, a end
  local slot = tonumber(string.match(b, "^Player(%d)$"))
  if slot == nil or phase ~= "play" then return end
  local p = players[slot + 1]
  local kind, lasts = PowerUps.Take(a)
  if kind == nil or not p.alive then return end
  Globals.Set("PlayerPowerUp" .. slot, kind)
  p.powerUntil = now + lasts
  if kind == PowerUps.kSpeed then p.speedUntil = now + lasts
  elseif kind == PowerUps.kShield then p.shieldUntil = now + lasts
  elseif kind == PowerUps.kFuse and holder then
    fuseLeft = math.min(fuseLeft, math.max(fuseLeft * 0.5, 0.5))
  end
end

function OnCheat(cheat)
  if cheat == "EndRound" and (phase == "intro" or phase == "play") then
    local keep = nil
    for _, p in ipairs(Living()) do
      if keep == nil and p ~= holder then keep = p end
    end
    keep = keep or Living()[1]
    for _, p in ipairs(Living()) do if p.side ~= keep.side then KnockOut(p) end end
    EndRound(keep.side)
  elseif cheat == "StartEarly" and phase == "intro" then BeginPlay()
  elseif cheat == "NextLevel" then
    Globals.GoTo(Globals.CurrentLevel() == "Arena" and "ArenaStorm" or "Arena")
  elseif cheat == "PreviousLevel" then Globals.GoTo("Lobby")
  elseif cheat == "MainMenu" then Send("ExitToMainMenuMSG") end
end

function Start(me)
  Send("LoadShaders")
  Hud.Forget()
  Controls.Install(OnEvent)
  Listen("SCR:Cheat", "OnCheat")
  Listen("CollisionBegin", "OnCollision")
  PauseMenu.Create()
  PowerUps.Create()
  Globals.Set("RoundNumber", Globals.Get("RoundNumber", 0) + 1)
  Globals.Set("DrawSceneOverMenu", 0)
  for slot = 0, Match.kSlots - 1 do
    local p = {slot = slot, name = "Player" .. slot, device = Match.Device(slot),
               side = Match.Side(slot), alive = true, x = 0, z = 0, speedUntil = 0,
               shieldUntil = 0, powerUntil = 0, clip = "Idle", wobble = (slot % 2 == 0) and 1 or -1}
    players[slot + 1] = p
    Globals.Set("PlayerPowerUp" .. slot, 0)
    Match.Dress(slot, p.name)
  end
  ReadPositions()
  phaseLeft = Globals.AutoPlay() and 0.1 or 2.5
  Globals.PlaySong("GameTheme")
  Globals.PlaySound("Countdown")
  Globals.Log("Round " .. Globals.Get("RoundNumber", 1) .. " in " .. Globals.CurrentLevel())
end

function Update()
  if PauseMenu.IsPaused() or Globals.Paused() then return end
  local dt = math.min(FindData("DT") or 0, kLongestTick)
  now = now + dt
  phaseLeft = math.max(phaseLeft - dt, 0)
  if holder then fuseLeft = math.max(fuseLeft - dt, 0) end
  ReadPositions()
  if phase == "intro" and phaseLeft <= 0 then BeginPlay()
  elseif phase == "play" then
    CheckPass()
    PowerUps.Update(dt)
    if holder and fuseLeft <= 0 then Explode() end
  elseif phase == "over" and phaseLeft <= 0 then Finish() end
  MovePlayers()
  ShowPotato()
  ShowHud()
  Effects()
  local points = {}
  for _, p in ipairs(Living()) do table.insert(points, {x = p.x, z = p.z}) end
  CameraRig.Frame(points, dt)
  Controls.EndFrame()
end

function End()
  for pad in pairs(rumble) do Send("SCR:SetControllerVibration", pad, 0, 0) end
end
