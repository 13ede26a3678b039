#include "Input/Mouse.h"

namespace grindle {

void Mouse::HandleWindowMessage(uint32_t code, uint64_t wParam, int64_t lParam) {
  switch (code) {
    case kWmLButtonDown: pendingButtons_[kMouseLeft] = 1; break;
    case kWmLButtonUp: pendingButtons_[kMouseLeft] = 0; break;
    case kWmRButtonDown: pendingButtons_[kMouseRight] = 1; break;
    case kWmRButtonUp: pendingButtons_[kMouseRight] = 0; break;
    case kWmMButtonDown: pendingButtons_[kMouseMiddle] = 1; break;
    case kWmMButtonUp: pendingButtons_[kMouseMiddle] = 0; break;
    case kWmMouseWheel: {
      const int16_t delta = static_cast<int16_t>((wParam >> 16) & 0xFFFF);
      if (delta >= 1) pendingWheel_ = kWheelForward;
      if (delta < 0) pendingWheel_ = kWheelBack;
      break;
    }
    default: break;
  }
  // Every message moves the position, the wheel's too although its coordinates are screen-based.
  // x is read signed and y unsigned, as the window procedure has always done.
  previousX_ = x_;
  previousY_ = y_;
  x_ = static_cast<int16_t>(lParam & 0xFFFF);
  y_ = static_cast<int32_t>((lParam >> 16) & 0xFFFF);
  deltaX_ = previousX_ - x_;
  deltaY_ = previousY_ - y_;
}

void Mouse::FrameStep() {
  for (int i = 0; i < kMouseButtonCount; ++i) {
    previousButtons_[i] = buttons_[i];
    buttons_[i] = pendingButtons_[i];
  }
  wheel_ = pendingWheel_;
  pendingWheel_ = kWheelNone;
}

bool Mouse::Changed() const {
  if (wheel_ != kWheelNone) return true;
  for (int i = 0; i < kMouseButtonCount; ++i) {
    if (buttons_[i] != previousButtons_[i]) return true;
  }
  return false;
}

const char* MouseButtonName(MouseButton button) {
  switch (button) {
    case kMouseLeft: return "LEFT";
    case kMouseMiddle: return "MIDDLE";
    case kMouseRight: return "RIGHT";
    default: return "";
  }
}

}  // namespace grindle
