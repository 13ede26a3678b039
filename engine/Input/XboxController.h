// One game-pad record of the hub, bound to a user slot 0..3. The input system polls it once per
// frame on the main thread; copies travel inside the hub's "XboxController" payload. A pad that
// goes away keeps its last values (so a button held at unplug keeps reading as held).
#pragma once

#include <cstdint>

#include "Platform/PadState.h"

namespace grindle {

namespace platform {
class GamePads;
}

inline constexpr uint32_t kUnboundUserIndex = 0xFFFFFFFFu;

class XboxController {
 public:
  enum Stick : int { kRightX = 0, kRightY = 1, kLeftX = 2, kLeftY = 3, kStickValueCount = 4 };

  void Bind(uint32_t userIndex) { userIndex_ = userIndex; }
  // Reads the slot, then works out sticks, triggers and activity.
  void Poll(platform::GamePads& pads);

  bool IsDown(uint16_t buttonMask) const;
  bool IsTriggered(uint16_t buttonMask) const;
  // 0.0 or 1.0: a trigger counts only when pulled all the way.
  float LeftTrigger() const { return leftTrigger_; }
  float RightTrigger() const { return rightTrigger_; }
  bool LeftTriggerTriggered() const;
  bool RightTriggerTriggered() const;
  // -1..+1 outside the dead zone, 0 inside it; Y is up.
  float StickValue(Stick stick) const { return sticks_[stick]; }
  float PreviousStickValue(Stick stick) const { return previousSticks_[stick]; }
  bool RightStickActive() const { return rightStickActive_ != 0; }
  bool LeftStickActive() const { return leftStickActive_ != 0; }

  const XInputState& State() const { return state_; }
  const XInputState& PreviousState() const { return previousState_; }
  uint32_t UserIndex() const { return userIndex_; }
  bool IsConnected() const { return connected_ != 0; }
  bool IsActive() const { return active_ != 0; }

 private:
  void UpdateSticks();
  void UpdateTriggers();
  bool ShowsActivity() const;

  float sticks_[kStickValueCount] = {};
  float previousSticks_[kStickValueCount] = {};
  uint8_t rightStickActive_ = 0;
  uint8_t leftStickActive_ = 0;
  uint8_t rightTrigger_ = 0;
  uint8_t rightTriggerPrevious_ = 0;
  uint8_t leftTrigger_ = 0;
  uint8_t leftTriggerPrevious_ = 0;
  XInputState state_;
  XInputState previousState_;
  uint32_t userIndex_ = kUnboundUserIndex;
  uint8_t connected_ = 0;
  uint8_t active_ = 0;
};

}  // namespace grindle
