#include "Platform/GlContext.h"

#include <SDL.h>
#include <epoxy/gl.h>

#include <cstdio>

namespace grindle::platform {

GlContext::~GlContext() {
  if (context_ != nullptr) SDL_GL_DeleteContext(static_cast<SDL_GLContext>(context_));
}

bool GlContext::Create(SDL_Window* window) {
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
  if (epoxy_gl_version() < 45) {
    std::printf("OpenGL 4.5 is required; the driver offers %d.%d\n", epoxy_gl_version() / 10,
                epoxy_gl_version() % 10);
    SDL_GL_DeleteContext(context);
    return false;
  }
  context_ = context;
  SDL_GL_SetSwapInterval(0);
  return true;
}

void GlContext::DrawableSize(int& width, int& height) const {
  SDL_GL_GetDrawableSize(window_, &width, &height);
}

void GlContext::SwapBuffers() { SDL_GL_SwapWindow(window_); }

void GlContext::SetFullScreen(bool on) {
  if (window_ != nullptr)
    SDL_SetWindowFullscreen(window_, on ? static_cast<Uint32>(SDL_WINDOW_FULLSCREEN_DESKTOP) : 0u);
}

bool GlContext::IsMinimized() const {
  return window_ != nullptr && (SDL_GetWindowFlags(window_) & SDL_WINDOW_MINIMIZED) != 0;
}

}  // namespace grindle::platform
