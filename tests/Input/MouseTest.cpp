#include <gtest/gtest.h>

#include "Core/WellKnownKeys.h"
#include "InputHarness.h"
#include "TestOutput.h"

namespace grindle::test {
namespace {

using MouseFrames = InputHarness;

int64_t Position(int x, int y) {
  return static_cast<int64_t>((static_cast<uint32_t>(y) << 16) | (static_cast<uint32_t>(x) & 0xFFFF));
}
uint64_t WheelDelta(int16_t delta) { return static_cast<uint64_t>(static_cast<uint16_t>(delta)) << 16; }

TEST_F(MouseFrames, HookIsPublishedWhileStartedAndGoneAfterExit) {
  const auto function = root_.Find<BaseWindowMessageFunction*>(KeyOf(WellKnown::MouseInputFunction));
  ASSERT_TRUE(function);
  const auto stored = root_.FindEntry(KeyOf(WellKnown::InputFunction));
  ASSERT_NE(stored, nullptr);
  EXPECT_EQ(static_cast<void*>(*function), stored->Value()) << "the pointer names the stored hook";

  CaptureStdout([&] { input_.Exit(); });
  EXPECT_FALSE(root_.Find<BaseWindowMessageFunction*>(KeyOf(WellKnown::MouseInputFunction)));
  EXPECT_EQ(root_.FindEntry(KeyOf(WellKnown::InputFunction)), nullptr);
  CaptureStdout([&] { input_.Start(); });  // TearDown exits once more
}

TEST_F(MouseFrames, IsSentEveryPolledFrameAndButtonsStepOncePerFrame) {
  Activate();
  SentPayloads idle = Frame();
  ASSERT_TRUE(idle.mouse);
  EXPECT_FALSE(idle.mouse.value().Changed());

  WindowMessage(kWmLButtonDown, 0, Position(10, 20));
  WindowMessage(kWmRButtonDown, 0, Position(10, 20));
  SentPayloads down = Frame();
  ASSERT_TRUE(down.mouse);
  EXPECT_TRUE(down.mouse.value().IsTriggered(kMouseLeft));
  EXPECT_TRUE(down.mouse.value().IsTriggered(kMouseRight));
  EXPECT_FALSE(down.mouse.value().IsDown(kMouseMiddle));
  EXPECT_TRUE(down.mouse.value().Changed());

  SentPayloads held = Frame();
  EXPECT_TRUE(held.mouse.value().IsDown(kMouseLeft));
  EXPECT_FALSE(held.mouse.value().IsTriggered(kMouseLeft));
  EXPECT_FALSE(held.mouse.value().Changed());

  WindowMessage(kWmLButtonUp, 0, Position(10, 20));
  SentPayloads up = Frame();
  EXPECT_TRUE(up.mouse.value().IsReleased(kMouseLeft));
  EXPECT_TRUE(up.mouse.value().IsDown(kMouseRight));

  // Pressed and released between two frames: the frame never sees it.
  WindowMessage(kWmMButtonDown, 0, Position(10, 20));
  WindowMessage(kWmMButtonUp, 0, Position(10, 20));
  SentPayloads missed = Frame();
  EXPECT_FALSE(missed.mouse.value().IsDown(kMouseMiddle));
  EXPECT_FALSE(missed.mouse.value().Changed());
}

TEST_F(MouseFrames, WheelLastsOneFrameAndSeveralNotchesCountOnce) {
  Activate();
  WindowMessage(kWmMouseWheel, WheelDelta(120), Position(0, 0));
  WindowMessage(kWmMouseWheel, WheelDelta(240), Position(0, 0));
  SentPayloads turned = Frame();
  EXPECT_EQ(turned.mouse.value().Wheel(), kWheelForward);
  EXPECT_TRUE(turned.mouse.value().Changed());
  EXPECT_EQ(Frame().mouse.value().Wheel(), kWheelNone);

  WindowMessage(kWmMouseWheel, WheelDelta(-120), Position(0, 0));
  EXPECT_EQ(Frame().mouse.value().Wheel(), kWheelBack);

  // A zero delta leaves an earlier notch of the same frame alone.
  WindowMessage(kWmMouseWheel, WheelDelta(-120), Position(0, 0));
  WindowMessage(kWmMouseWheel, WheelDelta(0), Position(0, 0));
  EXPECT_EQ(Frame().mouse.value().Wheel(), kWheelBack);
}

TEST_F(MouseFrames, EveryMessageMovesThePositionWithDeltasPreviousMinusCurrent) {
  Activate();
  WindowMessage(kWmMouseMove, 0, Position(100, 50));
  WindowMessage(kWmMouseMove, 0, Position(130, 40));
  SentPayloads moved = Frame();
  EXPECT_EQ(moved.mouse.value().X(), 130);
  EXPECT_EQ(moved.mouse.value().Y(), 40);
  EXPECT_EQ(moved.mouse.value().PreviousX(), 100);
  EXPECT_EQ(moved.mouse.value().DeltaX(), -30) << "moving right gives a negative delta";
  EXPECT_EQ(moved.mouse.value().DeltaY(), 10);

  // Deltas belong to the last message, not to the frame: a quiet frame keeps them.
  EXPECT_EQ(Frame().mouse.value().DeltaX(), -30);

  // x is signed, y is not: a point left of and above the client area.
  WindowMessage(kWmMouseWheel, WheelDelta(120), Position(-5, -3));
  const SentPayloads outside = Frame();
  EXPECT_EQ(outside.mouse.value().X(), -5);
  EXPECT_EQ(outside.mouse.value().Y(), 65533);
}

}  // namespace
}  // namespace grindle::test
