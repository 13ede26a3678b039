// Turns the input system's device messages ("Keyboard", "Mouse", "XboxController", whose payloads
// are copies of the devices) into the "SCR:" events scripts listen to, and stick movements into
// the "msg<Stick>_<Direction>" steps. Main thread, during message delivery. Remembers only the
// last mouse position it forwarded.
#pragma once

#include <cstdint>

namespace grindle {

class MessageHandler;
struct MessageArgs;

class InputForwarding {
 public:
  explicit InputForwarding(MessageHandler& messages) : messages_(messages) {}

  void ForwardKeyboard(MessageArgs args);
  void ForwardMouse(MessageArgs args);
  void ForwardPads(MessageArgs args);

 private:
  MessageHandler& messages_;
  bool hasMousePosition_ = false;
  int32_t iMouseX_ = 0;
  int32_t iMouseY_ = 0;
};

}  // namespace grindle
