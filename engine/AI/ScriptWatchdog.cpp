#include "AI/ScriptWatchdog.h"

#include <lua.hpp>

#include "AI/Script.h"

namespace grindle {
namespace {

void CountSlice(lua_State* state, lua_Debug* debug) {
  ScriptHost& host = ScriptHost::Of(state);
  if (!host.SpendSlice(kWatchdogSlice)) return;
  lua_getinfo(state, "Sl", debug);
  lua_pushfstring(state, "%s:%d: stopped after %d million instructions without returning",
                  debug->short_src, debug->currentline,
                  static_cast<int>(host.InstructionBudget() / 1'000'000));
  lua_error(state);
}

}  // namespace

void WatchForEndlessLoops(lua_State* state) {
  lua_sethook(state, CountSlice, LUA_MASKCOUNT, kWatchdogSlice);
}

}  // namespace grindle
