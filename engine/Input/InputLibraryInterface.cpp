#include "Input/InputLibraryInterface.h"

#include <cstdio>
#include <optional>
#include <string>

#include "Core/Assert.h"
#include "Core/Database.h"
#include "Core/MessageFunction.h"
#include "Core/MessageHandler.h"
#include "Core/Messages/Catalogue.h"
#include "Core/WellKnownKeys.h"
#include "Platform/GamePads.h"

namespace grindle {
namespace {

constexpr const char* kLoadingScreen = "LoadingScreen";
// Looked up in the working directory, which is the game's data folder.
constexpr const char* kControllerDatabase = "gamecontrollerdb.txt";

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
      "InputFunction",
      MouseFunction(&devices_.mouse, &Mouse::HandleWindowMessage, &Mouse::AcceptsWindowMessages));
  Root().Add<BaseWindowMessageFunction*>("MouseInputFunction", function.Get());

  Routes().Listen(Messages(), *this);
}

const msg::RouteTable<InputInterface>& InputInterface::Routes() {
  using I = InputInterface;
  static constexpr msg::Route<I> kRoutes[] = {
      {msg::kSetControllerVibration, [](I& i, MessageArgs a) { i.OnSetControllerVibration(a); }},
      {msg::kWindowDeactivated, [](I& i, MessageArgs) { i.isWindowFocused_ = false; }},
      {msg::kWindowActivated, [](I& i, MessageArgs) { i.isWindowFocused_ = true; }},
  };
  static constexpr msg::RouteTable<I> kTable{"Input", kRoutes};
  return kTable;
}

void InputInterface::OnExit() {
  Routes().UnListen(Messages());
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
    msg::Post(messages, msg::kKeyboard, devices_.keyboard);
  }
  msg::Post(messages, msg::kMouse, devices_.mouse);
  if (devices_.hub.AnyActive()) msg::Post(messages, msg::kXboxController, devices_.hub);
}

void InputInterface::OnSetControllerVibration(MessageArgs args) {
  const std::optional<double> index = msg::kSetControllerVibration.Read<0>(args);
  const std::optional<double> left = msg::kSetControllerVibration.Read<1>(args);
  const std::optional<double> right = msg::kSetControllerVibration.Read<2>(args);
  if (!index || !left || !right) {
    std::fprintf(stderr,
                 "%s: expected a controller index and two strengths (numbers), got %u "
                 "arguments; ignored\n",
                 msg::NameOf(msg::kSetControllerVibration), args.count);
    return;
  }
  const int controller = static_cast<int>(*index);
  if (controller < 0 || controller >= kControllerCount) {
    std::fprintf(stderr, "%s: controller index %d is not 0..3; ignored\n",
                 msg::NameOf(msg::kSetControllerVibration), controller);
    return;
  }
  devices_.hub.SetVibration(*pPads_, controller, static_cast<float>(*left),
                            static_cast<float>(*right));
}

}  // namespace grindle
