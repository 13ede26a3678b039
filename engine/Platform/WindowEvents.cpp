#include "Platform/WindowEvents.h"

#include <SDL.h>

namespace grindle::platform {

namespace {

uint64_t KeyFlags(uint32_t buttons) {
  uint64_t flags = 0;
  if ((buttons & SDL_BUTTON_LMASK) != 0) flags |= MK_LBUTTON;
  if ((buttons & SDL_BUTTON_RMASK) != 0) flags |= MK_RBUTTON;
  if ((buttons & SDL_BUTTON_MMASK) != 0) flags |= MK_MBUTTON;
  const SDL_Keymod mods = SDL_GetModState();
  if ((mods & KMOD_SHIFT) != 0) flags |= MK_SHIFT;
  if ((mods & KMOD_CTRL) != 0) flags |= MK_CONTROL;
  return flags;
}

uint32_t ButtonCode(uint8_t button, bool down) {
  switch (button) {
    case SDL_BUTTON_LEFT:
      return down ? WM_LBUTTONDOWN : WM_LBUTTONUP;
    case SDL_BUTTON_RIGHT:
      return down ? WM_RBUTTONDOWN : WM_RBUTTONUP;
    case SDL_BUTTON_MIDDLE:
      return down ? WM_MBUTTONDOWN : WM_MBUTTONUP;
    default:
      return 0;
  }
}

bool IsMinimized(uint32_t windowId) {
  SDL_Window* window = SDL_GetWindowFromID(windowId);
  return window != nullptr && (SDL_GetWindowFlags(window) & SDL_WINDOW_MINIMIZED) != 0;
}

void TranslateWindowEvent(const SDL_WindowEvent& in, WindowEvent& out) {
  SDL_Window* window = SDL_GetWindowFromID(in.windowID);
  const auto sizeEvent = [&](SizeKind kind) {
    out.kind = WindowEventKind::kSize;
    out.sizeKind = kind;
    if (kind != SizeKind::kMinimized && window != nullptr) {
      SDL_GetWindowSize(window, &out.width, &out.height);
    }
  };
  switch (in.event) {
    case SDL_WINDOWEVENT_SIZE_CHANGED: {
      const uint32_t flags = window != nullptr ? SDL_GetWindowFlags(window) : 0;
      sizeEvent((flags & SDL_WINDOW_MAXIMIZED) != 0 ? SizeKind::kMaximized : SizeKind::kRestored);
      // The event carries the size it reports; the window may already have moved on.
      out.width = in.data1;
      out.height = in.data2;
      break;
    }
    case SDL_WINDOWEVENT_MINIMIZED:
      sizeEvent(SizeKind::kMinimized);
      break;
    case SDL_WINDOWEVENT_MAXIMIZED:
      sizeEvent(SizeKind::kMaximized);
      break;
    case SDL_WINDOWEVENT_RESTORED:
      sizeEvent(SizeKind::kRestored);
      break;
    case SDL_WINDOWEVENT_FOCUS_GAINED:
    case SDL_WINDOWEVENT_FOCUS_LOST:
      out.kind = WindowEventKind::kActivate;
      out.isActivation = in.event == SDL_WINDOWEVENT_FOCUS_GAINED;
      out.isMinimized = IsMinimized(in.windowID);
      break;
    case SDL_WINDOWEVENT_CLOSE:
      out.kind = WindowEventKind::kClose;
      break;
    default:
      break;
  }
}

void TranslateMouseEvent(const SDL_Event& in, WindowEvent& out) {
  out.kind = WindowEventKind::kMouse;
  if (in.type == SDL_MOUSEMOTION) {
    out.code = WM_MOUSEMOVE;
    out.wParam = KeyFlags(in.motion.state);
    out.lParam = PackPoint(in.motion.x, in.motion.y);
    return;
  }
  int x = 0;
  int y = 0;
  const uint32_t buttons = SDL_GetMouseState(&x, &y);
  if (in.type == SDL_MOUSEWHEEL) {
    const int sign = in.wheel.direction == SDL_MOUSEWHEEL_FLIPPED ? -1 : 1;
    out.code = WM_MOUSEWHEEL;
    out.wParam = PackWheel(sign * in.wheel.y, KeyFlags(buttons));
    out.lParam = PackPoint(x, y);
    return;
  }
  out.code = ButtonCode(in.button.button, in.type == SDL_MOUSEBUTTONDOWN);
  if (out.code == 0) out.kind = WindowEventKind::kOther;
  out.wParam = KeyFlags(buttons);
  out.lParam = PackPoint(in.button.x, in.button.y);
}

}  // namespace

bool PollWindowEvent(WindowEvent& event) {
  // Pump and take rather than SDL_PollEvent: its end-of-pump sentinel would report an empty queue
  // while events still wait behind it, and let a frame run before them.
  SDL_PumpEvents();
  SDL_Event in;
  if (SDL_PeepEvents(&in, 1, SDL_GETEVENT, SDL_FIRSTEVENT, SDL_LASTEVENT) <= 0) return false;
  event = WindowEvent{};
  switch (in.type) {
    case SDL_QUIT:
      event.kind = WindowEventKind::kQuit;
      break;
    case SDL_WINDOWEVENT:
      TranslateWindowEvent(in.window, event);
      break;
    case SDL_KEYDOWN: {
      event.kind = WindowEventKind::kKeyDown;
      const SDL_Keycode key = in.key.keysym.sym;
      if (key >= SDLK_F1 && key <= SDLK_F12) event.functionKey = 1 + (key - SDLK_F1);
      event.isRepeat = in.key.repeat != 0;
      break;
    }
    case SDL_MOUSEMOTION:
    case SDL_MOUSEBUTTONDOWN:
    case SDL_MOUSEBUTTONUP:
    case SDL_MOUSEWHEEL:
      TranslateMouseEvent(in, event);
      break;
    default:
      break;
  }
  return true;
}

}  // namespace grindle::platform
