// The OpenGL side of the native window: an OpenGL 4.5 core context created on it, presenting the
// window's back buffer, desktop full screen and the minimised state. The renderer reaches the
// window system only through this; main thread, and the context is current from Create until
// destruction. The window outlives the context (the window object keeps it until the systems
// have unloaded).
#pragma once

struct SDL_Window;

namespace grindle::platform {

class GlContext {
 public:
  GlContext() = default;
  ~GlContext();
  GlContext(const GlContext&) = delete;
  GlContext& operator=(const GlContext&) = delete;

  // Creates a double-buffered 4.5 core context on `window`, makes it current with swap interval 0
  // and returns true; prints why and returns false when the driver offers no such context.
  bool Create(SDL_Window* window);
  bool IsCreated() const { return context_ != nullptr; }

  // The size of the window's default framebuffer in pixels.
  void DrawableSize(int& width, int& height) const;
  void SwapBuffers();
  void SetFullScreen(bool on);
  bool IsMinimized() const;

 private:
  SDL_Window* window_ = nullptr;
  void* context_ = nullptr;
};

}  // namespace grindle::platform
