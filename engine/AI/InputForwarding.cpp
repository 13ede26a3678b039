#include "AI/InputForwarding.h"

#include <string>
#include <string_view>

#include "Core/MessageHandler.h"
#include "Core/Messages/Catalogue.h"
#include "Input/DebugKeys.h"
#include "Input/Keyboard.h"
#include "Input/Mouse.h"
#include "Input/XboxControllerHub.h"

namespace grindle {
namespace {

// Codes below this are the mouse buttons that the key-state bytes also carry.
constexpr int kFirstKeyboardCode = 6;

constexpr std::string_view kPadButtons[] = {"A",    "B",    "X",          "Y",          "Up",
                                            "Down", "Left", "Right",      "Start",      "Back",
                                            "L3",   "R3",   "LeftBumper", "RightBumper"};

// A stick counts as pushed in a direction past this much of its travel.
constexpr float kStickStep = 0.5f;

}  // namespace

void InputForwarding::ForwardKeyboard(MessageArgs args) {
  const Keyboard* keyboard = msg::kKeyboard.Read<0>(args);
  if (keyboard == nullptr) return;
  for (int key = kFirstKeyboardCode; key < kKeyCodeCount; ++key) {
    const std::string_view name = VirtualKeyName(key);
    if (name.empty()) continue;
    if (keyboard->IsTriggered(key)) {
      msg::Post(messages_, msg::scr::kKeyboardTriggered, name);
      const int cheat = key - debugkeys::kFirstCheat;
      if (cheat >= 0 && cheat < static_cast<int>(std::size(debugkeys::kCheats))) {
        msg::Post(messages_, msg::scr::kCheat, debugkeys::kCheats[cheat]);
      }
    }
    if (keyboard->IsDown(key)) msg::Post(messages_, msg::scr::kKeyboardPressed, name);
  }
}

void InputForwarding::ForwardMouse(MessageArgs args) {
  const Mouse* mouse = msg::kMouse.Read<0>(args);
  if (mouse == nullptr) return;
  for (MouseButton button : {kMouseLeft, kMouseMiddle, kMouseRight}) {
    const std::string name = MouseButtonName(button);
    if (mouse->IsTriggered(button)) msg::Post(messages_, msg::scr::kMouseButtonTriggered, name);
    if (mouse->IsDown(button)) msg::Post(messages_, msg::scr::kMouseButtonPressed, name);
    if (mouse->IsReleased(button)) msg::Post(messages_, msg::scr::kMouseButtonReleased, name);
  }
  if (!hasMousePosition_ || mouse->X() != iMouseX_ || mouse->Y() != iMouseY_) {
    // Movement since the last forwarded position, positive to the right and down.
    const int32_t dx = hasMousePosition_ ? mouse->X() - iMouseX_ : 0;
    const int32_t dy = hasMousePosition_ ? mouse->Y() - iMouseY_ : 0;
    hasMousePosition_ = true;
    iMouseX_ = mouse->X();
    iMouseY_ = mouse->Y();
    msg::Post(messages_, msg::scr::kMouseDeltaPosition, dx, dy);
    msg::Post(messages_, msg::scr::kMousePosition, iMouseX_, iMouseY_);
  }
  if (mouse->Wheel() != kWheelNone) {
    msg::Post(messages_, msg::scr::kMouseWheel, mouse->Wheel() == kWheelForward ? 1.0 : -1.0);
  }
}

namespace {

using StickStep = msg::MessageType<msg::Real>;
// Per stick: down, up, left, right.
constexpr const StickStep* kLeftStickSteps[] = {&msg::kLeftStickDown, &msg::kLeftStickUp,
                                                &msg::kLeftStickLeft, &msg::kLeftStickRight};
constexpr const StickStep* kRightStickSteps[] = {&msg::kRightStickDown, &msg::kRightStickUp,
                                                 &msg::kRightStickLeft, &msg::kRightStickRight};

void SendStickSteps(MessageHandler& messages, const StickStep* const (&stepMessages)[4], float x,
                    float y, float previousX, float previousY, double pad) {
  const bool now[] = {y<-kStickStep, y> kStickStep, x<-kStickStep, x> kStickStep};
  const bool before[] = {previousY<-kStickStep, previousY> kStickStep,
                         previousX<-kStickStep, previousX> kStickStep};
  for (size_t i = 0; i < std::size(now); ++i) {
    if (now[i] && !before[i]) msg::Post(messages, *stepMessages[i], pad);
  }
}

void ForwardTrigger(MessageHandler& messages, const char* name, float value, bool triggered,
                    double pad) {
  if (triggered) {
    msg::Post(messages, msg::scr::kControllerButtonTriggered, name, pad);
  } else if (value > 0.0f) {
    msg::Post(messages, msg::scr::kControllerButton, name, pad);
  }
}

}  // namespace

void InputForwarding::ForwardPads(MessageArgs args) {
  const XboxControllerHub* hub = msg::kXboxController.Read<0>(args);
  if (hub == nullptr) return;
  for (int pad = 0; pad < kControllerCount; ++pad) {
    if (!hub->IsActive(pad)) continue;
    const XboxController& controller = hub->Controller(pad);
    const double index = pad;
    using S = XboxController::Stick;
    if (controller.LeftStickActive()) {
      msg::Post(messages_, msg::scr::kControllerLeftStick, index, hub->LeftStickX(pad),
                hub->LeftStickY(pad));
    }
    if (controller.RightStickActive()) {
      msg::Post(messages_, msg::scr::kControllerRightStick, index, hub->RightStickX(pad),
                hub->RightStickY(pad));
    }
    for (std::string_view name : kPadButtons) {
      const uint16_t mask = PadButtonMask(name);
      if (hub->IsTriggered(pad, mask))
        msg::Post(messages_, msg::scr::kControllerButtonTriggered, name, index);
      if (hub->IsDown(pad, mask)) msg::Post(messages_, msg::scr::kControllerButton, name, index);
    }
    ForwardTrigger(messages_, "RightTrigger", hub->RightTrigger(pad),
                   hub->RightTriggerTriggered(pad), index);
    ForwardTrigger(messages_, "LeftTrigger", hub->LeftTrigger(pad), hub->LeftTriggerTriggered(pad),
                   index);
    SendStickSteps(messages_, kLeftStickSteps, controller.StickValue(S::kLeftX),
                   controller.StickValue(S::kLeftY), controller.PreviousStickValue(S::kLeftX),
                   controller.PreviousStickValue(S::kLeftY), index);
    SendStickSteps(messages_, kRightStickSteps, controller.StickValue(S::kRightX),
                   controller.StickValue(S::kRightY), controller.PreviousStickValue(S::kRightX),
                   controller.PreviousStickValue(S::kRightY), index);
  }
}

}  // namespace grindle
