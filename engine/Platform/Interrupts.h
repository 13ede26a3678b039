// What SIGINT and SIGTERM do to the engine. SDL turns the first one into a quit request that the
// frame loop takes at its next pass; a frame stuck somewhere never gets there, so a second signal
// ends the process at once. Installed by InitVideo, after SDL has set up its own handlers.
#pragma once

namespace grindle::platform {

void EndOnSecondInterrupt();

}  // namespace grindle::platform
