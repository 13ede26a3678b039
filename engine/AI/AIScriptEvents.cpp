// How object and level messages start and end scripts, and the pause and main-menu requests.
// Scripts start when their object is announced, players' scripts once the whole level is
// announced; scripts end ("End", then their state closes) when their object is destroyed, when
// their level stops being current, is unloaded, or all levels go.
#include <cstdio>
#include <string>

#include "AI/AILibraryInterface.h"
#include "AI/DataPath.h"
#include "AI/Script.h"
#include "Core/Database.h"
#include "Core/MessageHandler.h"
#include "Core/Messages/Catalogue.h"
#include "Core/WellKnownKeys.h"

namespace grindle {
namespace {

// Player objects look for the rest of the level when they start, so they start last.
constexpr const char* kPlayerNames[] = {"Player0", "Player1", "Player2", "Player3"};

bool IsPlayer(const std::string& name) {
  for (const char* player : kPlayerNames) {
    if (name == player) return true;
  }
  return false;
}

}  // namespace

void AIInterface::StartObjectScripts(MessageArgs args, bool deferPlayers) {
  const std::string name = msg::TextOr(args[1]);
  if (deferPlayers && IsPlayer(name)) return;
  LoadObjectScripts("Levels." + msg::TextOr(args[2]) + ".GameObjects." + name, name);
}

void AIInterface::StartPlayerScripts(MessageArgs args) {
  const std::string level = msg::TextOr(args[0]);
  for (const char* player : kPlayerNames) {
    LoadObjectScripts("Levels." + level + ".GameObjects." + player, player);
  }
}

void AIInterface::LoadObjectScripts(const std::string& objectPath, const std::string& objectName) {
  const DataHandle<Database> object = ResolveDatabase(Root(), objectPath);
  if (!object) return;
  std::vector<int> loaded;
  for (int i = 0; i < kScriptComponentCount; ++i) {
    const DataHandle<Database> component = object->Find<Database>(ScriptComponentName(i));
    if (!component) continue;
    pHost_->LoadScript(component, objectPath + "." + ScriptComponentName(i));
    loaded.push_back(i);
  }
  // Every component's top-level code has run before the first "Start".
  for (int i : loaded) {
    const DataHandle<Database> component =
        ResolveDatabase(Root(), objectPath + "." + ScriptComponentName(i));
    if (!component) continue;
    const DataHandle<lua_State*> state = component->Find<lua_State*>(KeyOf(WellKnown::LuaState));
    if (state)
      pHost_->CallFunction(*component, objectPath + "." + ScriptComponentName(i), "Start",
                           {objectName});
  }
}

void AIInterface::CloseDestroyedObject(MessageArgs args) {
  pHost_->CloseScriptsOfObject("Levels." + CurrentLevelName() + ".GameObjects." +
                               msg::TextOr(args[0]));
}

// "LevelSwitched"(old, new): the old level's scripts end as soon as it stops being current; on a
// reload that is the first message, ("level", "").
void AIInterface::CloseSwitchedLevel(MessageArgs args) {
  const std::string old = msg::TextOr(args[0]);
  if (!old.empty()) pHost_->CloseScriptsOfLevel(old);
}

void AIInterface::CloseUnloadedLevel(MessageArgs args) {
  pHost_->CloseScriptsOfLevel(msg::TextOr(args[0]));
}

void AIInterface::TogglePause() {
  DataHandle<bool> paused = Root().Find<bool>(KeyOf(WellKnown::isGamePaused));
  if (!paused) paused = Root().Add<bool>("isGamePaused", false);
  *paused = !*paused;
  msg::Post(Messages(), *paused ? msg::kGamePaused : msg::kGameUnpaused);
}

void AIInterface::ExitToMainMenu() {
  const DataHandle<bool> paused = Root().Find<bool>(KeyOf(WellKnown::isGamePaused));
  // The pause toggle, delivered before the level change, unpauses and announces it.
  if (paused && *paused) msg::Post(Messages(), msg::kTogglePause);
  if (const DataHandle<std::string> next = Root().Find<std::string>(KeyOf(WellKnown::NextLevel))) {
    *next = "LevelTitleScreen";
  } else {
    Root().Add<std::string>("NextLevel", "LevelTitleScreen");
  }
}

}  // namespace grindle
