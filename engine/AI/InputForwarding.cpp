#include "AI/InputForwarding.h"

#include <string>
#include <string_view>

#include "Core/MessageHandler.h"
#include "Input/Keyboard.h"
#include "Input/Mouse.h"
#include "Input/XboxControllerHub.h"

namespace grindle {
namespace {

// Debug keys: F1..F5 send these cheats.
constexpr std::string_view kCheats[] = {"EndRound", "StartEarly", "NextLevel", "PreviousLevel",
                                        "MainMenu"};

// Codes below this are the mouse buttons that the key-state bytes also carry.
constexpr int kFirstKeyboardCode = 6;

constexpr std::string_view kPadButtons[] = {"A",    "B",    "X",          "Y",          "Up",
                                            "Down", "Left", "Right",      "Start",      "Back",
                                            "L3",   "R3",   "LeftBumper", "RightBumper"};

// A stick counts as pushed in a direction past this much of its travel.
constexpr float kStickStep = 0.5f;

std::string Text(std::string_view view) { return std::string(view); }

}  // namespace

void InputForwarding::ForwardKeyboard(MessageArgs args) {
  const Keyboard* keyboard = args.Get<Keyboard>(0);
  if (keyboard == nullptr) return;
  for (int key = kFirstKeyboardCode; key < kKeyCodeCount; ++key) {
    const std::string_view name = VirtualKeyName(key);
    if (name.empty()) continue;
    if (keyboard->IsTriggered(key)) {
      messages_.SendArgs("SCR:KeyboardTriggered", Text(name));
      const int cheat = key - vk::kF1;
      if (cheat >= 0 && cheat < static_cast<int>(std::size(kCheats))) {
        messages_.SendArgs("SCR:Cheat", Text(kCheats[cheat]));
      }
    }
    if (keyboard->IsDown(key)) messages_.SendArgs("SCR:KeyboardPressed", Text(name));
  }
}

void InputForwarding::ForwardMouse(MessageArgs args) {
  const Mouse* mouse = args.Get<Mouse>(0);
  if (mouse == nullptr) return;
  for (MouseButton button : {kMouseLeft, kMouseMiddle, kMouseRight}) {
    const std::string name = MouseButtonName(button);
    if (mouse->IsTriggered(button)) messages_.SendArgs("SCR:MouseButtonTriggered", name);
    if (mouse->IsDown(button)) messages_.SendArgs("SCR:MouseButtonPressed", name);
    if (mouse->IsReleased(button)) messages_.SendArgs("SCR:MouseButtonReleased", name);
  }
  if (!hasMousePosition_ || mouse->X() != iMouseX_ || mouse->Y() != iMouseY_) {
    // Movement since the last forwarded position, positive to the right and down.
    const int32_t dx = hasMousePosition_ ? mouse->X() - iMouseX_ : 0;
    const int32_t dy = hasMousePosition_ ? mouse->Y() - iMouseY_ : 0;
    hasMousePosition_ = true;
    iMouseX_ = mouse->X();
    iMouseY_ = mouse->Y();
    messages_.SendArgs("SCR:MouseDeltaPosition", static_cast<double>(dx), static_cast<double>(dy));
    messages_.SendArgs("SCR:MousePosition", static_cast<double>(iMouseX_),
                       static_cast<double>(iMouseY_));
  }
  if (mouse->Wheel() != kWheelNone) {
    messages_.SendArgs("SCR:MouseWheel", mouse->Wheel() == kWheelForward ? 1.0 : -1.0);
  }
}

namespace {

void SendStickSteps(MessageHandler& messages, const char* stick, float x, float y, float previousX,
                    float previousY, double pad) {
  const struct {
    const char* direction;
    bool now;
    bool before;
  } steps[] = {{"Down", y < -kStickStep, previousY < -kStickStep},
               {"Up", y > kStickStep, previousY > kStickStep},
               {"Left", x < -kStickStep, previousX < -kStickStep},
               {"Right", x > kStickStep, previousX > kStickStep}};
  for (const auto& step : steps) {
    if (step.now && !step.before) {
      messages.SendArgs(std::string("msg") + stick + "_" + step.direction, pad);
    }
  }
}

void ForwardTrigger(MessageHandler& messages, const char* name, float value, bool triggered,
                    double pad) {
  if (triggered) {
    messages.SendArgs("SCR:ControllerButtonTriggered", std::string(name), pad);
  } else if (value > 0.0f) {
    messages.SendArgs("SCR:ControllerButton", std::string(name), pad);
  }
}

}  // namespace

void InputForwarding::ForwardPads(MessageArgs args) {
  const XboxControllerHub* hub = args.Get<XboxControllerHub>(0);
  if (hub == nullptr) return;
  for (int pad = 0; pad < kControllerCount; ++pad) {
    if (!hub->IsActive(pad)) continue;
    const XboxController& controller = hub->Controller(pad);
    const double index = pad;
    using S = XboxController::Stick;
    if (controller.LeftStickActive()) {
      messages_.SendArgs("SCR:ControllerLeftStick", index,
                         static_cast<double>(hub->LeftStickX(pad)),
                         static_cast<double>(hub->LeftStickY(pad)));
    }
    if (controller.RightStickActive()) {
      messages_.SendArgs("SCR:ControllerRightStick", index,
                         static_cast<double>(hub->RightStickX(pad)),
                         static_cast<double>(hub->RightStickY(pad)));
    }
    for (std::string_view name : kPadButtons) {
      const uint16_t mask = PadButtonMask(name);
      if (hub->IsTriggered(pad, mask))
        messages_.SendArgs("SCR:ControllerButtonTriggered", Text(name), index);
      if (hub->IsDown(pad, mask)) messages_.SendArgs("SCR:ControllerButton", Text(name), index);
    }
    ForwardTrigger(messages_, "RightTrigger", hub->RightTrigger(pad),
                   hub->RightTriggerTriggered(pad), index);
    ForwardTrigger(messages_, "LeftTrigger", hub->LeftTrigger(pad), hub->LeftTriggerTriggered(pad),
                   index);
    SendStickSteps(messages_, "LeftStick", controller.StickValue(S::kLeftX),
                   controller.StickValue(S::kLeftY), controller.PreviousStickValue(S::kLeftX),
                   controller.PreviousStickValue(S::kLeftY), index);
    SendStickSteps(messages_, "RightStick", controller.StickValue(S::kRightX),
                   controller.StickValue(S::kRightY), controller.PreviousStickValue(S::kRightX),
                   controller.PreviousStickValue(S::kRightY), index);
  }
}

}  // namespace grindle
