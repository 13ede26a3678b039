// Keyboard, mouse and pads through a started input system, frame by frame; the key and button
// names; the debug key table against its reference page.
#include <cstdio>
#include <set>
#include <string>
#include <tuple>
#include <vector>

#include "Core/WellKnownKeys.h"
#include "GeneratedDocs.h"
#include "Input/DebugKeys.h"
#include "InputHarness.h"
#include "Platform/GamePads.h"
#include "TempWorkDir.h"
#include "TestOutput.h"

namespace grindle::test {
namespace {

using InputFrames = InputHarness;

// Window-message lParam: x in the low word, y in the high one.
int64_t At(int x, int y) {
  return (static_cast<uint32_t>(y) << 16) | (static_cast<uint32_t>(x) & 0xFFFF);
}
// Window-message wParam of a wheel turn: the delta in the high word.
uint64_t Wheel(int16_t delta) { return static_cast<uint64_t>(static_cast<uint16_t>(delta)) << 16; }

TEST_F(InputFrames, KeyTriggersOnceThenHoldsAndHeldKeysComeOutAscending) {
  const SDL_Scancode keys[] = {SDL_SCANCODE_Z, SDL_SCANCODE_RSHIFT, SDL_SCANCODE_SPACE,
                               SDL_SCANCODE_LEFT, SDL_SCANCODE_1};
  Activate();
  EXPECT_FALSE(Frame().keyboard) << "nothing pressed, nothing changed";
  for (SDL_Scancode key : keys) SetKey(key, true);
  const Keyboard pressed = Frame().keyboard.value();
  EXPECT_TRUE(pressed.IsTriggered(vk::kSpace) && !pressed.IsDown(vk::kSpace));
  for (int frame = 0; frame < 2; ++frame) {
    const SentPayloads held = Frame();
    ASSERT_TRUE(held.keyboard) << "held keys keep the message going, frame " << frame;
    EXPECT_FALSE(held.keyboard->IsTriggered(vk::kSpace));
    uint8_t codes[kKeyCodeCount];
    const int count = held.keyboard->HeldKeys(codes);
    // Shift is held both as itself and as its right-hand key.
    EXPECT_EQ(std::vector<uint8_t>(codes, codes + count),
              (std::vector<uint8_t>{vk::kShift, vk::kSpace, vk::kLeft, '1', 'Z', 0xA1}));
  }
  for (SDL_Scancode key : keys) SetKey(key, false);
  const SentPayloads released = Frame();
  ASSERT_TRUE(released.keyboard) << "the release is a change";
  EXPECT_FALSE(released.keyboard->IsDown(vk::kSpace) || released.keyboard->IsTriggered(vk::kSpace));
  EXPECT_FALSE(Frame().keyboard) << "the frame after the release is quiet";
}

TEST_F(InputFrames, NothingIsPolledWithoutFocusOrUnderTheLoadingScreen) {
  SetKey(SDL_SCANCODE_ESCAPE, true);
  EXPECT_FALSE(Frame().mouse) << "focus starts off";
  Activate();
  EXPECT_TRUE(Frame().keyboard.value().IsTriggered(vk::kEscape));
  Activate(false);
  SetKey(SDL_SCANCODE_ESCAPE, false);
  EXPECT_FALSE(Frame().mouse);
  Activate();
  const Keyboard back = Frame().keyboard.value();  // the release seen late is still a change
  EXPECT_EQ(back.Previous(vk::kEscape) & 0x80, 0x80);
  EXPECT_EQ(back.Current(vk::kEscape), 0);

  root_.Add<std::string>("CurrentLevel", "LoadingScreen");
  SetKey(SDL_SCANCODE_RETURN, true);
  for (int frame = 0; frame < 2; ++frame) {
    const SentPayloads frozen = Frame();
    EXPECT_FALSE(frozen.keyboard || frozen.mouse || frozen.hub) << "frame " << frame;
  }
  // Only the exact name freezes; the key pressed meanwhile reads as triggered afterwards.
  root_.Add<std::string>("CurrentLevel", "LoadingScreen2");
  const SentPayloads after = Frame();
  ASSERT_TRUE(after.keyboard && after.mouse);
  EXPECT_TRUE(after.keyboard->IsTriggered(vk::kReturn));
}

TEST_F(InputFrames, MouseIsSentEveryPolledFrameButtonsStepOncePerFrameAndTheHookGoesAtExit) {
  Activate();
  EXPECT_FALSE(Frame().mouse.value().Changed());
  WindowMessage(kWmLButtonDown, 0, 0);
  WindowMessage(kWmRButtonDown, 0, 0);
  const Mouse down = Frame().mouse.value();
  EXPECT_TRUE(down.IsTriggered(kMouseLeft) && down.IsTriggered(kMouseRight));
  EXPECT_FALSE(down.IsDown(kMouseMiddle));
  EXPECT_TRUE(down.Changed());

  const Mouse held = Frame().mouse.value();
  EXPECT_TRUE(held.IsDown(kMouseLeft));
  EXPECT_FALSE(held.IsTriggered(kMouseLeft) || held.Changed());
  WindowMessage(kWmLButtonUp, 0, 0);
  const Mouse up = Frame().mouse.value();
  EXPECT_TRUE(up.IsReleased(kMouseLeft) && up.IsDown(kMouseRight));

  // Pressed and released between two frames: the frame never sees it.
  WindowMessage(kWmMButtonDown, 0, 0);
  WindowMessage(kWmMButtonUp, 0, 0);
  const Mouse missed = Frame().mouse.value();
  EXPECT_FALSE(missed.IsDown(kMouseMiddle) || missed.Changed());

  const auto hook = root_.Find<BaseWindowMessageFunction*>(KeyOf(WellKnown::MouseInputFunction));
  const auto stored = root_.FindEntry(KeyOf(WellKnown::InputFunction));
  ASSERT_TRUE(hook && stored);
  EXPECT_EQ(static_cast<void*>(*hook), stored->Value()) << "the pointer names the stored hook";
  CaptureStdout([&] { input_.Exit(); });  // the hook must not outlive the mouse it points at
  EXPECT_FALSE(root_.Find<BaseWindowMessageFunction*>(KeyOf(WellKnown::MouseInputFunction)));
  EXPECT_EQ(root_.FindEntry(KeyOf(WellKnown::InputFunction)), nullptr);
  CaptureStdout([&] { input_.Start(); });  // TearDown exits once more
}

TEST_F(InputFrames, WheelLastsOneFrameAndEveryMessageMovesThePosition) {
  Activate();
  WindowMessage(kWmMouseWheel, Wheel(120), 0);
  WindowMessage(kWmMouseWheel, Wheel(240), 0);
  const Mouse turned = Frame().mouse.value();
  EXPECT_EQ(turned.Wheel(), kWheelForward) << "several notches count once";
  EXPECT_TRUE(turned.Changed());
  EXPECT_EQ(Frame().mouse.value().Wheel(), kWheelNone);
  // A zero delta leaves an earlier notch of the same frame alone.
  WindowMessage(kWmMouseWheel, Wheel(-120), 0);
  WindowMessage(kWmMouseWheel, Wheel(0), 0);
  EXPECT_EQ(Frame().mouse.value().Wheel(), kWheelBack);

  WindowMessage(kWmMouseMove, 0, At(100, 50));
  WindowMessage(kWmMouseMove, 0, At(130, 40));
  const Mouse moved = Frame().mouse.value();
  // Deltas are previous minus current.
  EXPECT_EQ(
      std::make_tuple(moved.X(), moved.Y(), moved.PreviousX(), moved.DeltaX(), moved.DeltaY()),
      std::make_tuple(130, 40, 100, -30, 10));
  // Deltas belong to the last message, not to the frame: a quiet frame keeps them.
  EXPECT_EQ(Frame().mouse.value().DeltaX(), -30);
  // x is signed, y is not: a wheel message left of and above the client area.
  WindowMessage(kWmMouseWheel, Wheel(120), At(-5, -3));
  const Mouse outside = Frame().mouse.value();
  EXPECT_EQ(std::make_pair(outside.X(), outside.Y()), std::make_pair(-5, 65533));
}

TEST_F(InputFrames, PadsAreSentOnlyWhileActiveAndBackAloneLetsThemGoQuiet) {
  Activate();
  EXPECT_FALSE(Frame().hub) << "no pad at all";
  VirtualPad pad;
  const XboxControllerHub plugged = Frame().hub.value();  // a pad arriving is news
  EXPECT_TRUE(plugged.IsConnected(0));
  EXPECT_FALSE(plugged.IsConnected(1));
  EXPECT_FALSE(Frame().hub) << "a resting pad is quiet";

  pad.Press(SDL_CONTROLLER_BUTTON_A);
  EXPECT_TRUE(Frame().hub.value().IsTriggered(0, kPadA));
  const SentPayloads held = Frame();
  ASSERT_TRUE(held.hub) << "a held A keeps the pad active";
  EXPECT_TRUE(held.hub->IsDown(0, kPadA));
  EXPECT_FALSE(held.hub->IsTriggered(0, kPadA));

  pad.Press(SDL_CONTROLLER_BUTTON_A, false);
  pad.Press(SDL_CONTROLLER_BUTTON_BACK);
  EXPECT_TRUE(Frame().hub.value().IsTriggered(0, kPadBack)) << "the press moves the packet number";
  EXPECT_FALSE(Frame().hub);
  pad.Press(SDL_CONTROLLER_BUTTON_LEFTSHOULDER);
  Frame();
  EXPECT_TRUE(Frame().hub.value().IsDown(0, kPadLeftBumper));
}

TEST_F(InputFrames, SticksAndTriggersCountOnlyPastTheirThresholdsAndAreNotRescaled) {
  Activate();
  VirtualPad pad;
  Frame();
  using Hub = XboxControllerHub;
  // Dead zones: right stick 8689, left 7849, radial. SDL's y axes point down, the pad's up.
  // Triggers count at full travel only; 32767 - 128 is one step of SDL's axis below it.
  const struct {
    SDL_GameControllerAxis axis;
    int16_t value;
    float (Hub::*read)(int) const;
    float expected;
  } cases[] = {
      {SDL_CONTROLLER_AXIS_RIGHTX, 8689, &Hub::RightStickX, 0.0f},
      {SDL_CONTROLLER_AXIS_RIGHTX, 8700, &Hub::RightStickX, 8700 / 32767.0f},
      {SDL_CONTROLLER_AXIS_RIGHTX, 6200, &Hub::RightStickX, 0.0f},
      {SDL_CONTROLLER_AXIS_RIGHTY, 6200, &Hub::RightStickX, 6200 / 32767.0f},
      {SDL_CONTROLLER_AXIS_RIGHTY, 0, &Hub::RightStickX, 0.0f},
      {SDL_CONTROLLER_AXIS_LEFTY, -7849, &Hub::LeftStickY, 0.0f},
      {SDL_CONTROLLER_AXIS_LEFTY, -7860, &Hub::LeftStickY, 7860 / 32767.0f},
      {SDL_CONTROLLER_AXIS_LEFTY, -32768, &Hub::LeftStickY, 1.0f},
      {SDL_CONTROLLER_AXIS_LEFTY, 0, &Hub::LeftStickY, 0.0f},
      {SDL_CONTROLLER_AXIS_TRIGGERLEFT, 32767 - 128, &Hub::LeftTrigger, 0.0f},
      {SDL_CONTROLLER_AXIS_TRIGGERRIGHT, 32767 - 128, &Hub::RightTrigger, 0.0f},
      {SDL_CONTROLLER_AXIS_TRIGGERRIGHT, 32767, &Hub::RightTrigger, 1.0f},
  };
  Hub changed;
  SentPayloads next;
  for (const auto& c : cases) {
    SCOPED_TRACE(testing::Message() << "axis " << c.axis << " at " << c.value);
    pad.SetAxis(c.axis, c.value);
    changed = Frame().hub.value();  // the packet moved
    EXPECT_NEAR((changed.*c.read)(0), c.expected, 1e-6);
    next = Frame();
    EXPECT_EQ(next.hub.has_value(), c.expected != 0.0f) << "only what counts keeps the pad active";
  }
  EXPECT_TRUE(changed.RightTriggerTriggered(0));
  EXPECT_FALSE(next.hub->RightTriggerTriggered(0));
}

TEST_F(InputFrames, VibrationClampsAboveOnlyAndBadRequestsAreReported) {
  Activate();
  VirtualPad pad;
  Frame();
  // A negative strength wraps into the unsigned motor speed.
  handler_.SendArgs("msgSetControllerVibration", 0, 1.5, -0.5);
  handler_.Deliver(MessageHandler::kDeliverAll);
  EXPECT_EQ(pad.motors, std::make_pair(uint16_t{65535}, static_cast<uint16_t>(-32767)));

  // A script's pad number arrives as a double; pad 3 is not there, pad 7 does not exist.
  pad.motors = {};
  handler_.SendArgs("msgSetControllerVibration", 3.0, 1.0, 1.0);
  handler_.SendArgs("msgSetControllerVibration", 7, 1.0, 1.0);
  handler_.SendArgs("msgSetControllerVibration", 0);
  testing::internal::CaptureStderr();
  handler_.Deliver(MessageHandler::kDeliverAll);
  const std::string errors = testing::internal::GetCapturedStderr();
  EXPECT_EQ(pad.motors, std::make_pair(uint16_t{0}, uint16_t{0}));
  EXPECT_NE(errors.find("controller index 7 is not 0..3"), std::string::npos) << errors;
  EXPECT_NE(errors.find("got 1 arguments"), std::string::npos) << errors;
}

TEST_F(InputFrames, UnpluggedPadKeepsItsLastStateAndANewPadTakesTheLowestFreeSlot) {
  Activate();
  VirtualPad first;
  VirtualPad second;
  Frame();
  second.Press(SDL_CONTROLLER_BUTTON_START);
  second.SetAxis(SDL_CONTROLLER_AXIS_RIGHTX, 20000);
  Frame();
  ASSERT_TRUE(Frame().hub.value().IsDown(1, kPadStart));

  second.Unplug();
  for (int frame = 0; frame < 2; ++frame) {
    const XboxControllerHub stale = Frame().hub.value();  // the held button keeps it active
    EXPECT_FALSE(stale.IsConnected(1)) << frame;
    EXPECT_TRUE(stale.IsDown(1, kPadStart)) << frame;
    EXPECT_GT(stale.RightStickX(1), 0.6f) << frame;
    EXPECT_TRUE(stale.IsConnected(0)) << frame;
  }
  first.Unplug();
  VirtualPad third;
  const XboxControllerHub replugged = Frame().hub.value();
  EXPECT_TRUE(replugged.IsConnected(0)) << "slot 0 was the lowest free one";
  EXPECT_FALSE(replugged.IsConnected(1));
  third.Press(SDL_CONTROLLER_BUTTON_Y);
  EXPECT_TRUE(Frame().hub.value().IsTriggered(0, kPadY));
}

TEST_F(InputFrames, MappingsFromAFileSeatAPadSdlDidNotKnow) {
  platform::GamePads pads;
  VirtualPad pad(false);
  pads.Refresh();
  EXPECT_FALSE(pads.IsConnected(0)) << "an unmapped joystick is no pad";
  const std::string path = ScratchPath("gamecontrollerdb", ".txt").string();
  EXPECT_EQ(pads.LoadMappings(path.c_str()), 0) << "no file yet";
  std::FILE* file = std::fopen(path.c_str(), "w");
  ASSERT_NE(file, nullptr);
  // Every line names its platform; lines for other platforms are skipped.
  std::fprintf(file, "# test pads\n%splatform:%s,\n%splatform:Windows,\n", pad.mapping.c_str(),
               SDL_GetPlatform(), pad.mapping.c_str());
  std::fclose(file);
  EXPECT_EQ(pads.LoadMappings(path.c_str()), 1);
  std::remove(path.c_str());

  pads.Refresh();
  ASSERT_TRUE(pads.IsConnected(0));
  pad.Press(SDL_CONTROLLER_BUTTON_X);
  pads.Refresh();
  XInputState state;
  EXPECT_EQ(pads.GetState(0, state), kPadSuccess);
  EXPECT_EQ(state.Gamepad.wButtons, kPadX);
  EXPECT_EQ(pads.GetState(1, state), kPadNotConnected);
}

// The debug key table: its reference page follows it, and no key is taken twice.
TEST(DebugKeys, TheReferencePageListsTheTableAndNoKeyIsTakenTwice) {
  std::string rendered = "| key | what it does | handled by |\n|---|---|---|\n";
  std::set<int> keys;
  for (const debugkeys::DebugKey& row : debugkeys::kTable) {
    EXPECT_TRUE(keys.insert(row.key).second) << VirtualKeyName(row.key);
    ASSERT_FALSE(VirtualKeyName(row.key).empty()) << row.key;
    rendered += "| " + std::string(VirtualKeyName(row.key)) + " | " + std::string(row.action) +
                " | " + std::string(row.handler) + " |\n";
  }
  ExpectGeneratedSection(std::string(GRINDLE_DOCS_DIR) + "/debug-keys.md", "debug keys", rendered);
}

TEST(InputNames, EveryKeyAndButtonNameLeadsBackToItsOwnCode) {
  for (int key = 0; key < kKeyCodeCount; ++key) {
    const std::string_view name = VirtualKeyName(key);
    EXPECT_TRUE(name.empty() || VirtualKeyFromName(name) == key) << name;
  }
  for (const char* name : {"Space", "Escape", "Return", "Down", "Left", "Right", "Up", "A", "F1"}) {
    EXPECT_NE(VirtualKeyFromName(name), -1) << name;
  }
  EXPECT_EQ(VirtualKeyFromName("NoSuchKey"), -1);
  EXPECT_EQ(VirtualKeyName(0xA1), "RightShift");
  EXPECT_TRUE(VirtualKeyName(255).empty());

  for (int bit = 0; bit < 16; ++bit) {
    const auto mask = static_cast<uint16_t>(1u << bit);
    const std::string_view name = PadButtonName(mask);
    EXPECT_TRUE(name.empty() || PadButtonMask(name) == mask) << name;
  }
  EXPECT_EQ(PadButtonMask("L1"), kPadLeftBumper);
  for (const char* name : {"RightTrigger", "LeftTrigger", "DPadUp", ""}) {
    EXPECT_EQ(PadButtonMask(name), 0) << name;
  }
  EXPECT_EQ(PadButtonName(kPadA | kPadB), "");
}

// Synchronize's argument count is checked once for every system, in the system base's test.
TEST(InputDeathTest, KeyCodesOutsideTheTableStop) {
  const Keyboard keyboard;
  EXPECT_DEATH((StdoutToStderr(), keyboard.IsDown(255)),
               "DETAILS: virtual-key code must be 0..254");
}

}  // namespace
}  // namespace grindle::test
