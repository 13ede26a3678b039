// The mouse payload. Window messages (main thread, through the WindowMessageFunction<Mouse> stored
// in the database) update position and the pending buttons/wheel at once; the frame step moves
// pending into this frame's values. Copies travel as "Mouse"; consumers only read copies.
// Button index order left = 0, middle = 1, right = 2 is a contract with scripts.
#pragma once

#include <cstdint>

namespace grindle {

enum MouseButton : int { kMouseLeft = 0, kMouseMiddle = 1, kMouseRight = 2, kMouseButtonCount = 3 };

enum MouseWheel : int32_t { kWheelNone = 0, kWheelForward = 1, kWheelBack = 2 };

// Window-message codes the mouse understands.
inline constexpr uint32_t kWmMouseMove = 0x200;
inline constexpr uint32_t kWmLButtonDown = 0x201;
inline constexpr uint32_t kWmLButtonUp = 0x202;
inline constexpr uint32_t kWmRButtonDown = 0x204;
inline constexpr uint32_t kWmRButtonUp = 0x205;
inline constexpr uint32_t kWmMButtonDown = 0x207;
inline constexpr uint32_t kWmMButtonUp = 0x208;
inline constexpr uint32_t kWmMouseWheel = 0x20A;

class Mouse {
 public:
  // The window procedure's entry: any code updates the position from lParam (x | y << 16).
  void HandleWindowMessage(uint32_t code, uint64_t wParam, int64_t lParam);
  bool AcceptsWindowMessages() const { return true; }

  // previousButtons <- buttons <- pendingButtons; wheel <- pendingWheel <- 0.
  void FrameStep();
  // Wheel turned this frame, or a button differs from the frame before.
  bool Changed() const;

  bool IsDown(MouseButton button) const { return buttons_[button] != 0; }
  bool WasDown(MouseButton button) const { return previousButtons_[button] != 0; }
  bool IsTriggered(MouseButton button) const { return IsDown(button) && !WasDown(button); }
  bool IsReleased(MouseButton button) const { return !IsDown(button) && WasDown(button); }

  MouseWheel Wheel() const { return static_cast<MouseWheel>(wheel_); }
  int32_t X() const { return x_; }
  int32_t Y() const { return y_; }
  int32_t PreviousX() const { return previousX_; }
  int32_t PreviousY() const { return previousY_; }
  // Previous minus current: moving right gives a negative DeltaX.
  int32_t DeltaX() const { return deltaX_; }
  int32_t DeltaY() const { return deltaY_; }

 private:
  int32_t wheel_ = kWheelNone;
  int32_t pendingWheel_ = kWheelNone;
  int32_t previousX_ = 0;
  int32_t previousY_ = 0;
  int32_t x_ = 0;
  int32_t y_ = 0;
  int32_t deltaX_ = 0;
  int32_t deltaY_ = 0;
  uint8_t buttons_[kMouseButtonCount] = {};
  uint8_t previousButtons_[kMouseButtonCount] = {};
  uint8_t pendingButtons_[kMouseButtonCount] = {};
};

// "LEFT", "MIDDLE" or "RIGHT", the names scripts use.
const char* MouseButtonName(MouseButton button);

}  // namespace grindle
