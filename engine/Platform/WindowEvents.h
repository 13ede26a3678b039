// SDL's event queue seen as the window messages the engine's window procedure expects: one event
// taken per call, translated into a size, activation, mouse (Win32 codes 0x200-0x20A with their
// packed parameters), key, close or quit record. Main thread only; events that mean nothing to the
// window procedure come back as kOther so that the frame loop still counts them as taken.
#pragma once

#include <cstdint>

namespace grindle::platform {

enum class WindowEventKind { kOther, kQuit, kClose, kSize, kActivate, kKeyDown, kMouse };
enum class SizeKind { kRestored, kMinimized, kMaximized };

// The window-message codes of the mouse, as the mouse callback receives them.
inline constexpr uint32_t WM_MOUSEMOVE = 0x200;
inline constexpr uint32_t WM_LBUTTONDOWN = 0x201;
inline constexpr uint32_t WM_LBUTTONUP = 0x202;
inline constexpr uint32_t WM_RBUTTONDOWN = 0x204;
inline constexpr uint32_t WM_RBUTTONUP = 0x205;
inline constexpr uint32_t WM_MBUTTONDOWN = 0x207;
inline constexpr uint32_t WM_MBUTTONUP = 0x208;
inline constexpr uint32_t WM_MOUSEWHEEL = 0x20A;
inline constexpr int kWheelDelta = 120;

// Key-state flags carried in the low word of a mouse message's wParam.
inline constexpr uint64_t MK_LBUTTON = 0x01;
inline constexpr uint64_t MK_RBUTTON = 0x02;
inline constexpr uint64_t MK_SHIFT = 0x04;
inline constexpr uint64_t MK_CONTROL = 0x08;
inline constexpr uint64_t MK_MBUTTON = 0x10;

struct WindowEvent {
  WindowEventKind kind = WindowEventKind::kOther;
  // kSize: the new client size (0 x 0 when minimized, as the window procedure expects).
  SizeKind sizeKind = SizeKind::kRestored;
  int width = 0;
  int height = 0;
  // kActivate: gained (true) or lost focus, and whether the window is minimized meanwhile.
  bool isActivation = false;
  bool isMinimized = false;
  // kMouse: the message code and its two parameters.
  uint32_t code = 0;
  uint64_t wParam = 0;
  int64_t lParam = 0;
  // kKeyDown: 1..12 for the function keys F1..F12, otherwise 0; and whether the key-down is the
  // keyboard's auto-repeat of a key already held.
  int functionKey = 0;
  bool isRepeat = false;
};

// lParam of a mouse message: x in the low word, y in the high word, each as a signed 16-bit value.
constexpr int64_t PackPoint(int x, int y) {
  return static_cast<int64_t>((static_cast<uint32_t>(x) & 0xFFFFu) |
                              ((static_cast<uint32_t>(y) & 0xFFFFu) << 16));
}

// wParam of a wheel message: the signed delta (120 per notch) in the high word, key flags low.
constexpr uint64_t PackWheel(int notches, uint64_t keyFlags) {
  return ((static_cast<uint64_t>(static_cast<uint16_t>(notches * kWheelDelta))) << 16) |
         (keyFlags & 0xFFFFu);
}

// Takes one event off the queue; false when the queue is empty.
bool PollWindowEvent(WindowEvent& event);

}  // namespace grindle::platform
