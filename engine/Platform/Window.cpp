#include "Platform/Window.h"

#include <SDL.h>

#include <cstdlib>

#include "Platform/Interrupts.h"
#include "Platform/LeakReports.h"

namespace grindle::platform {

namespace {

bool DisplayAvailable() {
  return std::getenv("DISPLAY") != nullptr || std::getenv("WAYLAND_DISPLAY") != nullptr;
}

// The renderer asks for a 4.5 core context on this window; on X11 the framebuffer format is fixed
// when the window is made, so depth and stencil are requested here.
void RequestOpenGLFormat() {
  SDL_GL_SetAttribute(SDL_GL_CONTEXT_MAJOR_VERSION, 4);
  SDL_GL_SetAttribute(SDL_GL_CONTEXT_MINOR_VERSION, 5);
  SDL_GL_SetAttribute(SDL_GL_CONTEXT_PROFILE_MASK, SDL_GL_CONTEXT_PROFILE_CORE);
  SDL_GL_SetAttribute(SDL_GL_DOUBLEBUFFER, 1);
  SDL_GL_SetAttribute(SDL_GL_DEPTH_SIZE, 24);
  SDL_GL_SetAttribute(SDL_GL_STENCIL_SIZE, 8);
}

}  // namespace

bool InitVideo() {
  if (!DisplayAvailable() && std::getenv("SDL_VIDEODRIVER") == nullptr) {
    setenv("SDL_VIDEODRIVER", "offscreen", 0);
  }
  if (SDL_InitSubSystem(SDL_INIT_VIDEO | SDL_INIT_EVENTS) != 0) return false;
  EndOnSecondInterrupt();
  return true;
}

void QuitVideo() { SDL_QuitSubSystem(SDL_INIT_VIDEO | SDL_INIT_EVENTS); }

NativeWindow::~NativeWindow() {
  if (pWindow_ != nullptr) SDL_DestroyWindow(pWindow_);
}

bool NativeWindow::Create(const std::string& caption, int width, int height) {
  RequestOpenGLFormat();
  pWindow_ = SDL_CreateWindow(caption.c_str(), SDL_WINDOWPOS_UNDEFINED, SDL_WINDOWPOS_UNDEFINED,
                              width, height, SDL_WINDOW_OPENGL | SDL_WINDOW_RESIZABLE);
  if (pWindow_ == nullptr) return false;
  // SDL has loaded the OpenGL driver for the window by now.
  KeepDriverMappedForLeakReports();
  return true;
}

void NativeWindow::ShowMinimized() {
  if (pWindow_ != nullptr) SDL_MinimizeWindow(pWindow_);
}

void NativeWindow::ShowNormal() {
  if (pWindow_ == nullptr) return;
  SDL_ShowWindow(pWindow_);
  SDL_RestoreWindow(pWindow_);
}

void NativeWindow::Restore() {
  if (pWindow_ != nullptr) SDL_RestoreWindow(pWindow_);
}

void NativeWindow::Hide() {
  if (pWindow_ != nullptr) SDL_HideWindow(pWindow_);
}

bool NativeWindow::IsMinimized() const {
  return pWindow_ != nullptr && (SDL_GetWindowFlags(pWindow_) & SDL_WINDOW_MINIMIZED) != 0;
}

void NativeWindow::SetTitle(const std::string& title) {
  if (pWindow_ != nullptr) SDL_SetWindowTitle(pWindow_, title.c_str());
}

void NativeWindow::ClientSize(int& width, int& height) const {
  width = 0;
  height = 0;
  if (pWindow_ != nullptr) SDL_GetWindowSize(pWindow_, &width, &height);
}

void PostQuit() {
  SDL_Event quit{};
  quit.type = SDL_QUIT;
  SDL_PushEvent(&quit);
}

}  // namespace grindle::platform
