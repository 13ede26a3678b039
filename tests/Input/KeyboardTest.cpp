#include <gtest/gtest.h>

#include "InputHarness.h"
#include "TestOutput.h"

namespace grindle::test {
namespace {

using KeyboardFrames = InputHarness;

TEST_F(KeyboardFrames, KeyTriggersOnceThenHoldsThenReportsItsRelease) {
  Activate();
  EXPECT_FALSE(Frame().keyboard) << "nothing pressed, nothing changed";

  SetKey(SDL_SCANCODE_SPACE, true);
  SentPayloads pressed = Frame();
  ASSERT_TRUE(pressed.keyboard);
  EXPECT_TRUE(pressed.keyboard.value().IsTriggered(vk::kSpace));
  EXPECT_FALSE(pressed.keyboard.value().IsDown(vk::kSpace));

  for (int frame = 0; frame < 3; ++frame) {
    SentPayloads held = Frame();
    ASSERT_TRUE(held.keyboard) << "a held key keeps the message going, frame " << frame;
    EXPECT_TRUE(held.keyboard.value().IsDown(vk::kSpace));
    EXPECT_FALSE(held.keyboard.value().IsTriggered(vk::kSpace));
    uint8_t keys[kKeyCodeCount];
    ASSERT_EQ(held.keyboard.value().HeldKeys(keys), 1);
    EXPECT_EQ(keys[0], vk::kSpace);
  }

  SetKey(SDL_SCANCODE_SPACE, false);
  SentPayloads released = Frame();
  ASSERT_TRUE(released.keyboard) << "the release is a change";
  EXPECT_FALSE(released.keyboard.value().IsDown(vk::kSpace));
  EXPECT_FALSE(released.keyboard.value().IsTriggered(vk::kSpace));
  EXPECT_FALSE(Frame().keyboard) << "the frame after the release is quiet";
}

TEST_F(KeyboardFrames, HeldKeysComeOutAscendingWithGenericAndSidedModifiers) {
  Activate();
  SetKey(SDL_SCANCODE_Z, true);
  SetKey(SDL_SCANCODE_RSHIFT, true);
  SetKey(SDL_SCANCODE_LEFT, true);
  SetKey(SDL_SCANCODE_1, true);
  Frame();
  const SentPayloads held = Frame();
  ASSERT_TRUE(held.keyboard);
  uint8_t keys[kKeyCodeCount];
  const int count = held.keyboard.value().HeldKeys(keys);
  ASSERT_EQ(count, 5);
  const uint8_t expected[] = {vk::kShift, vk::kLeft, '1', 'Z', 0xA1};
  for (int i = 0; i < count; ++i) EXPECT_EQ(keys[i], expected[i]) << "position " << i;
  EXPECT_EQ(VirtualKeyName(keys[4]), "RightShift");
}

TEST_F(KeyboardFrames, LoadingScreenFreezesInputAndTheKeyReadsTriggeredAfterIt) {
  Activate();
  Frame();
  root_.Add<std::string>("CurrentLevel", "LoadingScreen");
  SetKey(SDL_SCANCODE_RETURN, true);
  for (int frame = 0; frame < 2; ++frame) {
    const SentPayloads frozen = Frame();
    EXPECT_FALSE(frozen.keyboard || frozen.mouse || frozen.hub) << "frame " << frame;
  }
  // Only the exact name freezes input.
  root_.Add<std::string>("CurrentLevel", "LoadingScreen2");
  const SentPayloads after = Frame();
  ASSERT_TRUE(after.keyboard);
  EXPECT_TRUE(after.keyboard.value().IsTriggered(vk::kReturn));
  EXPECT_TRUE(after.mouse);
}

TEST_F(KeyboardFrames, NothingIsPolledWithoutFocus) {
  SetKey(SDL_SCANCODE_ESCAPE, true);
  SentPayloads unfocused = Frame();
  EXPECT_FALSE(unfocused.keyboard || unfocused.mouse) << "focus starts off";

  Activate();
  SentPayloads focused = Frame();
  ASSERT_TRUE(focused.keyboard);
  EXPECT_TRUE(focused.keyboard.value().IsTriggered(vk::kEscape));

  Deactivate();
  SetKey(SDL_SCANCODE_ESCAPE, false);
  EXPECT_FALSE(Frame().mouse);
  Activate();
  const SentPayloads back = Frame();
  ASSERT_TRUE(back.keyboard) << "the release seen late is still a change";
  EXPECT_EQ(back.keyboard.value().Previous(vk::kEscape) & 0x80, 0x80);
  EXPECT_EQ(back.keyboard.value().Current(vk::kEscape), 0);
}

TEST(KeyNames, EveryNameLeadsBackToItsOwnCode) {
  int named = 0;
  for (int key = 0; key < kKeyCodeCount; ++key) {
    const std::string_view name = VirtualKeyName(key);
    if (name.empty()) continue;
    ++named;
    EXPECT_EQ(VirtualKeyFromName(name), key) << name;
  }
  EXPECT_GT(named, 100);
  for (const char* name : {"Space", "Escape", "Return", "Down", "Left", "Right", "Up", "A", "F1"}) {
    EXPECT_NE(VirtualKeyFromName(name), -1) << name;
  }
  EXPECT_EQ(VirtualKeyFromName(""), -1);
  EXPECT_EQ(VirtualKeyFromName("NoSuchKey"), -1);
  EXPECT_TRUE(VirtualKeyName(255).empty());
}

TEST(KeyboardDeathTest, CodesOutsideTheTableStop) {
  const Keyboard keyboard;
  EXPECT_DEATH(
      {
        StdoutToStderr();
        keyboard.IsDown(255);
      },
      "DETAILS: virtual-key code must be 0..254");
}

TEST(InputDeathTest, SynchronizeWithThreeArgumentsStops) {
  auto synchronizeWithThree = [] {
    Database root;
    void* args[3] = {&root, &CurrentMemoryRegistry(), nullptr};
    InputInterface input;
    static_cast<ISystem&>(input).synchronize(args, 3);
  };
  EXPECT_DEATH(synchronizeWithThree(), "DETAILS: wrong arg count passed to synchronize");
}

}  // namespace
}  // namespace grindle::test
