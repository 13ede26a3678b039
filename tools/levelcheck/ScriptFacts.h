// What the checker reads out of a Lua script without running it: whether it compiles, which entry
// functions it defines, and the literal names it uses in the calls that reach other assets (levels
// it switches to, archetypes it creates, sounds and songs it plays, "LoadShaders").
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace grindle::levelcheck {

struct NamedUse {
  std::string name;
  uint32_t line;
};

struct ScriptFacts {
  bool exists = false;
  std::string compileError;  // Lua's own "file:line: message", empty when it compiles
  bool hasStart = false, hasUpdate = false, hasEnd = false;
  bool loadsShaders = false;
  std::vector<NamedUse> nextLevels, archetypes, sounds, songs;
};

ScriptFacts ReadScript(const std::string& path);

}  // namespace grindle::levelcheck
