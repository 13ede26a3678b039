// The renderer's window: the platform's OpenGL context on the native window, the client-size back
// buffer the frame composites into (an FBO, so the last frame stays readable for screenshots),
// presenting it, desktop full screen and the window's minimised state. Main thread; the context is
// current from Create until destruction.
#pragma once

#include <epoxy/gl.h>

#include <string>

#include "Platform/GlContext.h"

namespace grindle::gfx {

class TextureCopy;

class WindowContext {
 public:
  WindowContext() = default;
  ~WindowContext();
  WindowContext(const WindowContext&) = delete;
  WindowContext& operator=(const WindowContext&) = delete;

  // Creates the context (swap interval 0) and the fixed GL state the renderer relies on: depth
  // 0..1 and the upper-left origin. Returns false when no 4.5 core context can be had.
  bool Create(SDL_Window* window);
  bool IsCreated() const { return context_.IsCreated(); }

  // (Re)creates the back buffer at the client size: RGBA8 colour (a texture, which presenting
  // samples) and 24-bit depth, 8-bit stencil.
  void ResizeBackBuffer(int width, int height);
  // Binds the back buffer as the render target with a viewport covering it.
  void BindBackBuffer() const;
  void ClearBackBuffer() const;
  GLuint BackBufferFramebuffer() const { return framebuffer_; }
  int BackBufferWidth() const { return width_; }
  int BackBufferHeight() const { return height_; }
  // Writes the back buffer (the last composited frame) as an opaque PNG; false when it cannot.
  bool WriteBackBufferPng(const std::string& fileName) const;

  // Copies the back buffer onto the window (flipped once: the window's rows run bottom-up) and
  // swaps. Returns false when the window cannot show it (minimised).
  bool Present(const TextureCopy& copy);
  void SetFullScreen(bool on);
  bool IsMinimized() const;

 private:
  void ReleaseBackBuffer();

  platform::GlContext context_;
  GLuint framebuffer_ = 0;
  GLuint colorBuffer_ = 0;
  GLuint depthBuffer_ = 0;
  int width_ = 0;
  int height_ = 0;
};

}  // namespace grindle::gfx
