// The operating-system window behind the engine's main window: SDL video start-up (the offscreen
// driver where there is no display), an OpenGL-capable resizable window, and the few operations
// the window object performs on it. Main thread only. The SDL window stays alive until the object
// is destroyed, even after Hide(), because the renderer's context is still bound to it while the
// systems exit and unload.
#pragma once

#include <string>

struct SDL_Window;

namespace grindle::platform {

// Starts SDL's video and event subsystems. Without DISPLAY/WAYLAND_DISPLAY and with no
// SDL_VIDEODRIVER chosen by the user, SDL_VIDEODRIVER is set to "offscreen" first (EGL + Mesa).
bool InitVideo();
void QuitVideo();

class NativeWindow {
 public:
  NativeWindow() = default;
  ~NativeWindow();
  NativeWindow(const NativeWindow&) = delete;
  NativeWindow& operator=(const NativeWindow&) = delete;

  // Creates a resizable OpenGL window whose client area is width x height; false on failure.
  bool Create(const std::string& caption, int width, int height);
  SDL_Window* Handle() const { return pWindow_; }

  void ShowMinimized();
  void ShowNormal();
  void Restore();
  void Hide();
  bool IsMinimized() const;
  void SetTitle(const std::string& title);
  void ClientSize(int& width, int& height) const;

 private:
  SDL_Window* pWindow_ = nullptr;
};

// Ends the frame loop the way the window's quit message does: the loop sees it as the next event.
void PostQuit();

}  // namespace grindle::platform
