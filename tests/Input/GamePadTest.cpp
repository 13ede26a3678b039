#include <gtest/gtest.h>

#include <cstdio>
#include <memory>
#include <string>

#include "InputHarness.h"
#include "Platform/GamePads.h"

namespace grindle::test {
namespace {

using GamePadFrames = InputHarness;

constexpr auto kRightX = SDL_CONTROLLER_AXIS_RIGHTX;
constexpr auto kLeftY = SDL_CONTROLLER_AXIS_LEFTY;
constexpr auto kRightTrigger = SDL_CONTROLLER_AXIS_TRIGGERRIGHT;
constexpr auto kLeftTrigger = SDL_CONTROLLER_AXIS_TRIGGERLEFT;

// The SDL trigger value one step below full travel, as the platform reads it.
constexpr int16_t kAlmostFullTrigger = 32767 - 128;

TEST_F(GamePadFrames, QuietPadsSendNothingAndAButtonPressIsActivity) {
  Activate();
  EXPECT_FALSE(Frame().hub) << "no pad at all";

  VirtualPad pad;
  const SentPayloads plugged = Frame();
  ASSERT_TRUE(plugged.hub) << "a pad arriving is news";
  EXPECT_TRUE(plugged.hub.value().IsConnected(0));
  EXPECT_FALSE(plugged.hub.value().IsConnected(1));
  EXPECT_FALSE(Frame().hub) << "a resting pad is quiet";

  pad.Press(SDL_CONTROLLER_BUTTON_A);
  SentPayloads pressed = Frame();
  ASSERT_TRUE(pressed.hub);
  EXPECT_TRUE(pressed.hub.value().IsTriggered(0, kPadA));
  EXPECT_FALSE(pressed.hub.value().IsDown(0, kPadA));
  SentPayloads held = Frame();
  ASSERT_TRUE(held.hub) << "a held A keeps the pad active";
  EXPECT_TRUE(held.hub.value().IsDown(0, kPadA));
  EXPECT_FALSE(held.hub.value().IsTriggered(0, kPadA));
}

TEST_F(GamePadFrames, HeldBackAloneLetsThePadGoQuiet) {
  Activate();
  VirtualPad pad;
  Frame();
  pad.Press(SDL_CONTROLLER_BUTTON_BACK);
  SentPayloads pressed = Frame();
  ASSERT_TRUE(pressed.hub) << "the press moves the packet number";
  EXPECT_TRUE(pressed.hub.value().IsTriggered(0, PadButtonMask("Back")));
  EXPECT_FALSE(Frame().hub);

  pad.Press(SDL_CONTROLLER_BUTTON_LEFTSHOULDER);
  Frame();
  const SentPayloads bumper = Frame();
  ASSERT_TRUE(bumper.hub);
  EXPECT_TRUE(bumper.hub.value().IsDown(0, PadButtonMask("L1")));
  EXPECT_TRUE(bumper.hub.value().IsDown(0, PadButtonMask("LeftBumper")));
}

TEST_F(GamePadFrames, RightStickDeadZoneIsRadialAndNotRescaled) {
  Activate();
  VirtualPad pad;
  Frame();
  pad.SetAxis(kRightX, 8689);
  SentPayloads inside = Frame();
  ASSERT_TRUE(inside.hub) << "the packet moved";
  EXPECT_EQ(inside.hub.value().Controller(0).State().Gamepad.sThumbRX, 8689);
  EXPECT_EQ(inside.hub.value().RightStickX(0), 0.0f);
  EXPECT_FALSE(inside.hub.value().Controller(0).RightStickActive());

  pad.SetAxis(kRightX, 8700);
  Frame();
  const SentPayloads outside = Frame();
  ASSERT_TRUE(outside.hub) << "an active stick keeps the pad active";
  EXPECT_NEAR(outside.hub.value().RightStickX(0), 8700.0f / 32767.0f, 1e-6);
  EXPECT_NEAR(outside.hub.value().RightStickX(0), 0.2655f, 1e-4);
  EXPECT_EQ(outside.hub.value().RightStickY(0), 0.0f);
  EXPECT_NEAR(outside.hub.value().Controller(0).PreviousStickValue(XboxController::kRightX), 0.2655f,
              1e-4);
}

TEST_F(GamePadFrames, LeftStickUsesItsOwnDeadZoneAndReportsUpAsPositive) {
  Activate();
  VirtualPad pad;
  Frame();
  pad.SetAxis(kLeftY, -7849);  // pushed up on SDL's downward axis
  EXPECT_EQ(Frame().hub.value().LeftStickY(0), 0.0f);
  pad.SetAxis(kLeftY, -7860);
  const SentPayloads up = Frame();
  EXPECT_NEAR(up.hub.value().LeftStickY(0), 7860.0f / 32767.0f, 1e-6);
  pad.SetAxis(kLeftY, -32768);
  EXPECT_FLOAT_EQ(Frame().hub.value().LeftStickY(0), 1.0f);
}

TEST_F(GamePadFrames, TriggersCountOnlyAtFullTravel) {
  Activate();
  VirtualPad pad;
  Frame();
  pad.SetAxis(kRightTrigger, kAlmostFullTrigger);
  pad.SetAxis(kLeftTrigger, kAlmostFullTrigger);
  SentPayloads almost = Frame();
  EXPECT_EQ(almost.hub.value().Controller(0).State().Gamepad.bRightTrigger, 254);
  EXPECT_EQ(almost.hub.value().RightTrigger(0), 0.0f);
  EXPECT_FALSE(almost.hub.value().RightTriggerTriggered(0));

  pad.SetAxis(kRightTrigger, 32767);
  SentPayloads full = Frame();
  EXPECT_EQ(full.hub.value().Controller(0).State().Gamepad.bRightTrigger, 255);
  EXPECT_EQ(full.hub.value().RightTrigger(0), 1.0f);
  EXPECT_TRUE(full.hub.value().RightTriggerTriggered(0));
  EXPECT_EQ(full.hub.value().LeftTrigger(0), 0.0f);

  const SentPayloads kept = Frame();
  ASSERT_TRUE(kept.hub) << "a pulled trigger keeps the pad active";
  EXPECT_FALSE(kept.hub.value().RightTriggerTriggered(0));
}

TEST_F(GamePadFrames, VibrationClampsAboveOnlyAndReachesThePad) {
  Activate();
  VirtualPad pad;
  Frame();
  handler_.SendArgs("msgSetControllerVibration", 0, 1.5, 0.5);
  handler_.Deliver(MessageHandler::kDeliverAll);
  EXPECT_GE(pad.rumbleCalls, 1);
  EXPECT_EQ(pad.lowMotor, 65535);
  EXPECT_EQ(pad.highMotor, 32767);

  EXPECT_EQ(MotorSpeed(-0.5f), static_cast<uint16_t>(-32767));
  EXPECT_EQ(MotorSpeed(0.0f), 0);

  // A script's pad number arrives as a double; pad 3 is not there, pad 7 does not exist.
  const int calls = pad.rumbleCalls;
  handler_.SendArgs("msgSetControllerVibration", 3.0, 1.0, 1.0);
  handler_.SendArgs("msgSetControllerVibration", 7, 1.0, 1.0);
  handler_.SendArgs("msgSetControllerVibration", 0);
  testing::internal::CaptureStderr();
  handler_.Deliver(MessageHandler::kDeliverAll);
  const std::string errors = testing::internal::GetCapturedStderr();
  EXPECT_EQ(pad.rumbleCalls, calls);
  EXPECT_NE(errors.find("controller index 7 is not 0..3"), std::string::npos) << errors;
  EXPECT_NE(errors.find("got 1 arguments"), std::string::npos) << errors;
}

TEST_F(GamePadFrames, UnpluggedPadKeepsItsLastStateAndANewPadTakesTheLowestFreeSlot) {
  Activate();
  auto first = std::make_unique<VirtualPad>();
  auto second = std::make_unique<VirtualPad>();
  Frame();
  second->Press(SDL_CONTROLLER_BUTTON_START);
  second->SetAxis(kRightX, 20000);
  Frame();
  ASSERT_TRUE(Frame().hub.value().IsDown(1, kPadStart));

  second->Unplug();
  for (int frame = 0; frame < 2; ++frame) {
    const SentPayloads stale = Frame();
    ASSERT_TRUE(stale.hub) << "a button held at unplug keeps the pad active, frame " << frame;
    EXPECT_FALSE(stale.hub.value().IsConnected(1));
    EXPECT_TRUE(stale.hub.value().IsDown(1, kPadStart));
    EXPECT_GT(stale.hub.value().RightStickX(1), 0.6f);
    EXPECT_TRUE(stale.hub.value().IsConnected(0));
  }

  first->Unplug();
  VirtualPad third;
  const SentPayloads replugged = Frame();
  ASSERT_TRUE(replugged.hub);
  EXPECT_TRUE(replugged.hub.value().IsConnected(0)) << "slot 0 was the lowest free one";
  EXPECT_FALSE(replugged.hub.value().IsConnected(1));
  third.Press(SDL_CONTROLLER_BUTTON_Y);
  EXPECT_TRUE(Frame().hub.value().IsTriggered(0, kPadY));
}

TEST(GamePads, MappingsFromAFileSeatAPadSdlDidNotKnow) {
  ASSERT_EQ(SDL_InitSubSystem(SDL_INIT_GAMECONTROLLER), 0) << SDL_GetError();
  {
    platform::GamePads pads;
    VirtualPad pad(VirtualPad::Mapping::kLeftOut);
    pads.Refresh();
    EXPECT_FALSE(pads.IsConnected(0)) << "an unmapped joystick is no pad";

    const std::string path = testing::TempDir() + "gamecontrollerdb.txt";
    EXPECT_EQ(pads.LoadMappings(path.c_str()), 0) << "no file yet";
    std::FILE* file = std::fopen(path.c_str(), "w");
    ASSERT_NE(file, nullptr);
    // Database files name the platform of every line; lines for other platforms are skipped.
    std::fprintf(file, "# test pads\n%splatform:%s,\n%splatform:Windows,\n",
                 pad.MappingLine().c_str(), SDL_GetPlatform(), pad.MappingLine().c_str());
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
  SDL_QuitSubSystem(SDL_INIT_GAMECONTROLLER);
}

TEST(PadButtonNames, EveryButtonHasOneNameThatLeadsBack) {
  for (int bit = 0; bit < 16; ++bit) {
    const auto mask = static_cast<uint16_t>(1u << bit);
    const std::string_view name = PadButtonName(mask);
    if (name.empty()) continue;
    EXPECT_EQ(PadButtonMask(name), mask) << name;
  }
  for (const char* name : {"RightTrigger", "LeftTrigger", "DPadUp", ""}) {
    EXPECT_EQ(PadButtonMask(name), 0) << name;
  }
  EXPECT_EQ(PadButtonName(kPadA | kPadB), "");
}

}  // namespace
}  // namespace grindle::test
