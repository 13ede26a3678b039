#include "AI/ScriptListener.h"

#include <cstdio>
#include <lua.hpp>

#include "AI/Script.h"
#include "AI/ScriptTraceback.h"
#include "Core/Assert.h"

namespace grindle {

void ScriptListener::Call(MessageArgs args) {
  const int largc = iBoundValues_;
  GRINDLE_ASSERT(largc != 2, "Not enough arguments passed from script!");
  ScriptHost::Running running(ScriptHost::Of(pState_), pState_);
  lua_getglobal(pState_, sFunction_.c_str());
  uint32_t pushed = 0;
  for (uint32_t i = 0; i < args.count; ++i) {
    if (const std::string* text = args.Get<std::string>(i)) {
      lua_pushlstring(pState_, text->data(), text->size());
    } else if (const double* number = args.Get<double>(i)) {
      lua_pushnumber(pState_, *number);
    } else {
      std::printf("Attempt to pass wrong type of value to lua via message\n");
      continue;  // nothing is pushed: the values behind it move up one place
    }
    ++pushed;
  }
  // The call still takes the message's full count; the places left over at the end are nil, which
  // keeps the function where the call looks for it.
  for (; pushed < args.count; ++pushed) lua_pushnil(pState_);
  if (CallWithTraceback(pState_, static_cast<int>(args.count)) != LUA_OK) {
    std::printf("Error executing lua function \"%s\" : %s\n", sFunction_.c_str(),
                lua_tostring(pState_, -1));
    lua_pop(pState_, 1);
  }
}

std::string ScriptListenerOwner(lua_State* state, const std::string& function) {
  char prefix[40];
  std::snprintf(prefix, sizeof prefix, "Script@%p:", static_cast<void*>(state));
  return prefix + function;
}

}  // namespace grindle
