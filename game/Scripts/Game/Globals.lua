-- Game-wide values kept in GlobalVariables (they outlive levels), the settings every screen reads,
-- and the few engine messages all screens send. Required by every top-level script.
local Globals = {}

function Globals.Get(name, default)
  local value = FindData("GlobalVariables." .. name)
  if value == nil then return default end
  return value
end

function Globals.Set(name, value) SetData("GlobalVariables." .. name, value) end

function Globals.AutoPlay() return Globals.Get("AutoPlay", 0) == 1 end

function Globals.Paused() return FindData("isGamePaused") == true end

function Globals.Log(text) Send("ConsolePrint", text) end

function Globals.GoTo(level) SetData("NextLevel", level) end

function Globals.CurrentLevel() return FindData("CurrentLevel") or "" end

-- Music and sound volumes are the game's own settings (0..1): every play scales by them.
function Globals.PlaySong(name)
  Send("PlaySong", name, 1, Globals.Get("MusicVolume", 1))
end

function Globals.RestartSong(name)
  Send("StopSong")
  Globals.PlaySong(name)
end

function Globals.PlaySound(name)
  local volume = Globals.Get("SoundVolume", 1)
  if volume > 0 then Send("PlaySound", name, 0, volume) end
end

return Globals
