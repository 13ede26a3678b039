// The input system: samples keyboard, mouse and the four game pads once per frame while the window
// has focus and publishes copies as "Keyboard", "Mouse" and "XboxController". Created and driven by
// the start-up code like every system (main thread only). Start stores the mouse's window-message
// hook in the root ("InputFunction", and "MouseInputFunction" pointing at it); Exit removes both,
// so the hook never outlives the mouse it points at.
#pragma once

#include <memory>

#include "Core/Messages/RouteTable.h"
#include "Core/SystemBase.h"
#include "Input/Keyboard.h"
#include "Input/Mouse.h"
#include "Input/XboxControllerHub.h"

namespace grindle {

struct MessageArgs;

namespace platform {
class GamePads;
}

// The one input object; member order is the documented order of the devices.
struct InputDevices {
  Keyboard keyboard;
  Mouse mouse;
  XboxControllerHub hub;
};

class InputInterface final : public SystemBase {
 public:
  InputInterface();
  ~InputInterface() override;

  void Update(float dt) override;

 private:
  void OnLoad() override;
  void OnStart() override;
  void OnExit() override;
  void OnUnload() override;

  bool IsLoadingScreenUp() const;
  void PollFrame();
  // What the input system listens to, under the owner "Input".
  static const msg::RouteTable<InputInterface>& Routes();
  void OnSetControllerVibration(MessageArgs args);

  InputDevices devices_;
  std::unique_ptr<platform::GamePads> pPads_;
  // Nothing is polled until the window reports its first activation.
  bool isWindowFocused_ = false;
};

}  // namespace grindle
