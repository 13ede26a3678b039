// The script host: one Lua 5.2 state per script component, the registry of running scripts
// (`Levels.<level>.ComponentLists.Scripts`) and the calls into scripts ("Start", "Update", "End",
// listeners). Main thread only. Invariant: a state is closed only when no call into it is on the
// stack; a close requested meanwhile is carried out when the outermost call returns.
#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "AI/ScriptCallTimer.h"
#include "Core/DataHandle.h"

struct lua_State;

namespace grindle {

class Database;
class MessageHandler;
class ScriptResource;

// Names of the script components an object may carry: "Script", "Script1" .. "Script80".
inline constexpr int kScriptComponentCount = 81;
const std::string& ScriptComponentName(int index);

class ScriptHost {
 public:
  ScriptHost(Database& root, MessageHandler& messages);
  ~ScriptHost();
  ScriptHost(const ScriptHost&) = delete;
  ScriptHost& operator=(const ScriptHost&) = delete;

  // Creates (or renews) the component's state and runs its file. `componentPath` is the
  // component's full dotted path, "Levels.<level>.GameObjects.<object>.<component>".
  void LoadScript(DataHandle<Database> component, std::string_view componentPath);
  // Calls a global function of the component's state; an error inside it is fatal.
  void CallFunction(Database& component, std::string_view componentPath, const char* name,
                    const std::vector<std::string>& args = {});
  // Calls `name` in every running script of `level`, in registry order.
  void CallInLevel(std::string_view level, const char* name);
  // Hot reload: every component whose FileName is `fileName` gets "End", a re-run, then "Start".
  void ReloadScriptFile(std::string_view fileName);
  // The resource manager's reload of "Scripts/<file>" has just run; the "ResourceReloaded" that
  // follows it must not reload the file a second time. Returns whether a reload is still due.
  bool TakeReloadNotice(std::string_view fileName);
  void NoteResourceReload(std::string_view fileName) {
    reloadedByResource_.insert(std::string(fileName));
  }
  // Loads and runs `path` in `state`; errors are printed, not fatal. Returns success.
  static bool RunFile(lua_State* state, const std::string& path);
  // The full path of the current level's component that runs `state`, or "" when none.
  std::string GetScriptPath(lua_State* state) const;

  // "End", then close: every script of an object (its dotted path), of a level, or all of them.
  void CloseScriptsOfObject(std::string_view objectPath);
  void CloseScriptsOfLevel(std::string_view level);
  void CloseAllScripts();

  // Listener bookkeeping, so that a closed state is never called again.
  void TrackListener(lua_State* state, std::string message, std::string owner);
  void ForgetListener(lua_State* state, std::string_view message, std::string_view owner);

  // Instructions one call may run before it is stopped as an endless loop.
  void SetInstructionBudget(uint64_t instructions) { uInstructionBudget_ = instructions; }
  uint64_t InstructionBudget() const { return uInstructionBudget_; }
  // Wall-clock time one call may take, for calls stuck where no instruction is counted.
  void SetCallTimeLimit(std::chrono::milliseconds limit) { callTimer_.SetLimit(limit); }

  size_t RunningScriptCount() const { return scripts_.size(); }
  Database& Root() const { return root_; }
  MessageHandler& Messages() const { return messages_; }
  static ScriptHost& Of(lua_State* state);

  // Marks a call into a state as running for its lifetime (deferred closes, loop watchdog).
  class Running {
   public:
    Running(ScriptHost& host, lua_State* state);
    ~Running();
    Running(const Running&) = delete;
    Running& operator=(const Running&) = delete;

   private:
    ScriptHost& host_;
  };
  // Charges `instructions` to the outermost running call; true once it has run past the budget.
  bool SpendSlice(uint64_t instructions) {
    uInstructionsUsed_ += instructions;
    return uInstructionsUsed_ > uInstructionBudget_;
  }

 private:
  struct RunningScript {
    lua_State* state;
    uint32_t levelKey;
    std::string level;
    std::string componentPath;
    std::string objectPath;
    std::string fileName;
    std::vector<std::pair<std::string, std::string>> listeners;  // message, owner
  };

  lua_State* NewState(bool withApi);
  void Register(DataHandle<Database> component, std::string_view componentPath,
                const std::string& fileName, lua_State* state);
  void WatchFile(const std::string& fileName);
  // By search: safe for a state that may have been closed meanwhile.
  RunningScript* FindScript(lua_State* state);
  // Through the state's registry: only for a live state; null once its record was dropped.
  static RunningScript* RecordOf(lua_State* state);
  static void SetRecordSlot(lua_State* state, RunningScript* script);
  // Calls a global function; prints the call-error text and stops the program on failure.
  void CallOrDie(lua_State* state, std::string_view componentPath, const char* name,
                 const std::vector<std::string>& args);
  void CloseScripts(bool (*matches)(const RunningScript&, std::string_view), std::string_view what);
  void Retire(RunningScript& script);
  // Forgets the record and its listeners and closes the state (now or when its call returns).
  void DropRecord(lua_State* state);
  void RetireState(lua_State* state);

  Database& root_;
  MessageHandler& messages_;
  std::vector<std::unique_ptr<RunningScript>> scripts_;
  std::vector<std::unique_ptr<ScriptResource>> resources_;
  std::set<std::string, std::less<>> reloadedByResource_;
  std::vector<lua_State*> active_;
  std::vector<lua_State*> pendingClose_;
  uint64_t uInstructionBudget_ = 2'000'000'000;
  uint64_t uInstructionsUsed_ = 0;
  size_t uScriptsChanged_ = 0;
  ScriptCallTimer callTimer_{std::chrono::seconds(20)};
};

}  // namespace grindle
