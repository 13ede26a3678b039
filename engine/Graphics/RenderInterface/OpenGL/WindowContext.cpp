#include "Graphics/RenderInterface/OpenGL/WindowContext.h"

#include <SDL.h>

#include <cstdio>

#include "Core/Assert.h"

namespace grindle::gfx {

WindowContext::~WindowContext() {
  if (context_ == nullptr) return;
  ReleaseBackBuffer();
  SDL_GL_DeleteContext(static_cast<SDL_GLContext>(context_));
}

bool WindowContext::Create(SDL_Window* window) {
  window_ = window;
  if (window == nullptr) return false;
  SDL_GL_SetAttribute(SDL_GL_CONTEXT_MAJOR_VERSION, 4);
  SDL_GL_SetAttribute(SDL_GL_CONTEXT_MINOR_VERSION, 5);
  SDL_GL_SetAttribute(SDL_GL_CONTEXT_PROFILE_MASK, SDL_GL_CONTEXT_PROFILE_CORE);
  SDL_GL_SetAttribute(SDL_GL_DOUBLEBUFFER, 1);
  SDL_GLContext context = SDL_GL_CreateContext(window);
  if (context == nullptr) {
    std::printf("OpenGL 4.5 core context creation failed: %s\n", SDL_GetError());
    return false;
  }
  context_ = context;
  if (epoxy_gl_version() < 45) {
    std::printf("OpenGL 4.5 is required; the driver offers %d.%d\n", epoxy_gl_version() / 10,
                epoxy_gl_version() % 10);
    SDL_GL_DeleteContext(context);
    context_ = nullptr;
    return false;
  }
  SDL_GL_SetSwapInterval(0);
  // Depth 0..1 keeps the projection matrices as they are; the upper-left origin makes row 0 of
  // every target the top of the image, as texture coordinates (v = 0 at the top) expect.
  glClipControl(GL_UPPER_LEFT, GL_ZERO_TO_ONE);
  glEnable(GL_TEXTURE_CUBE_MAP_SEAMLESS);
  return true;
}

void WindowContext::ReleaseBackBuffer() {
  if (framebuffer_ != 0) glDeleteFramebuffers(1, &framebuffer_);
  if (colorBuffer_ != 0) glDeleteRenderbuffers(1, &colorBuffer_);
  if (depthBuffer_ != 0) glDeleteRenderbuffers(1, &depthBuffer_);
  framebuffer_ = colorBuffer_ = depthBuffer_ = 0;
}

void WindowContext::ResizeBackBuffer(int width, int height) {
  ReleaseBackBuffer();
  width_ = width > 0 ? width : 1;
  height_ = height > 0 ? height : 1;
  glCreateFramebuffers(1, &framebuffer_);
  glCreateRenderbuffers(1, &colorBuffer_);
  glNamedRenderbufferStorage(colorBuffer_, GL_RGBA8, width_, height_);
  glCreateRenderbuffers(1, &depthBuffer_);
  glNamedRenderbufferStorage(depthBuffer_, GL_DEPTH24_STENCIL8, width_, height_);
  glNamedFramebufferRenderbuffer(framebuffer_, GL_COLOR_ATTACHMENT0, GL_RENDERBUFFER, colorBuffer_);
  glNamedFramebufferRenderbuffer(framebuffer_, GL_DEPTH_STENCIL_ATTACHMENT, GL_RENDERBUFFER,
                                 depthBuffer_);
  GRINDLE_ASSERT(
      glCheckNamedFramebufferStatus(framebuffer_, GL_FRAMEBUFFER) != GL_FRAMEBUFFER_COMPLETE,
      "Back buffer framebuffer is incomplete");
}

void WindowContext::BindBackBuffer() const {
  glBindFramebuffer(GL_FRAMEBUFFER, framebuffer_);
  glViewport(0, 0, width_, height_);
}

void WindowContext::ClearBackBuffer() const {
  static constexpr float kBlack[4] = {0.0f, 0.0f, 0.0f, 1.0f};
  glDepthMask(GL_TRUE);
  glStencilMask(0xFFu);
  glColorMask(GL_TRUE, GL_TRUE, GL_TRUE, GL_TRUE);
  glClearNamedFramebufferfv(framebuffer_, GL_COLOR, 0, kBlack);
  glClearNamedFramebufferfi(framebuffer_, GL_DEPTH_STENCIL, 0, 1.0f, 0);
}

bool WindowContext::Present() {
  if (IsMinimized()) return false;
  int drawableWidth = 0, drawableHeight = 0;
  SDL_GL_GetDrawableSize(window_, &drawableWidth, &drawableHeight);
  glBindFramebuffer(GL_DRAW_FRAMEBUFFER, 0);
  glBlitNamedFramebuffer(framebuffer_, 0, 0, 0, width_, height_, 0, drawableHeight, drawableWidth,
                         0, GL_COLOR_BUFFER_BIT, GL_LINEAR);
  SDL_GL_SwapWindow(window_);
  return true;
}

void WindowContext::SetFullScreen(bool on) {
  if (window_ != nullptr)
    SDL_SetWindowFullscreen(window_, on ? static_cast<Uint32>(SDL_WINDOW_FULLSCREEN_DESKTOP) : 0u);
}

bool WindowContext::IsMinimized() const {
  return window_ != nullptr && (SDL_GetWindowFlags(window_) & SDL_WINDOW_MINIMIZED) != 0;
}

bool IsDigitKeyHeld(int digit) {
  if (SDL_WasInit(SDL_INIT_VIDEO) == 0) return false;
  static constexpr SDL_Scancode kDigits[10] = {
      SDL_SCANCODE_0, SDL_SCANCODE_1, SDL_SCANCODE_2, SDL_SCANCODE_3, SDL_SCANCODE_4,
      SDL_SCANCODE_5, SDL_SCANCODE_6, SDL_SCANCODE_7, SDL_SCANCODE_8, SDL_SCANCODE_9};
  const Uint8* keys = SDL_GetKeyboardState(nullptr);
  return digit >= 0 && digit < 10 && keys != nullptr && keys[kDigits[digit]] != 0;
}

}  // namespace grindle::gfx
