// The engine's whole run: start-up in its fixed order, the system life cycle, the frame loop and
// the teardown in its fixed order. Called once, by main, on the main thread, with the working
// directory already set to the game data folder. Returns the process exit status.
#pragma once

#include <functional>
#include <vector>

#include "Core/Bootstrapper/CommandLine.h"

namespace grindle {

class Database;
class ISystem;

// Given the started systems in their order and the root database, returns what the frame loop
// updates instead. Only measurements use it (to time each system or stamp the end of each frame);
// the systems' life cycle always runs on the engine's own list.
using LoopSystemsArrangement =
    std::function<std::vector<ISystem*>(const std::vector<ISystem*>& systems, Database& root)>;

int RunEngine(const EngineOptions& options, const LoopSystemsArrangement& arrange = nullptr);

}  // namespace grindle
