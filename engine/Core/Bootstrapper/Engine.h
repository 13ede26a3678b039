// The engine's whole run: start-up in its fixed order, the system life cycle, the frame loop and
// the teardown in its fixed order. Called once, by main, on the main thread, with the working
// directory already set to the game data folder. Returns the process exit status.
#pragma once

#include "Core/Bootstrapper/CommandLine.h"

namespace grindle {

int RunEngine(const EngineOptions& options);

}  // namespace grindle
