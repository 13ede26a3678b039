// The level checker behind `grindle --check-level NAME`: reads the archetypes and one level of the
// game folder in the working directory, without a window, and lists as "file:line: message" what
// would stop the game or silently break it. Returns the exit status: 0 clean, 1 problems found.
#pragma once

#include <string>

namespace grindle::levelcheck {

int CheckLevel(const std::string& level);

}  // namespace grindle::levelcheck
