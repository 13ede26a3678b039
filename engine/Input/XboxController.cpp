#include "Input/XboxController.h"

#include "Platform/GamePads.h"

namespace grindle {
namespace {

// Squares of the platform's dead zones (right 8689, left 7849), compared in single precision:
// a stick at exactly 8689 squares to the threshold and so stays inside.
constexpr float kRightDeadZoneSquared = 75498720.0f;
constexpr float kLeftDeadZoneSquared = 6.16068e7f;
// 1 / 32767. Values just outside the dead zone are not rescaled towards 0.
constexpr float kThumbScale = 3.051851e-5f;
constexpr float kTriggerEpsilon = 1e-7f;

// The buttons whose hold keeps a pad active, in the order they are tested. Back is left out on
// purpose: a pad resting on Back alone goes quiet.
constexpr uint16_t kActivityButtons[] = {kPadStart,  kPadA,    kPadB,           kPadX,
                                         kPadY,      kPadUp,   kPadDown,        kPadRight,
                                         kPadLeft,   kPadRightBumper, kPadRightThumb,
                                         kPadLeftBumper, kPadLeftThumb};

// Writes x, y of one stick and returns whether it is outside its dead zone.
uint8_t ReadStick(int16_t thumbX, int16_t thumbY, float deadZoneSquared, float& x, float& y) {
  const float fx = thumbX;
  const float fy = thumbY;
  const float squareX = fx * fx;
  const float squareY = fy * fy;
  if (squareX + squareY > deadZoneSquared) {
    x = fx * kThumbScale;
    y = fy * kThumbScale;
    return 1;
  }
  x = 0.0f;
  y = 0.0f;
  return 0;
}

}  // namespace

void XboxController::Poll(platform::GamePads& pads) {
  previousState_ = state_;
  if (pads.GetState(userIndex_, state_) == kPadNotConnected) {
    // Sticks, triggers and state keep their last values.
    connected_ = 0;
  } else {
    connected_ = 1;
    UpdateSticks();
    UpdateTriggers();
  }
  active_ = ShowsActivity() ? 1 : 0;
}

void XboxController::UpdateSticks() {
  for (int i = 0; i < kStickValueCount; ++i) previousSticks_[i] = sticks_[i];
  const XInputGamepad& pad = state_.Gamepad;
  rightStickActive_ = ReadStick(pad.sThumbRX, pad.sThumbRY, kRightDeadZoneSquared,
                                sticks_[kRightX], sticks_[kRightY]);
  leftStickActive_ = ReadStick(pad.sThumbLX, pad.sThumbLY, kLeftDeadZoneSquared,
                               sticks_[kLeftX], sticks_[kLeftY]);
}

void XboxController::UpdateTriggers() {
  leftTriggerPrevious_ = leftTrigger_;
  rightTriggerPrevious_ = rightTrigger_;
  // Integer division: all or nothing, by design.
  leftTrigger_ = static_cast<uint8_t>(state_.Gamepad.bLeftTrigger / 255);
  rightTrigger_ = static_cast<uint8_t>(state_.Gamepad.bRightTrigger / 255);
}

bool XboxController::ShowsActivity() const {
  if (state_.dwPacketNumber != previousState_.dwPacketNumber) return true;
  for (uint16_t mask : kActivityButtons) {
    if (IsDown(mask)) return true;
  }
  return leftStickActive_ != 0 || rightStickActive_ != 0 || leftTrigger_ > 0 || rightTrigger_ > 0;
}

bool XboxController::IsDown(uint16_t buttonMask) const {
  return (state_.Gamepad.wButtons & buttonMask) != 0 &&
         (previousState_.Gamepad.wButtons & buttonMask) != 0;
}

bool XboxController::IsTriggered(uint16_t buttonMask) const {
  return (state_.Gamepad.wButtons & buttonMask) != 0 &&
         (previousState_.Gamepad.wButtons & buttonMask) == 0;
}

bool XboxController::LeftTriggerTriggered() const {
  return leftTriggerPrevious_ < kTriggerEpsilon && leftTrigger_ > kTriggerEpsilon;
}

bool XboxController::RightTriggerTriggered() const {
  return rightTriggerPrevious_ < kTriggerEpsilon && rightTrigger_ > kTriggerEpsilon;
}

}  // namespace grindle
