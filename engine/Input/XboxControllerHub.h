// The four game-pad records, record i bound to user slot i. The input system polls the hub once per
// frame on the main thread and sends a copy of all four as "XboxController" when any pad is active;
// consumers only read copies. Controller indices outside 0..3 assert in the queries.
#pragma once

#include <cstdint>
#include <string_view>

#include "Input/XboxController.h"
#include "Platform/PadState.h"

namespace grindle {

inline constexpr int kControllerCount = 4;

class XboxControllerHub {
 public:
  XboxControllerHub();

  // Hot-plug first, then each record in slot order.
  void Poll(platform::GamePads& pads);

  bool IsDown(int controller, uint16_t buttonMask) const;
  bool IsTriggered(int controller, uint16_t buttonMask) const;
  float LeftTrigger(int controller) const;
  float RightTrigger(int controller) const;
  bool LeftTriggerTriggered(int controller) const;
  bool RightTriggerTriggered(int controller) const;
  float RightStickX(int controller) const;
  float RightStickY(int controller) const;
  float LeftStickX(int controller) const;
  float LeftStickY(int controller) const;
  bool IsConnected(int controller) const;
  bool IsActive(int controller) const;
  bool AnyActive() const;

  // Strengths 0..1 (above 1 is clamped, below 0 is not) become motor speeds 0..65535 for the
  // slot. Returns the platform's status, which nobody is obliged to check.
  uint32_t SetVibration(platform::GamePads& pads, int controller, float left, float right);

  const XboxController& Controller(int controller) const;

 private:
  XboxController controllers_[kControllerCount];
};

// A strength as the 16-bit motor speed the pad receives (see SetVibration).
uint16_t MotorSpeed(float strength);

// The name scripts know a pad button by ("A", "Start", "Back", "Up", "LeftBumper", "L3", ...) for a
// single-button mask, or an empty view.
std::string_view PadButtonName(uint16_t buttonMask);
// The mask of a named button ("L1" and "LeftBumper", "R1" and "RightBumper" are the same button),
// or 0 when no button has that name. "LeftTrigger"/"RightTrigger" are queries, not buttons: 0.
uint16_t PadButtonMask(std::string_view name);

}  // namespace grindle
