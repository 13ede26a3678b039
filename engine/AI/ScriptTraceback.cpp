#include "AI/ScriptTraceback.h"

#include <cstdio>
#include <lua.hpp>

namespace grindle {
namespace {

// Runs where the error was raised, while the failing frames are still on the stack.
int PrintTraceback(lua_State* state) {
  const char* error = lua_tostring(state, 1);
  luaL_traceback(state, state, error != nullptr ? error : "(error object is not a string)", 1);
  std::fprintf(stderr, "%s\n", lua_tostring(state, -1));
  std::fflush(stderr);
  lua_pop(state, 1);
  return 1;  // the original error value
}

}  // namespace

int CallWithTraceback(lua_State* state, int nargs) {
  const int handler = lua_gettop(state) - nargs;
  lua_pushcfunction(state, PrintTraceback);
  lua_insert(state, handler);
  const int status = lua_pcall(state, nargs, 0, handler);
  lua_remove(state, handler);
  return status;
}

}  // namespace grindle
