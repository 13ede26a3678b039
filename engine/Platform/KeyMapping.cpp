#include "Platform/KeyMapping.h"

#include <SDL.h>

#include <array>
#include <utility>

namespace grindle::platform {
namespace {

constexpr uint8_t kDown = 0x80;
constexpr uint8_t kToggled = 0x01;

// Windows virtual-key codes without a character of their own.
constexpr uint8_t kVkShift = 0x10, kVkControl = 0x11, kVkAlt = 0x12;
constexpr uint8_t kVkCapsLock = 0x14, kVkNumLock = 0x90, kVkScrollLock = 0x91;
constexpr uint8_t kVkLeftShift = 0xA0, kVkRightShift = 0xA1;
constexpr uint8_t kVkLeftControl = 0xA2, kVkRightControl = 0xA3;
constexpr uint8_t kVkLeftAlt = 0xA4, kVkRightAlt = 0xA5;
constexpr uint8_t kVkF1 = 0x70, kVkF13 = 0x7C, kVkNumpad0 = 0x60;

// The one table: scancode -> virtual-key code. Ranges that run in parallel (letters, digits,
// function keys, keypad digits) are filled by loops; the rest is listed.
constexpr std::array<uint8_t, SDL_NUM_SCANCODES> BuildScancodeTable() {
  std::array<uint8_t, SDL_NUM_SCANCODES> table{};
  for (int i = 0; i < 26; ++i) table[SDL_SCANCODE_A + i] = static_cast<uint8_t>('A' + i);
  for (int i = 0; i < 9; ++i) table[SDL_SCANCODE_1 + i] = static_cast<uint8_t>('1' + i);
  table[SDL_SCANCODE_0] = '0';
  for (int i = 0; i < 12; ++i) table[SDL_SCANCODE_F1 + i] = static_cast<uint8_t>(kVkF1 + i);
  for (int i = 0; i < 12; ++i) table[SDL_SCANCODE_F13 + i] = static_cast<uint8_t>(kVkF13 + i);
  for (int i = 0; i < 9; ++i) table[SDL_SCANCODE_KP_1 + i] = static_cast<uint8_t>(kVkNumpad0 + 1 + i);
  table[SDL_SCANCODE_KP_0] = kVkNumpad0;

  constexpr std::pair<SDL_Scancode, uint8_t> kListed[] = {
      {SDL_SCANCODE_RETURN, 0x0D},       {SDL_SCANCODE_ESCAPE, 0x1B},
      {SDL_SCANCODE_BACKSPACE, 0x08},    {SDL_SCANCODE_TAB, 0x09},
      {SDL_SCANCODE_SPACE, 0x20},        {SDL_SCANCODE_MINUS, 0xBD},
      {SDL_SCANCODE_EQUALS, 0xBB},       {SDL_SCANCODE_LEFTBRACKET, 0xDB},
      {SDL_SCANCODE_RIGHTBRACKET, 0xDD}, {SDL_SCANCODE_BACKSLASH, 0xDC},
      {SDL_SCANCODE_SEMICOLON, 0xBA},    {SDL_SCANCODE_APOSTROPHE, 0xDE},
      {SDL_SCANCODE_GRAVE, 0xC0},        {SDL_SCANCODE_COMMA, 0xBC},
      {SDL_SCANCODE_PERIOD, 0xBE},       {SDL_SCANCODE_SLASH, 0xBF},
      {SDL_SCANCODE_CAPSLOCK, kVkCapsLock}, {SDL_SCANCODE_PRINTSCREEN, 0x2C},
      {SDL_SCANCODE_SCROLLLOCK, kVkScrollLock}, {SDL_SCANCODE_PAUSE, 0x13},
      {SDL_SCANCODE_INSERT, 0x2D},       {SDL_SCANCODE_HOME, 0x24},
      {SDL_SCANCODE_PAGEUP, 0x21},       {SDL_SCANCODE_DELETE, 0x2E},
      {SDL_SCANCODE_END, 0x23},          {SDL_SCANCODE_PAGEDOWN, 0x22},
      {SDL_SCANCODE_RIGHT, 0x27},        {SDL_SCANCODE_LEFT, 0x25},
      {SDL_SCANCODE_DOWN, 0x28},         {SDL_SCANCODE_UP, 0x26},
      {SDL_SCANCODE_NUMLOCKCLEAR, kVkNumLock}, {SDL_SCANCODE_KP_DIVIDE, 0x6F},
      {SDL_SCANCODE_KP_MULTIPLY, 0x6A},  {SDL_SCANCODE_KP_MINUS, 0x6D},
      {SDL_SCANCODE_KP_PLUS, 0x6B},      {SDL_SCANCODE_KP_ENTER, 0x0D},
      {SDL_SCANCODE_KP_PERIOD, 0x6E},    {SDL_SCANCODE_NONUSBACKSLASH, 0xE2},
      {SDL_SCANCODE_APPLICATION, 0x5D},  {SDL_SCANCODE_LGUI, 0x5B},
      {SDL_SCANCODE_RGUI, 0x5C},         {SDL_SCANCODE_LSHIFT, kVkLeftShift},
      {SDL_SCANCODE_RSHIFT, kVkRightShift}, {SDL_SCANCODE_LCTRL, kVkLeftControl},
      {SDL_SCANCODE_RCTRL, kVkRightControl}, {SDL_SCANCODE_LALT, kVkLeftAlt},
      {SDL_SCANCODE_RALT, kVkRightAlt},
  };
  for (const auto& [scancode, key] : kListed) table[scancode] = key;
  return table;
}

constexpr std::array<uint8_t, SDL_NUM_SCANCODES> kScancodeToVirtualKey = BuildScancodeTable();

void AddLockToggle(uint8_t (&state)[kKeyStateBytes], SDL_Keymod modifiers, SDL_Keymod lock,
                   uint8_t key) {
  if ((modifiers & lock) != 0) state[key] |= kToggled;
}

}  // namespace

void GetKeyboardState(uint8_t (&state)[kKeyStateBytes]) {
  for (uint8_t& byte : state) byte = 0;

  int scancodeCount = 0;
  const Uint8* pressed = SDL_GetKeyboardState(&scancodeCount);
  for (int scancode = 0; scancode < scancodeCount && scancode < SDL_NUM_SCANCODES; ++scancode) {
    const uint8_t key = kScancodeToVirtualKey[scancode];
    if (key != 0 && pressed[scancode] != 0) state[key] = kDown;
  }
  state[kVkShift] = state[kVkLeftShift] | state[kVkRightShift];
  state[kVkControl] = state[kVkLeftControl] | state[kVkRightControl];
  state[kVkAlt] = state[kVkLeftAlt] | state[kVkRightAlt];

  const SDL_Keymod modifiers = SDL_GetModState();
  AddLockToggle(state, modifiers, KMOD_CAPS, kVkCapsLock);
  AddLockToggle(state, modifiers, KMOD_NUM, kVkNumLock);
  AddLockToggle(state, modifiers, KMOD_SCROLL, kVkScrollLock);

  // Windows reports the mouse buttons among the keys; the keyboard's rules account for that.
  const Uint32 buttons = SDL_GetMouseState(nullptr, nullptr);
  constexpr std::pair<Uint32, uint8_t> kMouseKeys[] = {
      {SDL_BUTTON_LMASK, 0x01}, {SDL_BUTTON_RMASK, 0x02}, {SDL_BUTTON_MMASK, 0x04},
      {SDL_BUTTON_X1MASK, 0x05}, {SDL_BUTTON_X2MASK, 0x06}};
  for (const auto& [mask, key] : kMouseKeys) {
    if ((buttons & mask) != 0) state[key] = kDown;
  }
}

}  // namespace grindle::platform
