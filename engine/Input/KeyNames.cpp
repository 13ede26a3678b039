// Names of virtual-key codes as scripts and docs/input.md spell them.
#include <array>
#include <string_view>

#include "Input/Keyboard.h"

namespace grindle {
namespace {

constexpr std::string_view kDigitNames[] = {"0", "1", "2", "3", "4", "5", "6", "7", "8", "9"};
constexpr std::string_view kLetterNames[] = {"A", "B", "C", "D", "E", "F", "G", "H", "I",
                                             "J", "K", "L", "M", "N", "O", "P", "Q", "R",
                                             "S", "T", "U", "V", "W", "X", "Y", "Z"};
constexpr std::string_view kFunctionNames[] = {
    "F1",  "F2",  "F3",  "F4",  "F5",  "F6",  "F7",  "F8",  "F9",  "F10", "F11", "F12",
    "F13", "F14", "F15", "F16", "F17", "F18", "F19", "F20", "F21", "F22", "F23", "F24"};
constexpr std::string_view kNumpadNames[] = {"Numpad0", "Numpad1", "Numpad2", "Numpad3",
                                             "Numpad4", "Numpad5", "Numpad6", "Numpad7",
                                             "Numpad8", "Numpad9"};

struct NamedKey {
  uint8_t key;
  std::string_view name;
};

constexpr NamedKey kListedNames[] = {
    {vk::kLeftButton, "LeftButton"}, {vk::kRightButton, "RightButton"},
    {vk::kMiddleButton, "MiddleButton"}, {0x05, "XButton1"}, {0x06, "XButton2"},
    {vk::kBackspace, "Backspace"}, {vk::kTab, "Tab"}, {vk::kReturn, "Return"},
    {vk::kShift, "Shift"}, {vk::kControl, "Control"}, {vk::kAlt, "Alt"}, {0x13, "Pause"},
    {0x14, "CapsLock"}, {vk::kEscape, "Escape"}, {vk::kSpace, "Space"}, {0x21, "PageUp"},
    {0x22, "PageDown"}, {0x23, "End"}, {0x24, "Home"}, {vk::kLeft, "Left"}, {vk::kUp, "Up"},
    {vk::kRight, "Right"}, {vk::kDown, "Down"}, {0x2C, "PrintScreen"}, {0x2D, "Insert"},
    {0x2E, "Delete"}, {0x5B, "LeftWindows"}, {0x5C, "RightWindows"}, {0x5D, "Menu"},
    {0x6A, "Multiply"}, {0x6B, "Add"}, {0x6D, "Subtract"}, {0x6E, "Decimal"}, {0x6F, "Divide"},
    {0x90, "NumLock"}, {0x91, "ScrollLock"}, {0xA0, "LeftShift"}, {0xA1, "RightShift"},
    {0xA2, "LeftControl"}, {0xA3, "RightControl"}, {0xA4, "LeftAlt"}, {0xA5, "RightAlt"},
    {0xBA, "Semicolon"}, {0xBB, "Equals"}, {0xBC, "Comma"}, {0xBD, "Minus"}, {0xBE, "Period"},
    {0xBF, "Slash"}, {0xC0, "Grave"}, {0xDB, "LeftBracket"}, {0xDC, "Backslash"},
    {0xDD, "RightBracket"}, {0xDE, "Apostrophe"}, {0xE2, "OtherBackslash"},
};

template <size_t N>
constexpr void Place(std::array<std::string_view, kKeyCodeCount>& table, int first,
                     const std::string_view (&names)[N]) {
  for (size_t i = 0; i < N; ++i) table[first + i] = names[i];
}

constexpr std::array<std::string_view, kKeyCodeCount> BuildNameTable() {
  std::array<std::string_view, kKeyCodeCount> table{};
  Place(table, vk::kDigit0, kDigitNames);
  Place(table, vk::kLetterA, kLetterNames);
  Place(table, vk::kF1, kFunctionNames);
  Place(table, 0x60, kNumpadNames);
  for (const NamedKey& named : kListedNames) table[named.key] = named.name;
  return table;
}

constexpr std::array<std::string_view, kKeyCodeCount> kKeyNames = BuildNameTable();

}  // namespace

std::string_view VirtualKeyName(int key) {
  if (key < 0 || key >= kKeyCodeCount) return {};
  return kKeyNames[key];
}

int VirtualKeyFromName(std::string_view name) {
  if (name.empty()) return -1;
  for (int key = 0; key < kKeyCodeCount; ++key) {
    if (kKeyNames[key] == name) return key;
  }
  return -1;
}

}  // namespace grindle
