#include "InputHarness.h"

#include <cstdio>
#include <cstring>

#include "Core/MemoryManager.h"
#include "Core/WellKnownKeys.h"
#include "TestOutput.h"

namespace grindle::test {
namespace {

// Joystick indices of the virtual pad: buttons in SDL's game-controller order, then the axes.
constexpr int kButtonCount = SDL_CONTROLLER_BUTTON_DPAD_RIGHT + 1;
constexpr int kAxisCount = SDL_CONTROLLER_AXIS_MAX;

// Mapping databases key pads by GUID without the name checksum, so the mapping does too.
std::string MappingFor(int deviceIndex, const char* name) {
  SDL_JoystickGUID guid = SDL_JoystickGetDeviceGUID(deviceIndex);
  guid.data[2] = guid.data[3] = 0;
  char text[33];
  SDL_JoystickGetGUIDString(guid, text, sizeof(text));
  std::string mapping = std::string(text) + "," + name + ",";
  for (int button = 0; button < kButtonCount; ++button) {
    mapping += SDL_GameControllerGetStringForButton(static_cast<SDL_GameControllerButton>(button));
    mapping += ":b" + std::to_string(button) + ",";
  }
  for (int axis = 0; axis < kAxisCount; ++axis) {
    const auto name = static_cast<SDL_GameControllerAxis>(axis);
    const bool isTrigger =
        name == SDL_CONTROLLER_AXIS_TRIGGERLEFT || name == SDL_CONTROLLER_AXIS_TRIGGERRIGHT;
    mapping += std::string(SDL_GameControllerGetStringForAxis(name)) + (isTrigger ? ":+a" : ":a") +
               std::to_string(axis) + ",";
  }
  return mapping;
}

Uint8* SdlKeyState() {
  // SDL hands the array out read-only, but it is SDL's own mutable state: the same bytes its
  // event handling writes. Writing them is how a headless test presses keys.
  return const_cast<Uint8*>(SDL_GetKeyboardState(nullptr));
}

}  // namespace

void InputHarness::SetUp() {
  ASSERT_EQ(SDL_InitSubSystem(SDL_INIT_GAMECONTROLLER), 0) << SDL_GetError();
  InternWellKnownKeys();
  root_.Add<Database>("Systems")->Add<MessageHandler*>("MessageHandler", &handler_);
  handler_.Listen("Keyboard", "Harness",
                  [this](MessageArgs args) { sent_.keyboard = *args.Get<Keyboard>(0); });
  handler_.Listen("Mouse", "Harness",
                  [this](MessageArgs args) { sent_.mouse = *args.Get<Mouse>(0); });
  handler_.Listen("XboxController", "Harness",
                  [this](MessageArgs args) { sent_.hub = *args.Get<XboxControllerHub>(0); });
  void* args[kSynchronizeArgCount] = {&root_, &CurrentMemoryRegistry(), nullptr, nullptr};
  CaptureStdout([&] {
    input_.synchronize(args, kSynchronizeArgCount);
    input_.Load();
    input_.Start();
  });
}

void InputHarness::TearDown() {
  CaptureStdout([&] {
    input_.Exit();
    input_.Unload();
  });
  std::memset(SdlKeyState(), 0, SDL_NUM_SCANCODES);
  SDL_QuitSubSystem(SDL_INIT_GAMECONTROLLER);
}

SentPayloads InputHarness::Frame() {
  sent_ = {};
  input_.Update(1.0f / 60.0f);
  handler_.Deliver(MessageHandler::kDeliverAll);
  return sent_;
}

void InputHarness::Send(const char* message) {
  handler_.Send(message);
  handler_.Deliver(MessageHandler::kDeliverAll);
}

void InputHarness::SetKey(SDL_Scancode scancode, bool down) { SdlKeyState()[scancode] = down; }

void InputHarness::WindowMessage(uint32_t code, uint64_t wParam, int64_t lParam) {
  const auto function = root_.Find<BaseWindowMessageFunction*>(KeyOf(WellKnown::MouseInputFunction));
  ASSERT_TRUE(function);
  ASSERT_TRUE((*function)->IsEnabled());
  (*function)->Handle(code, wParam, lParam);
}

VirtualPad::VirtualPad(Mapping mapping) {
  SDL_VirtualJoystickDesc desc{};
  desc.version = SDL_VIRTUAL_JOYSTICK_DESC_VERSION;
  desc.type = SDL_JOYSTICK_TYPE_UNKNOWN;
  desc.naxes = kAxisCount;
  desc.nbuttons = kButtonCount;
  // Virtual pads' GUIDs carry their name, so a pad left out of SDL's mappings is named apart.
  desc.name = mapping == Mapping::kAdded ? "Grindle Test Pad" : "Grindle File Pad";
  desc.userdata = this;
  desc.Rumble = &VirtualPad::Rumble;
  const int device = SDL_JoystickAttachVirtualEx(&desc);
  EXPECT_GE(device, 0) << SDL_GetError();
  sMapping_ = MappingFor(device, desc.name);
  if (mapping == Mapping::kAdded) {
    EXPECT_GE(SDL_GameControllerAddMapping(sMapping_.c_str()), 0) << SDL_GetError();
    EXPECT_TRUE(SDL_IsGameController(device));
  }
  pJoystick_ = SDL_JoystickOpen(device);
}

VirtualPad::~VirtualPad() { Unplug(); }

void VirtualPad::Press(SDL_GameControllerButton button, bool down) {
  SDL_JoystickSetVirtualButton(pJoystick_, button, down ? 1 : 0);
}

void VirtualPad::SetAxis(SDL_GameControllerAxis axis, int16_t value) {
  SDL_JoystickSetVirtualAxis(pJoystick_, axis, value);
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

int VirtualPad::Rumble(void* self, Uint16 low, Uint16 high) {
  auto* pad = static_cast<VirtualPad*>(self);
  ++pad->rumbleCalls;
  pad->lowMotor = low;
  pad->highMotor = high;
  return 0;
}

}  // namespace grindle::test
