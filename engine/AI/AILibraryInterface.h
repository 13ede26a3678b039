// The AI system: runs the game's scripts. It starts an object's scripts when the object is
// announced, calls "Update" in the current level's scripts every frame, turns the scripts' "SCR:"
// requests into engine messages and device messages into "SCR:" events. Main thread only; its
// listeners exist between Start and Exit, its script host between Load and Unload.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "AI/ScriptRequests.h"
#include "Core/DataHandle.h"
#include "Core/Messages/RouteTable.h"
#include "Core/SystemBase.h"

namespace grindle {

class Database;
class InputForwarding;
class ScriptHost;

class AIInterface final : public SystemBase {
 public:
  AIInterface();
  ~AIInterface() override;

  void Update(float dt) override;

  // Null before Load and after Unload.
  ScriptHost* Host() const { return pHost_.get(); }

 private:
  void OnLoad() override;
  void OnStart() override;
  void OnExit() override;
  void OnUnload() override;

  // What the AI system listens to, in order, under the owner "AI" (the requests have their own).
  static const msg::RouteTable<AIInterface>& Routes();
  void ReloadChangedScript(MessageArgs args);
  // A stick step sent on to the scripts' menus with its pad number.
  void StepMenu(const msg::MessageType<msg::Real>& menuMessage, MessageArgs args);

  // Object and level messages (AIScriptEvents.cpp).
  void StartObjectScripts(MessageArgs args, bool deferPlayers);
  void LoadObjectScripts(const std::string& objectPath, const std::string& objectName);
  void StartPlayerScripts(MessageArgs args);
  void CloseDestroyedObject(MessageArgs args);
  void CloseSwitchedLevel(MessageArgs args);
  void CloseUnloadedLevel(MessageArgs args);
  void TogglePause();
  void ExitToMainMenu();

  // Start-up values the game's scripts read (AIStartupValues.cpp).
  void WriteStartupValues();
  void WriteDate();
  void RunCountdowns(double dt);

  std::string CurrentLevelName() const;

  std::unique_ptr<ScriptHost> pHost_;
  std::unique_ptr<ScriptRequests> pRequests_;
  std::unique_ptr<InputForwarding> pInput_;
  ScriptTimers timers_;
};

}  // namespace grindle
