// Where a script state's memory comes from. Each state allocates from an arena of its own: small
// blocks are cut from chunks that belong to that state alone and are recycled by size within it,
// so a state's hot objects stay together however the engine and other states allocate between
// them (calling "Update" in many states is bound by memory, not by Lua). Main thread only; a state
// made here must be closed here.
#pragma once

#include <cstddef>

struct lua_State;

namespace grindle {

// A fresh state with its own arena; an unprotected Lua error in it stops the program.
lua_State* NewScriptState();
// Closes the state, then gives its arena back.
void CloseScriptState(lua_State* state);
// Bytes the state holds from the system: its chunks and its large blocks.
size_t ScriptStateBytes(lua_State* state);

}  // namespace grindle
