#include "Input/XboxControllerHub.h"

#include <cmath>
#include <cstdint>

#include "Core/Assert.h"
#include "Platform/GamePads.h"

namespace grindle {
namespace {

struct NamedButton {
  uint16_t mask;
  std::string_view name;
};

// The first name of a mask is the one PadButtonName gives.
constexpr NamedButton kButtonNames[] = {
    {kPadUp, "Up"},           {kPadDown, "Down"},
    {kPadLeft, "Left"},       {kPadRight, "Right"},
    {kPadStart, "Start"},     {kPadBack, "Back"},
    {kPadLeftThumb, "L3"},    {kPadRightThumb, "R3"},
    {kPadLeftBumper, "LeftBumper"}, {kPadLeftBumper, "L1"},
    {kPadRightBumper, "RightBumper"}, {kPadRightBumper, "R1"},
    {kPadA, "A"},             {kPadB, "B"},
    {kPadX, "X"},             {kPadY, "Y"},
};

}  // namespace

XboxControllerHub::XboxControllerHub() {
  for (int i = 0; i < kControllerCount; ++i) controllers_[i].Bind(static_cast<uint32_t>(i));
}

void XboxControllerHub::Poll(platform::GamePads& pads) {
  pads.Refresh();
  for (XboxController& controller : controllers_) controller.Poll(pads);
}

const XboxController& XboxControllerHub::Controller(int controller) const {
  GRINDLE_ASSERT(controller < 0 || controller >= kControllerCount,
                 "controller index must be 0..3");
  return controllers_[controller];
}

bool XboxControllerHub::IsDown(int controller, uint16_t buttonMask) const {
  return Controller(controller).IsDown(buttonMask);
}
bool XboxControllerHub::IsTriggered(int controller, uint16_t buttonMask) const {
  return Controller(controller).IsTriggered(buttonMask);
}
float XboxControllerHub::LeftTrigger(int controller) const {
  return Controller(controller).LeftTrigger();
}
float XboxControllerHub::RightTrigger(int controller) const {
  return Controller(controller).RightTrigger();
}
bool XboxControllerHub::LeftTriggerTriggered(int controller) const {
  return Controller(controller).LeftTriggerTriggered();
}
bool XboxControllerHub::RightTriggerTriggered(int controller) const {
  return Controller(controller).RightTriggerTriggered();
}
float XboxControllerHub::RightStickX(int controller) const {
  return Controller(controller).StickValue(XboxController::kRightX);
}
float XboxControllerHub::RightStickY(int controller) const {
  return Controller(controller).StickValue(XboxController::kRightY);
}
float XboxControllerHub::LeftStickX(int controller) const {
  return Controller(controller).StickValue(XboxController::kLeftX);
}
float XboxControllerHub::LeftStickY(int controller) const {
  return Controller(controller).StickValue(XboxController::kLeftY);
}
bool XboxControllerHub::IsConnected(int controller) const {
  return Controller(controller).IsConnected();
}
bool XboxControllerHub::IsActive(int controller) const {
  return Controller(controller).IsActive();
}

bool XboxControllerHub::AnyActive() const {
  for (const XboxController& controller : controllers_) {
    if (controller.IsActive()) return true;
  }
  return false;
}

uint16_t MotorSpeed(float strength) {
  // Clamped from above only: a negative strength wraps into the unsigned speed as it falls.
  if (strength > 1.0f) strength = 1.0f;
  if (std::isnan(strength)) return 0;
  const float scaled = strength * 65535.0f;
  // Keep the truncation defined for absurd negatives; the wrap of ordinary ones is unchanged.
  const int64_t truncated = scaled < -2147483648.0f ? INT32_MIN : static_cast<int64_t>(scaled);
  return static_cast<uint16_t>(truncated);
}

uint32_t XboxControllerHub::SetVibration(platform::GamePads& pads, int controller, float left,
                                         float right) {
  return pads.SetState(Controller(controller).UserIndex(), MotorSpeed(left), MotorSpeed(right));
}

std::string_view PadButtonName(uint16_t buttonMask) {
  for (const NamedButton& button : kButtonNames) {
    if (button.mask == buttonMask) return button.name;
  }
  return {};
}

uint16_t PadButtonMask(std::string_view name) {
  for (const NamedButton& button : kButtonNames) {
    if (button.name == name) return button.mask;
  }
  return 0;
}

}  // namespace grindle
