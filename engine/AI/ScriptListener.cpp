#include "AI/ScriptListener.h"

#include <cstdio>
#include <lua.hpp>

#include "AI/Script.h"
#include "Core/Assert.h"

namespace grindle {

void ScriptListener::Call(MessageArgs args) {
  const int largc = iBoundValues_;
  GRINDLE_ASSERT(largc != 2, "Not enough arguments passed from script!");
  ScriptHost::Running running(ScriptHost::Of(pState_), pState_);
  lua_getglobal(pState_, sFunction_.c_str());
  for (uint32_t i = 0; i < args.count; ++i) {
    if (const std::string* text = args.Get<std::string>(i)) {
      lua_pushlstring(pState_, text->data(), text->size());
    } else if (const double* number = args.Get<double>(i)) {
      lua_pushnumber(pState_, *number);
    } else {
      std::printf("Attempt to pass wrong type of value to lua via message\n");
      // The function still receives the message's full count; the value it cannot read is nil.
      lua_pushnil(pState_);
    }
  }
  if (lua_pcall(pState_, static_cast<int>(args.count), 0, 0) != LUA_OK) {
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
