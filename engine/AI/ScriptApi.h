// The nine engine functions a script sees as globals ("SayHey", "FindData", "SetData", "Send",
// "SendImmediate", "Listen", "UnListen", "RayCast", "RayCastName"), registered in that order into
// a fresh state of the script host. Main thread only. None of them raises a Lua error: every
// misuse is reported on standard output and the script goes on.
#pragma once

struct lua_State;

namespace grindle {

void RegisterScriptApi(lua_State* state);

// The database functions, defined beside the path resolution they use.
int FindData(lua_State* state);
int SetData(lua_State* state);

}  // namespace grindle
