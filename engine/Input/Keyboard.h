// The keyboard payload: this frame's and last frame's key-state bytes, indexed by Windows
// virtual-key code (high bit set while down). The input system samples it once per frame on the
// main thread and sends copies as "Keyboard"; consumers only read copies. Code 255 is never queried.
#pragma once

#include <cstdint>
#include <string_view>

namespace grindle {

inline constexpr int kKeyCodeCount = 255;  // queryable codes 0..254

class Keyboard {
 public:
  // Went down this frame / held (down now and in the frame before). Codes outside 0..254 assert.
  bool IsDown(int key) const;
  bool IsTriggered(int key) const;
  // Writes every held code, ascending, into `buffer` and returns how many.
  int HeldKeys(uint8_t (&buffer)[kKeyCodeCount]) const;
  // Whether any byte for codes 6..254 differs from the previous frame (0..5 are mouse buttons).
  bool Changed() const;

  uint8_t Current(int key) const;
  uint8_t Previous(int key) const;

  // The frame step: current moves to previous, then the platform's bytes become current.
  void Sample();

 private:
  // The platform writes 256 bytes; the 256th lands here and is never read.
  uint8_t current_[kKeyCodeCount + 1] = {};
  uint8_t previous_[kKeyCodeCount] = {};
};

// Virtual-key codes the engine itself names.
namespace vk {
inline constexpr uint8_t kLeftButton = 0x01;
inline constexpr uint8_t kRightButton = 0x02;
inline constexpr uint8_t kMiddleButton = 0x04;
inline constexpr uint8_t kBackspace = 0x08;
inline constexpr uint8_t kTab = 0x09;
inline constexpr uint8_t kReturn = 0x0D;
inline constexpr uint8_t kShift = 0x10;
inline constexpr uint8_t kControl = 0x11;
inline constexpr uint8_t kAlt = 0x12;
inline constexpr uint8_t kEscape = 0x1B;
inline constexpr uint8_t kSpace = 0x20;
inline constexpr uint8_t kLeft = 0x25;
inline constexpr uint8_t kUp = 0x26;
inline constexpr uint8_t kRight = 0x27;
inline constexpr uint8_t kDown = 0x28;
inline constexpr uint8_t kDigit0 = '0';  // '0'..'9' are their own codes
inline constexpr uint8_t kLetterA = 'A'; // 'A'..'Z' likewise
inline constexpr uint8_t kF1 = 0x70;     // F1..F24 are 0x70..0x87
}  // namespace vk

// The name scripts know a key by ("Space", "Escape", "Return", "Left", "A", "7", "F1", ...), or an
// empty view for codes without a name.
std::string_view VirtualKeyName(int key);
// The code of a named key, or -1 when no key has that name.
int VirtualKeyFromName(std::string_view name);

}  // namespace grindle
