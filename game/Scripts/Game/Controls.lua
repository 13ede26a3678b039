-- Every input the game understands, by device: two keyboard sets ("WASD": W A S D + Space;
-- "Arrows": arrow keys + Right Shift), four pads ("Pad0".."Pad3") and the mouse. Menus receive
-- steps at once through a handler (events arrive even while the game is paused and "Update" may not
-- run); play polls the held directions, which the owner clears with EndFrame after each Update.
local Controls = {}

local held = {}       -- key name -> true while held this frame
local sticks = {}     -- pad -> {x, y}
local padHeld = {}    -- pad -> {button -> true}
local handler = nil   -- function(event, device, value)

local kKeyEvents = {
  W = {"up", "WASD"}, S = {"down", "WASD"}, A = {"left", "WASD"}, D = {"right", "WASD"},
  Space = {"confirm", "WASD"},
  Up = {"up", "Arrows"}, Down = {"down", "Arrows"}, Left = {"left", "Arrows"},
  Right = {"right", "Arrows"}, RightShift = {"confirm", "Arrows"},
  Return = {"confirm", "Keyboard"}, Escape = {"back", "Keyboard"},
}

local kPadEvents = {
  Up = "up", Down = "down", Left = "left", Right = "right",
  A = "confirm", B = "back", Back = "back", Start = "start",
}

local kKeySets = {
  WASD = {up = "W", down = "S", left = "A", right = "D"},
  Arrows = {up = "Up", down = "Down", left = "Left", right = "Right"},
}

local function Emit(event, device, value)
  if handler then handler(event, device, value) end
end

function Controls_KeyTriggered(key)
  held[key] = true
  local mapped = kKeyEvents[key]
  if mapped then Emit(mapped[1], mapped[2]) end
end

function Controls_KeyHeld(key) held[key] = true end

function Controls_PadTriggered(button, pad)
  padHeld[pad] = padHeld[pad] or {}
  padHeld[pad][button] = true
  if kPadEvents[button] then Emit(kPadEvents[button], "Pad" .. math.floor(pad)) end
end

function Controls_PadHeld(button, pad)
  padHeld[pad] = padHeld[pad] or {}
  padHeld[pad][button] = true
end

function Controls_Stick(pad, x, y) sticks[pad] = {x, y} end

function Controls_StickUp(pad) Emit("up", "Pad" .. math.floor(pad)) end
function Controls_StickDown(pad) Emit("down", "Pad" .. math.floor(pad)) end
function Controls_StickLeft(pad) Emit("left", "Pad" .. math.floor(pad)) end
function Controls_StickRight(pad) Emit("right", "Pad" .. math.floor(pad)) end

function Controls_MousePosition(x, y)
  local height = FindData("WindowHeight") or 720
  Emit("point", "Mouse", y / height)
end

function Controls_MouseClick(button) if button == "LEFT" then Emit("click", "Mouse") end end

function Controls_Wheel(step) Emit(step > 0 and "up" or "down", "Mouse") end

-- Registers the listeners; `onEvent(event, device, value)` gets the menu events: "up", "down",
-- "left", "right", "confirm", "back", "start" (pad Start), "point" (mouse height 0..1, top 0)
-- and "click".
function Controls.Install(onEvent)
  handler = onEvent
  Listen("SCR:KeyboardTriggered", "Controls_KeyTriggered")
  Listen("SCR:KeyboardPressed", "Controls_KeyHeld")
  Listen("SCR:ControllerButtonTriggered", "Controls_PadTriggered")
  Listen("SCR:ControllerButton", "Controls_PadHeld")
  Listen("SCR:ControllerLeftStick", "Controls_Stick")
  Listen("msgLeftStick_Up", "Controls_StickUp")
  Listen("msgLeftStick_Down", "Controls_StickDown")
  Listen("msgLeftStick_Left", "Controls_StickLeft")
  Listen("msgLeftStick_Right", "Controls_StickRight")
  Listen("SCR:MousePosition", "Controls_MousePosition")
  Listen("SCR:MouseButtonTriggered", "Controls_MouseClick")
  Listen("SCR:MouseWheel", "Controls_Wheel")
end

function Controls.SetHandler(onEvent) handler = onEvent end

local function Axis(negative, positive)
  return (positive and 1 or 0) - (negative and 1 or 0)
end

-- The direction a device asks for this frame: x to the right of the screen, y up the screen,
-- each -1..1.
function Controls.Move(device)
  local keys = kKeySets[device]
  if keys then
    return Axis(held[keys.left], held[keys.right]), Axis(held[keys.down], held[keys.up])
  end
  local pad = tonumber(string.match(device or "", "^Pad(%d)$"))
  if pad == nil then return 0, 0 end
  local stick = sticks[pad]
  if stick then return stick[1], stick[2] end
  local buttons = padHeld[pad] or {}
  return Axis(buttons.Left, buttons.Right), Axis(buttons.Down, buttons.Up)
end

function Controls.EndFrame()
  held, sticks, padHeld = {}, {}, {}
end

return Controls
