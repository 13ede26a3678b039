// Drives a real InputInterface frame by frame and records what it sends. Keys go into SDL's own
// key-state array (the one SDL_GetKeyboardState hands out and the platform layer reads); pads are
// SDL virtual joysticks with an ordinary game-controller mapping, read through SDL's real
// game-controller path. Main thread only, one harness at a time.
#pragma once

#include <SDL.h>
#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <utility>

#include "Core/Database.h"
#include "Core/MessageHandler.h"
#include "Input/InputLibraryInterface.h"

namespace grindle::test {

// What one frame sent, by device.
struct SentPayloads {
  std::optional<Keyboard> keyboard;
  std::optional<Mouse> mouse;
  std::optional<XboxControllerHub> hub;
};

class InputHarness : public testing::Test {
 protected:
  void SetUp() override;
  void TearDown() override;

  // Update then deliver, as one pass of the frame loop does; returns what went out.
  SentPayloads Frame();
  void Activate(bool isActive = true) {
    handler_.Send(isActive ? "WindowActivated" : "WindowDeactivated");
    handler_.Deliver(MessageHandler::kDeliverAll);
  }
  static void SetKey(SDL_Scancode scancode, bool down);
  // Hands a window message to whatever the root holds under MouseInputFunction.
  void WindowMessage(uint32_t code, uint64_t wParam, int64_t lParam);

  Database root_;
  MessageHandler handler_;
  InputInterface input_;
  SentPayloads sent_;
};

// A pad on SDL's virtual joystick driver. Buttons and axes are addressed as the game controller
// names them; the mapping translates to the joystick's own indices.
class VirtualPad {
 public:
  // A pad left out of SDL's mappings is no game controller until a mapping file names it.
  explicit VirtualPad(bool isMapped = true);
  ~VirtualPad() { Unplug(); }
  VirtualPad(const VirtualPad&) = delete;
  VirtualPad& operator=(const VirtualPad&) = delete;

  void Press(SDL_GameControllerButton button, bool down = true) {
    SDL_JoystickSetVirtualButton(pJoystick_, button, down ? 1 : 0);
  }
  void SetAxis(SDL_GameControllerAxis axis, int16_t value) {
    SDL_JoystickSetVirtualAxis(pJoystick_, axis, value);
  }
  void Unplug();

  std::string mapping;                   // the line a gamecontrollerdb.txt would hold for this pad
  std::pair<uint16_t, uint16_t> motors;  // low and high speed of the last rumble

 private:
  SDL_Joystick* pJoystick_ = nullptr;
};

}  // namespace grindle::test
