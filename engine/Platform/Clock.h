// The high-frequency counter, the millisecond wall time and the frame sleep. Thin wrappers over
// SDL's timer functions so that nothing outside the platform layer includes SDL. Callable from any
// thread; the counter never goes backwards.
#pragma once

#include <cstdint>

namespace grindle::platform {

int64_t PerformanceCounter();
// Counts per second; zero would mean the machine has no usable counter.
int64_t PerformanceFrequency();
// Milliseconds since the epoch, for seeding the C random generator.
uint64_t MillisecondsSinceEpoch();
void SleepMilliseconds(uint32_t milliseconds);

}  // namespace grindle::platform
