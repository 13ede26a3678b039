// Keeps LeakSanitizer's exit report about the engine. The OpenGL driver (Mesa, loaded by SDL
// behind the window) keeps a few allocations of its own to the end of the process and is unloaded
// when the window goes; once unloaded, its leaks show up under an unknown module that no
// suppression can name. In builds with AddressSanitizer the driver's libraries therefore stay
// mapped until exit and its known allocations are suppressed; in other builds this does nothing.
#pragma once

namespace grindle::platform {

// Call once an OpenGL window exists (SDL loads the driver with it), before it is destroyed.
void KeepDriverMappedForLeakReports();

}  // namespace grindle::platform
