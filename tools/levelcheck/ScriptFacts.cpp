#include "ScriptFacts.h"

#include <fstream>
#include <lua.hpp>
#include <map>
#include <regex>
#include <sstream>

#include "Core/Messages/Catalogue.h"

namespace grindle::levelcheck {
namespace {

// The first string argument after a message or key name, for calls written with literals.
const std::regex& CallWithName(const char* function, const char* first) {
  static std::map<std::string, std::regex> cache;
  const std::string key = std::string(function) + "|" + first;
  auto found = cache.find(key);
  if (found == cache.end()) {
    found = cache
                .emplace(key, std::regex(std::string(function) + "\\s*\\(\\s*\"" + first +
                                         "\"\\s*,\\s*\"([^\"]+)\""))
                .first;
  }
  return found->second;
}

void Collect(const std::string& line, uint32_t number, const std::regex& pattern,
             std::vector<NamedUse>& uses) {
  for (std::sregex_iterator it(line.begin(), line.end(), pattern), end; it != end; ++it) {
    uses.push_back({(*it)[1].str(), number});
  }
}

}  // namespace

ScriptFacts ReadScript(const std::string& path) {
  ScriptFacts facts;
  std::ifstream in(path);
  facts.exists = static_cast<bool>(in);
  if (!facts.exists) return facts;

  lua_State* state = luaL_newstate();
  if (luaL_loadfile(state, path.c_str()) != LUA_OK) facts.compileError = lua_tostring(state, -1);
  lua_close(state);

  static const std::regex entry(
      "(?:function\\s+(Start|Update|End)\\s*\\()|(?:^|[^.:\\w])(Start|Update|End)\\s*=\\s*"
      "function");
  static const std::regex shaders(std::string("Send(?:Immediate)?\\s*\\(\\s*\"") +
                                  msg::NameOf(msg::kLoadShaders) + "\"");
  uint32_t number = 0;
  for (std::string line; std::getline(in, line);) {
    ++number;
    const size_t comment = line.find("--");
    if (comment != std::string::npos) line.resize(comment);
    for (std::sregex_iterator it(line.begin(), line.end(), entry), end; it != end; ++it) {
      const std::string name = (*it)[1].matched ? (*it)[1].str() : (*it)[2].str();
      facts.hasStart |= name == "Start";
      facts.hasUpdate |= name == "Update";
      facts.hasEnd |= name == "End";
    }
    facts.loadsShaders |= std::regex_search(line, shaders);
    Collect(line, number, CallWithName("SetData", "NextLevel"), facts.nextLevels);
    Collect(line, number, CallWithName("Send", msg::NameOf(msg::scr::kCreateObject)),
            facts.archetypes);
    Collect(line, number, CallWithName("Send(?:Immediate)?", msg::NameOf(msg::kPlaySound)),
            facts.sounds);
    Collect(line, number, CallWithName("Send(?:Immediate)?", msg::NameOf(msg::kPlaySong)),
            facts.songs);
  }
  return facts;
}

}  // namespace grindle::levelcheck
