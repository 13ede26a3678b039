#include "InputHarness.h"

#include <cstring>

#include "Core/WellKnownKeys.h"
#include "SystemRig.h"

namespace grindle::test {
namespace {

// Joystick indices of the virtual pad: buttons in SDL's game-controller order, then the axes.
constexpr int kButtonCount = SDL_CONTROLLER_BUTTON_DPAD_RIGHT + 1;

Uint8* SdlKeyState() {
  // SDL hands the array out read-only, but it is SDL's own mutable state: the same bytes its
  // event handling writes. Writing them is how a headless test presses keys.
  return const_cast<Uint8*>(SDL_GetKeyboardState(nullptr));
}

}  // namespace

void InputHarness::SetUp() {
  ASSERT_EQ(SDL_InitSubSystem(SDL_INIT_GAMECONTROLLER), 0) << SDL_GetError();
  InternWellKnownKeys();
  PublishHandler(root_, handler_);
  handler_.Listen("Keyboard", "Harness",
                  [this](MessageArgs a) { sent_.keyboard = *a.Get<Keyboard>(0); });
  handler_.Listen("Mouse", "Harness", [this](MessageArgs a) { sent_.mouse = *a.Get<Mouse>(0); });
  handler_.Listen("XboxController", "Harness",
                  [this](MessageArgs a) { sent_.hub = *a.Get<XboxControllerHub>(0); });
  StartSystem(input_, root_);
}

void InputHarness::TearDown() {
  StopSystem(input_);
  std::memset(SdlKeyState(), 0, SDL_NUM_SCANCODES);
  SDL_QuitSubSystem(SDL_INIT_GAMECONTROLLER);
}

SentPayloads InputHarness::Frame() {
  sent_ = {};
  input_.Update(1.0f / 60.0f);
  handler_.Deliver(MessageHandler::kDeliverAll);
  return sent_;
}

void InputHarness::SetKey(SDL_Scancode scancode, bool down) { SdlKeyState()[scancode] = down; }

void InputHarness::WindowMessage(uint32_t code, uint64_t wParam, int64_t lParam) {
  const auto hook = root_.Find<BaseWindowMessageFunction*>(KeyOf(WellKnown::MouseInputFunction));
  ASSERT_TRUE(hook && (*hook)->IsEnabled());
  (*hook)->Handle(code, wParam, lParam);
}

VirtualPad::VirtualPad(bool isMapped) {
  SDL_VirtualJoystickDesc desc{};
  desc.version = SDL_VIRTUAL_JOYSTICK_DESC_VERSION;
  desc.naxes = SDL_CONTROLLER_AXIS_MAX;
  desc.nbuttons = kButtonCount;
  // Virtual pads' GUIDs carry their name, so a pad left out of SDL's mappings is named apart.
  desc.name = isMapped ? "Grindle Test Pad" : "Grindle File Pad";
  desc.userdata = this;
  desc.Rumble = [](void* self, Uint16 low, Uint16 high) {
    static_cast<VirtualPad*>(self)->motors = {low, high};
    return 0;
  };
  const int device = SDL_JoystickAttachVirtualEx(&desc);
  EXPECT_GE(device, 0) << SDL_GetError();
  // Mapping databases key pads by GUID without the name checksum, so the mapping does too.
  SDL_JoystickGUID guid = SDL_JoystickGetDeviceGUID(device);
  guid.data[2] = guid.data[3] = 0;
  char text[33];
  SDL_JoystickGetGUIDString(guid, text, sizeof(text));
  mapping = std::string(text) + "," + desc.name + ",";
  for (int b = 0; b < kButtonCount; ++b) {
    mapping += SDL_GameControllerGetStringForButton(static_cast<SDL_GameControllerButton>(b));
    mapping += ":b" + std::to_string(b) + ",";
  }
  for (int a = 0; a < SDL_CONTROLLER_AXIS_MAX; ++a) {  // the triggers are half axes
    mapping += SDL_GameControllerGetStringForAxis(static_cast<SDL_GameControllerAxis>(a));
    mapping += (a >= SDL_CONTROLLER_AXIS_TRIGGERLEFT ? ":+a" : ":a") + std::to_string(a) + ",";
  }
  if (isMapped) {
    EXPECT_GE(SDL_GameControllerAddMapping(mapping.c_str()), 0) << SDL_GetError();
  }
  pJoystick_ = SDL_JoystickOpen(device);
}

void VirtualPad::Unplug() {
  if (pJoystick_ == nullptr) return;
  const SDL_JoystickID id = SDL_JoystickInstanceID(pJoystick_);
  for (int device = 0; device < SDL_NumJoysticks(); ++device) {
    if (SDL_JoystickGetDeviceInstanceID(device) == id) SDL_JoystickDetachVirtual(device);
  }
  SDL_JoystickClose(pJoystick_);
  pJoystick_ = nullptr;
}

}  // namespace grindle::test
