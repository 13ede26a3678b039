#include "Platform/Dialogs.h"

#include <SDL.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace grindle::platform {

bool HasDisplay() {
  const char* driver = std::getenv("SDL_VIDEODRIVER");
  if (driver != nullptr && (std::strcmp(driver, "offscreen") == 0 || std::strcmp(driver, "dummy") == 0)) {
    return false;
  }
  return std::getenv("DISPLAY") != nullptr || std::getenv("WAYLAND_DISPLAY") != nullptr;
}

void ShowMessageBox(const char* caption, const char* text) {
  if (HasDisplay() && SDL_ShowSimpleMessageBox(0, caption, text, nullptr) == 0) return;
  std::fprintf(stderr, "[%s]\n%s\n", caption, text);
  std::fflush(stderr);
}

void ShowCursor() {
  if (SDL_WasInit(SDL_INIT_VIDEO) != 0) SDL_ShowCursor(SDL_ENABLE);
}

}  // namespace grindle::platform
