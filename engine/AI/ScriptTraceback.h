// Protected calls into a script that leave a trace for the developer: on an error, the Lua call
// stack (files and lines) goes to standard error while the error value itself comes back
// unchanged, so the texts printed on standard output stay exactly what they were. Main thread.
#pragma once

struct lua_State;

namespace grindle {

// Like lua_pcall(state, nargs, 0, 0), with the function and its arguments on the stack.
int CallWithTraceback(lua_State* state, int nargs);

}  // namespace grindle
