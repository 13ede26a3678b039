// The end of a script's life and the bookkeeping around it: hot reload, closing by object, level or
// all, listener tracking and the deferred close of a state that is still running.
#include <algorithm>
#include <cstdio>
#include <lua.hpp>

#include "AI/DataPath.h"
#include "AI/Script.h"
#include "AI/ScriptMemory.h"
#include "Core/Database.h"
#include "Core/MessageHandler.h"
#include "Core/WellKnownKeys.h"

namespace grindle {

ScriptHost::Running::Running(ScriptHost& host, lua_State* state) : host_(host) {
  // Nested calls share the outermost call's instruction budget and time.
  if (host_.active_.empty()) {
    host_.uInstructionsUsed_ = 0;
    const RunningScript* script = RecordOf(state);
    if (script != nullptr) {
      host_.callTimer_.Begin(script->fileName, script->componentPath);
    } else {
      host_.callTimer_.Begin("?", "a script no longer listed");
    }
  }
  host_.active_.push_back(state);
}

ScriptHost::Running::~Running() {
  host_.active_.pop_back();
  if (host_.active_.empty()) host_.callTimer_.End();
  if (host_.active_.empty() && !host_.pendingClose_.empty()) {
    for (lua_State* state : std::exchange(host_.pendingClose_, {})) CloseScriptState(state);
  }
}

void ScriptHost::RetireState(lua_State* state) {
  if (std::find(active_.begin(), active_.end(), state) != active_.end()) {
    pendingClose_.push_back(state);
  } else {
    CloseScriptState(state);
  }
}

ScriptHost::RunningScript* ScriptHost::FindScript(lua_State* state) {
  for (const auto& script : scripts_) {
    if (script->state == state) return script.get();
  }
  return nullptr;
}

void ScriptHost::ReloadScriptFile(std::string_view fileName) {
  std::vector<lua_State*> states;
  for (const auto& script : scripts_) {
    if (script->fileName == fileName) states.push_back(script->state);
  }
  for (lua_State* state : states) {
    RunningScript* script = FindScript(state);
    if (script == nullptr) continue;
    const std::string componentPath = script->componentPath;
    CallOrDie(state, componentPath, "End", {});
    if (FindScript(state) == nullptr) continue;
    if (RunFile(state, "Scripts/" + std::string(fileName)))
      CallOrDie(state, componentPath, "Start", {});
  }
}

bool ScriptHost::TakeReloadNotice(std::string_view fileName) {
  const auto found = reloadedByResource_.find(fileName);
  if (found == reloadedByResource_.end()) return true;
  reloadedByResource_.erase(found);
  return false;
}

std::string ScriptHost::GetScriptPath(lua_State* state) const {
  const DataHandle<std::string> level = root_.Find<std::string>(KeyOf(WellKnown::CurrentLevel));
  const DataHandle<Database> registry =
      level ? ScriptRegistry(root_, *level) : DataHandle<Database>{};
  if (!registry) {
    std::printf("Couldn't find current level scripts in GetScriptPath\n");
    return {};
  }
  // The state's own record names its component; the registry confirms it is this level's.
  const RunningScript* script = RecordOf(state);
  if (script == nullptr) return {};
  const auto component = registry->Find<DataHandle<Database>>(script->componentPath);
  if (!component || !component->IsValid()) return {};
  const auto owned = (*component)->Find<lua_State*>(KeyOf(WellKnown::LuaState));
  if (owned && *owned == state) return script->componentPath;
  return {};
}

void ScriptHost::CloseScriptsOfObject(std::string_view objectPath) {
  CloseScripts([](const RunningScript& s, std::string_view what) { return s.objectPath == what; },
               objectPath);
}

void ScriptHost::CloseScriptsOfLevel(std::string_view level) {
  CloseScripts([](const RunningScript& s, std::string_view what) { return s.level == what; },
               level);
}

void ScriptHost::CloseAllScripts() {
  CloseScripts([](const RunningScript&, std::string_view) { return true; }, {});
}

void ScriptHost::CloseScripts(bool (*matches)(const RunningScript&, std::string_view),
                              std::string_view what) {
  std::vector<lua_State*> states;
  for (const auto& script : scripts_) {
    if (matches(*script, what)) states.push_back(script->state);
  }
  // "End" may start or close scripts, so each one is looked up again before it is retired.
  for (lua_State* state : states) {
    if (RunningScript* script = FindScript(state)) {
      CallOrDie(state, script->componentPath, "End", {});
      if ((script = FindScript(state)) != nullptr) Retire(*script);
    }
  }
}

void ScriptHost::Retire(RunningScript& script) {
  lua_State* state = script.state;
  // The database forgets the state too, unless the level was already removed or reloaded.
  if (const DataHandle<Database> registry = ScriptRegistry(root_, script.level)) {
    const auto component = registry->Find<DataHandle<Database>>(script.componentPath);
    if (component && component->IsValid()) {
      const auto owned = (*component)->Find<lua_State*>(KeyOf(WellKnown::LuaState));
      if (owned && *owned == state) {
        (*component)->Remove(KeyOf(WellKnown::LuaState));
        registry->Remove(script.componentPath);
      }
    }
  }
  DropRecord(state);
}

void ScriptHost::DropRecord(lua_State* state) {
  if (RunningScript* script = FindScript(state)) {
    for (const auto& [message, owner] : script->listeners) messages_.UnListen(message, owner);
    // A state whose close waits for its running call must not reach the freed record.
    SetRecordSlot(state, nullptr);
  }
  std::erase_if(scripts_, [state](const auto& s) { return s->state == state; });
  ++uScriptsChanged_;
  RetireState(state);
}

void ScriptHost::TrackListener(lua_State* state, std::string message, std::string owner) {
  if (RunningScript* script = FindScript(state)) {
    script->listeners.emplace_back(std::move(message), std::move(owner));
  }
}

void ScriptHost::ForgetListener(lua_State* state, std::string_view message,
                                std::string_view owner) {
  if (RunningScript* script = FindScript(state)) {
    std::erase_if(script->listeners,
                  [&](const auto& l) { return l.first == message && l.second == owner; });
  }
}

}  // namespace grindle
