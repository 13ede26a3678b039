// One set of renderer device objects (GL context with the start-up and scene effects, textures)
// shared by every benchmark of a program that draws without a whole renderer, on a tiny hidden
// window of whatever OpenGL the machine offers (SDL's offscreen driver when nothing else is set).
// The window is tiny so that rasterising stays small beside the CPU work being measured.
#pragma once

#include <SDL.h>
#include <unistd.h>

#include <cstdlib>

#include "Core/MemoryManager.h"
#include "Core/MessageHandler.h"
#include "Core/WellKnownKeys.h"
#include "Graphics/RenderInterface/OpenGL/RenderDevice.h"

namespace grindle::gfx {

// Null when the machine offers no OpenGL 4.5 context.
inline RenderDevice* Device() {
  // The pools the device's objects come from must outlive them: made first, they go last.
  CurrentMemoryRegistry();
  static MessageHandler messages;
  static RenderDevice device(messages);
  static const bool isOpen = [] {
    setenv("SDL_VIDEODRIVER", "offscreen", 0);
    if (SDL_Init(SDL_INIT_VIDEO) != 0) return false;
    SDL_Window* window =
        SDL_CreateWindow("bench", 0, 0, 16, 16, SDL_WINDOW_OPENGL | SDL_WINDOW_HIDDEN);
    InternWellKnownKeys();
    // Effects, fonts and images are read relative to the game folder, as the engine runs.
    if (window == nullptr || chdir(GRINDLE_GAME_DIR) != 0 || !device.Create(window)) return false;
    device.LoadSceneShadersAndLayouts();
    return device.Effects().basic && device.Effects().basic->IsLoaded();
  }();
  return isOpen ? &device : nullptr;
}

}  // namespace grindle::gfx
