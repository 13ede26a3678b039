// Where script states' memory comes from: one heap for all of them, cut in order from slabs that
// hold only script states, without per-block headers, its freed blocks recycled by size. States
// loaded together lie together, and a state costs what Lua itself uses. Main thread only; a state
// made here must be closed here.
#pragma once

#include <cstddef>

struct lua_State;

namespace grindle {

// A fresh state on the script heap; an unprotected Lua error in it stops the program.
lua_State* NewScriptState();
// Closes the state; its blocks go back to the heap for the states made after it.
void CloseScriptState(lua_State* state);
// Bytes taken from the system for states and not in use by any: closed states' blocks and the
// uncut rest of the newest slab. What the next states will use before the process grows.
size_t SpareScriptBytes();

}  // namespace grindle
