#include "AI/Script.h"

#include <algorithm>
#include <cstdio>
#include <string>
#include <lua.hpp>

#include "AI/DataPath.h"
#include "AI/ScriptApi.h"
#include "AI/ScriptMemory.h"
#include "AI/ScriptResource.h"
#include "AI/ScriptTraceback.h"
#include "AI/ScriptWatchdog.h"
#include "Core/Assert.h"
#include "Core/Database.h"
#include "Core/MessageHandler.h"
#include "Core/WellKnownKeys.h"

namespace grindle {
namespace {

// Registry slots that lead a state back to its host and to its running-script record.
const char kHostSlot = 0;
const char kRecordSlot = 0;

std::string_view LevelOfPath(std::string_view componentPath) {
  constexpr std::string_view kLevels = "Levels.";
  if (componentPath.substr(0, kLevels.size()) != kLevels) return {};
  const std::string_view rest = componentPath.substr(kLevels.size());
  return rest.substr(0, rest.find('.'));
}

std::string_view ParentOfPath(std::string_view path) {
  const size_t dot = path.rfind('.');
  return dot == std::string_view::npos ? std::string_view{} : path.substr(0, dot);
}

// Scripts share code as modules kept beside them: require("Game.Bots") finds Scripts/Game/Bots.lua
// relative to the game data folder, before Lua's own search places.
void LookForModulesInScripts(lua_State* state) {
  lua_getglobal(state, "package");
  lua_getfield(state, -1, "path");
  const std::string path = std::string("Scripts/?.lua;") + lua_tostring(state, -1);
  lua_pop(state, 1);
  lua_pushstring(state, path.c_str());
  lua_setfield(state, -2, "path");
  lua_pop(state, 1);
}

}  // namespace

const std::string& ScriptComponentName(int index) {
  static const std::vector<std::string> names = [] {
    std::vector<std::string> table{"Script"};
    for (int i = 1; i < kScriptComponentCount; ++i) table.push_back("Script" + std::to_string(i));
    return table;
  }();
  return names[static_cast<size_t>(index)];
}

ScriptHost::ScriptHost(Database& root, MessageHandler& messages)
    : root_(root), messages_(messages) {}

ScriptHost::~ScriptHost() {
  for (auto& script : scripts_) {
    for (const auto& [message, owner] : script->listeners) messages_.UnListen(message, owner);
    CloseScriptState(script->state);
  }
  for (auto& resource : resources_) resource->Withdraw();
}

ScriptHost& ScriptHost::Of(lua_State* state) {
  lua_rawgetp(state, LUA_REGISTRYINDEX, &kHostSlot);
  auto* host = static_cast<ScriptHost*>(lua_touserdata(state, -1));
  lua_pop(state, 1);
  return *host;
}

void ScriptHost::SetRecordSlot(lua_State* state, RunningScript* script) {
  lua_pushlightuserdata(state, script);
  lua_rawsetp(state, LUA_REGISTRYINDEX, &kRecordSlot);
}

ScriptHost::RunningScript* ScriptHost::RecordOf(lua_State* state) {
  lua_rawgetp(state, LUA_REGISTRYINDEX, &kRecordSlot);
  auto* script = static_cast<RunningScript*>(lua_touserdata(state, -1));
  lua_pop(state, 1);
  return script;
}

lua_State* ScriptHost::NewState(bool withApi) {
  lua_State* state = NewScriptState();
  luaL_openlibs(state);
  LookForModulesInScripts(state);
  lua_pushlightuserdata(state, this);
  lua_rawsetp(state, LUA_REGISTRYINDEX, &kHostSlot);
  WatchForEndlessLoops(state);
  if (withApi) RegisterScriptApi(state);
  return state;
}

void ScriptHost::LoadScript(DataHandle<Database> component, std::string_view componentPath) {
  const DataHandle<std::string> fileName = component->Find<std::string>(KeyOf(WellKnown::FileName));
  if (!fileName) {
    std::printf("No FileName for script file\n");
    return;
  }
  const std::string file = *fileName;  // the entry may be replaced by the script's own code
  lua_State* state = nullptr;
  const DataHandle<lua_State*> stateEntry = component->Find<lua_State*>(KeyOf(WellKnown::LuaState));
  if (!stateEntry) {
    state = NewState(true);
    component->Add<lua_State*>("LuaState", state);
  } else {
    lua_State* old = *stateEntry;
    if (FindScript(old) != nullptr) {
      CallOrDie(old, componentPath, "End", {});
      // "End" may have closed the script itself; only a still-running one is retired here.
      if (FindScript(old) != nullptr) DropRecord(old);
    }
    // Kept: a renewed state has the standard libraries only, not the engine's functions.
    state = NewState(false);
    // Looked up again: a script closed by its own "End" has lost the entry.
    if (const auto entry = component->Find<lua_State*>(KeyOf(WellKnown::LuaState))) {
      *entry = state;
    } else {
      component->Add<lua_State*>("LuaState", state);
    }
    std::printf("Lua state already exists\n");
  }
  Register(component, componentPath, file, state);
  WatchFile(file);
  RunFile(state, "Scripts/" + file);
}

void ScriptHost::Register(DataHandle<Database> component, std::string_view componentPath,
                          const std::string& fileName, lua_State* state) {
  const std::string_view level = LevelOfPath(componentPath);
  if (const DataHandle<Database> levelDb = ResolveDatabase(root_, "Levels." + std::string(level))) {
    DataHandle<Database> lists = levelDb->Find<Database>(KeyOf(WellKnown::ComponentLists));
    if (!lists) lists = levelDb->Add<Database>("ComponentLists");
    DataHandle<Database> registry = lists->Find<Database>(KeyOf(WellKnown::Scripts));
    if (!registry) registry = lists->Add<Database>("Scripts");
    registry->Add<DataHandle<Database>>(componentPath, component);
  }
  scripts_.push_back(
      std::make_unique<RunningScript>(RunningScript{state,
                                                    HashValue(level),
                                                    std::string(level),
                                                    std::string(componentPath),
                                                    std::string(ParentOfPath(componentPath)),
                                                    fileName,
                                                    {}}));
  SetRecordSlot(state, scripts_.back().get());
  ++uScriptsChanged_;
}

void ScriptHost::WatchFile(const std::string& fileName) {
  const std::string name = "Scripts/" + fileName;
  for (const auto& resource : resources_) {
    if (resource->Name() == name) return;
  }
  resources_.push_back(std::make_unique<ScriptResource>(*this, name, fileName));
  resources_.back()->Enlist(root_);
}

bool ScriptHost::RunFile(lua_State* state, const std::string& path) {
  Running running(Of(state), state);
  int status = luaL_loadfile(state, path.c_str());
  if (status == LUA_OK) status = CallWithTraceback(state, 0);
  if (status != LUA_OK) {
    std::printf("\nLUA ERR:: %s\n", lua_tostring(state, -1));
    lua_pop(state, 1);
    return false;
  }
  return true;
}

void ScriptHost::CallFunction(Database& component, std::string_view componentPath, const char* name,
                              const std::vector<std::string>& args) {
  const DataHandle<lua_State*> state = component.Find<lua_State*>(KeyOf(WellKnown::LuaState));
  if (!state) {
    std::printf("Invalid script database, couldn't find lua state\n");
    return;
  }
  CallOrDie(*state, componentPath, name, args);
}

void ScriptHost::CallOrDie(lua_State* state, std::string_view componentPath, const char* name,
                           const std::vector<std::string>& args) {
  Running running(*this, state);
  // Whatever the global holds is called: a script lacking an entry function fails like any other
  // error in a called function.
  lua_getglobal(state, name);
  for (const std::string& arg : args) lua_pushlstring(state, arg.data(), arg.size());
  if (CallWithTraceback(state, static_cast<int>(args.size())) != LUA_OK) {
    const char* error = lua_tostring(state, -1);
    std::printf("Error executing lua function \"%s\" : (%.*s)%s\n{%s}\n", name,
                static_cast<int>(componentPath.size()), componentPath.data(),
                error != nullptr ? error : "", "");
    std::fflush(stdout);  // the message comes before the assertion's own output
    GRINDLE_ASSERT_TEXT(true, "true", "Lua Error!");
  }
}

void ScriptHost::CallInLevel(std::string_view level, const char* name) {
  const uint32_t levelKey = HashValue(level);
  std::vector<RunningScript*> sweep;
  sweep.reserve(scripts_.size());
  for (const auto& script : scripts_) {
    if (script->levelKey == levelKey) sweep.push_back(script.get());
  }
  const size_t countBefore = uScriptsChanged_;
  for (RunningScript* script : sweep) {
    // A call may start or close other scripts; only records still held are called after that.
    if (uScriptsChanged_ != countBefore &&
        std::none_of(scripts_.begin(), scripts_.end(),
                     [script](const auto& s) { return s.get() == script; })) {
      continue;
    }
    CallOrDie(script->state, script->componentPath, name, {});
  }
}

}  // namespace grindle
