#include "Input/InputLibraryInterface.h"

#include <cstdio>
#include <string>

#include "Core/Assert.h"
#include "Core/Database.h"
#include "Core/MessageFunction.h"
#include "Core/MessageHandler.h"
#include "Core/WellKnownKeys.h"
#include "Platform/GamePads.h"

namespace grindle {
namespace {

constexpr const char* kOwner = "Input";
constexpr const char* kVibrationMessage = "msgSetControllerVibration";
constexpr const char* kWindowActivated = "WindowActivated";
constexpr const char* kWindowDeactivated = "WindowDeactivated";
constexpr const char* kLoadingScreen = "LoadingScreen";
// Looked up in the working directory, which is the game's data folder.
constexpr const char* kControllerDatabase = "gamecontrollerdb.txt";

// The index may arrive as the integer the script bridge sends or as a script's own number.
bool ReadControllerIndex(const MessageArgs& args, int& controller) {
  if (const int* index = args.Get<int>(0)) {
    controller = *index;
    return true;
  }
  if (const double* index = args.Get<double>(0)) {
    controller = static_cast<int>(*index);
    return true;
  }
  return false;
}

}  // namespace

InputInterface::InputInterface() : SystemBase("Input") {}

InputInterface::~InputInterface() = default;

void InputInterface::OnLoad() {
  pPads_ = std::make_unique<platform::GamePads>();
  pPads_->LoadMappings(kControllerDatabase);
}

void InputInterface::OnStart() {
  using MouseFunction = WindowMessageFunction<Mouse>;
  const DataHandle<MouseFunction> function = Root().Add<MouseFunction>(
      "InputFunction", MouseFunction(&devices_.mouse, &Mouse::HandleWindowMessage,
                                     &Mouse::AcceptsWindowMessages));
  Root().Add<BaseWindowMessageFunction*>("MouseInputFunction", function.Get());

  MessageHandler& messages = Messages();
  messages.Listen(kVibrationMessage, kOwner, [this](MessageArgs args) {
    OnSetControllerVibration(args);
  });
  messages.Listen(kWindowDeactivated, kOwner, [this](MessageArgs) { isWindowFocused_ = false; });
  messages.Listen(kWindowActivated, kOwner, [this](MessageArgs) { isWindowFocused_ = true; });
}

void InputInterface::OnExit() {
  MessageHandler& messages = Messages();
  messages.UnListen(kVibrationMessage, kOwner);
  messages.UnListen(kWindowDeactivated, kOwner);
  messages.UnListen(kWindowActivated, kOwner);
  Root().Remove(KeyOf(WellKnown::MouseInputFunction));
  Root().Remove(KeyOf(WellKnown::InputFunction));
}

void InputInterface::OnUnload() { pPads_.reset(); }

void InputInterface::Update(float) {
  if (isWindowFocused_) PollFrame();
}

bool InputInterface::IsLoadingScreenUp() const {
  const DataHandle<std::string> level = Root().Find<std::string>(KeyOf(WellKnown::CurrentLevel));
  return level && *level == kLoadingScreen;
}

void InputInterface::PollFrame() {
  // No input reaches the game while the loading screen is up; the keyboard's previous bytes stay
  // those of the last frame before it, so a key pressed meanwhile reads as triggered afterwards.
  if (IsLoadingScreenUp()) return;
  GRINDLE_ASSERT(pPads_ == nullptr, "the input system was updated before it was loaded");

  devices_.keyboard.Sample();
  devices_.mouse.FrameStep();
  devices_.hub.Poll(*pPads_);

  MessageHandler& messages = Messages();
  uint8_t held[kKeyCodeCount] = {};
  if (devices_.keyboard.Changed() || devices_.keyboard.HeldKeys(held) != 0) {
    messages.SendArgs("Keyboard", devices_.keyboard);
  }
  messages.SendArgs("Mouse", devices_.mouse);
  if (devices_.hub.AnyActive()) messages.SendArgs("XboxController", devices_.hub);
}

void InputInterface::OnSetControllerVibration(MessageArgs args) {
  int controller = 0;
  const double* left = args.Get<double>(1);
  const double* right = args.Get<double>(2);
  if (!ReadControllerIndex(args, controller) || left == nullptr || right == nullptr) {
    std::fprintf(stderr,
                 "%s: expected a controller index and two strengths (numbers), got %u "
                 "arguments; ignored\n",
                 kVibrationMessage, args.count);
    return;
  }
  if (controller < 0 || controller >= kControllerCount) {
    std::fprintf(stderr, "%s: controller index %d is not 0..3; ignored\n", kVibrationMessage,
                 controller);
    return;
  }
  devices_.hub.SetVibration(*pPads_, controller, static_cast<float>(*left),
                            static_cast<float>(*right));
}

}  // namespace grindle
