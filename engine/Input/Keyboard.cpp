#include "Input/Keyboard.h"

#include <cstring>

#include "Core/Assert.h"
#include "Platform/KeyMapping.h"

namespace grindle {
namespace {

// Deliberately two thresholds: "down" is above 16, "up before" is below 16. Real key bytes are
// 0x00/0x01 or 0x80/0x81, so the gap never shows.
constexpr uint8_t kThreshold = 16;
// Codes below this are the mouse buttons, which a change of the keyboard ignores.
constexpr int kFirstKeyboardCode = 6;

static_assert(platform::kKeyStateBytes == kKeyCodeCount + 1);

void CheckKey(int key) {
  GRINDLE_ASSERT(key < 0 || key >= kKeyCodeCount, "virtual-key code must be 0..254");
}

}  // namespace

bool Keyboard::IsDown(int key) const {
  CheckKey(key);
  return current_[key] > kThreshold && previous_[key] > kThreshold;
}

bool Keyboard::IsTriggered(int key) const {
  CheckKey(key);
  return current_[key] > kThreshold && previous_[key] < kThreshold;
}

int Keyboard::HeldKeys(uint8_t (&buffer)[kKeyCodeCount]) const {
  int count = 0;
  for (int key = 0; key < kKeyCodeCount; ++key) {
    if (IsDown(key)) buffer[count++] = static_cast<uint8_t>(key);
  }
  return count;
}

bool Keyboard::Changed() const {
  return std::memcmp(current_ + kFirstKeyboardCode, previous_ + kFirstKeyboardCode,
                     kKeyCodeCount - kFirstKeyboardCode) != 0;
}

uint8_t Keyboard::Current(int key) const {
  CheckKey(key);
  return current_[key];
}

uint8_t Keyboard::Previous(int key) const {
  CheckKey(key);
  return previous_[key];
}

void Keyboard::Sample() {
  std::memcpy(previous_, current_, kKeyCodeCount);
  platform::GetKeyboardState(current_);
}

}  // namespace grindle
