#include "Platform/Clock.h"

#include <SDL.h>

#include <chrono>

namespace grindle::platform {

int64_t PerformanceCounter() { return static_cast<int64_t>(SDL_GetPerformanceCounter()); }

int64_t PerformanceFrequency() { return static_cast<int64_t>(SDL_GetPerformanceFrequency()); }

uint64_t MillisecondsSinceEpoch() {
  const auto now = std::chrono::system_clock::now().time_since_epoch();
  return static_cast<uint64_t>(std::chrono::duration_cast<std::chrono::milliseconds>(now).count());
}

void SleepMilliseconds(uint32_t milliseconds) { SDL_Delay(milliseconds); }

}  // namespace grindle::platform
