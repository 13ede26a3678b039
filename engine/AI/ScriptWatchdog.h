// Stops a script call that never returns. Every state gets a count hook; a call from the engine
// (with everything it calls) may run the host's instruction budget, after which each further slice
// raises a Lua error naming the script file and line, which the caller reports as usual. Main
// thread only.
#pragma once

struct lua_State;

namespace grindle {

// Instructions between two checks; the budget is counted in whole slices.
inline constexpr int kWatchdogSlice = 100'000;

void WatchForEndlessLoops(lua_State* state);

}  // namespace grindle
