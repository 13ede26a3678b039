// Compiling and linking the GL program of one pass. Main thread, GL context current. On failure no
// program object is left behind and the log names the effect file and its lines.
#pragma once

#include <epoxy/gl.h>

#include <string>

#include "Graphics/Effects/EffectFile.h"

namespace grindle::gfx {

// Returns the linked program, or 0 with `log` holding the compiler's or linker's messages.
GLuint BuildPassProgram(const std::string& fileName, const EffectSource& source,
                        const PassSource& pass, std::string& log);

}  // namespace grindle::gfx
