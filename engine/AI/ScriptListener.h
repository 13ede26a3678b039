// The listener a script installs with "Listen": bound to its Lua state and a global function name,
// it calls that function with the message's strings and numbers. Runs on the main thread during
// message delivery. Errors inside the function are printed and are not fatal; the host removes
// the listener before it closes the state, so a closed state is never called.
#pragma once

#include <string>

#include "Core/MessageFunction.h"

struct lua_State;

namespace grindle {

class ScriptListener final : public BaseMessageFunction {
 public:
  ScriptListener(lua_State* state, std::string function)
      : pState_(state), sFunction_(std::move(function)) {}
  void Call(MessageArgs args) override;

 private:
  lua_State* pState_;
  std::string sFunction_;
  // The values this callback was bound to (the state and the function name).
  int iBoundValues_ = 2;
};

// The owner name under which a state's listener for `function` is registered, so that
// "UnListen" takes back exactly that script's registrations.
std::string ScriptListenerOwner(lua_State* state, const std::string& function);

}  // namespace grindle
