// The game-pad record the platform fills once per poll, shaped like XInput's XINPUT_STATE so the
// input system's rules (packet numbers, button masks, byte triggers, Y-up thumbs) read as written.
// Plain data: no SDL here, so payload consumers can include it. The mask values are a contract
// with scripts and must never be renumbered.
#pragma once

#include <cstdint>

namespace grindle {

struct XInputGamepad {
  uint16_t wButtons = 0;
  uint8_t bLeftTrigger = 0;   // 0..255
  uint8_t bRightTrigger = 0;  // 0..255
  int16_t sThumbLX = 0;       // -32768..32767, right positive
  int16_t sThumbLY = 0;       // -32768..32767, up positive
  int16_t sThumbRX = 0;
  int16_t sThumbRY = 0;
};

struct XInputState {
  // Changes whenever anything in the gamepad part changed since the previous read.
  uint32_t dwPacketNumber = 0;
  XInputGamepad Gamepad;
};

inline bool operator==(const XInputGamepad& a, const XInputGamepad& b) {
  return a.wButtons == b.wButtons && a.bLeftTrigger == b.bLeftTrigger &&
         a.bRightTrigger == b.bRightTrigger && a.sThumbLX == b.sThumbLX &&
         a.sThumbLY == b.sThumbLY && a.sThumbRX == b.sThumbRX && a.sThumbRY == b.sThumbRY;
}

// Button masks of wButtons.
inline constexpr uint16_t kPadUp = 0x0001;
inline constexpr uint16_t kPadDown = 0x0002;
inline constexpr uint16_t kPadLeft = 0x0004;
inline constexpr uint16_t kPadRight = 0x0008;
inline constexpr uint16_t kPadStart = 0x0010;
inline constexpr uint16_t kPadBack = 0x0020;
inline constexpr uint16_t kPadLeftThumb = 0x0040;   // "L3"
inline constexpr uint16_t kPadRightThumb = 0x0080;  // "R3"
inline constexpr uint16_t kPadLeftBumper = 0x0100;  // "L1"
inline constexpr uint16_t kPadRightBumper = 0x0200; // "R1"
inline constexpr uint16_t kPadA = 0x1000;
inline constexpr uint16_t kPadB = 0x2000;
inline constexpr uint16_t kPadX = 0x4000;
inline constexpr uint16_t kPadY = 0x8000;

// What a read of a pad slot returns: success, or the pad is not there.
inline constexpr uint32_t kPadSuccess = 0;
inline constexpr uint32_t kPadNotConnected = 1167;  // ERROR_DEVICE_NOT_CONNECTED
inline constexpr uint32_t kPadBadArguments = 160;   // ERROR_BAD_ARGUMENTS

}  // namespace grindle
