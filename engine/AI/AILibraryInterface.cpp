#include "AI/AILibraryInterface.h"

#include <cstdio>
#include <string>
#include <vector>

#include "AI/InputForwarding.h"
#include "AI/Script.h"
#include "Core/Database.h"
#include "Core/MessageHandler.h"
#include "Core/Messages/Catalogue.h"
#include "Core/WellKnownKeys.h"

namespace grindle {
namespace {

constexpr std::string_view kScriptFolder = "Scripts/";

}  // namespace

AIInterface::AIInterface() : SystemBase("AI") {}
AIInterface::~AIInterface() = default;

void AIInterface::OnLoad() {
  pHost_ = std::make_unique<ScriptHost>(Root(), Messages());
  pRequests_ = std::make_unique<ScriptRequests>(Root(), Messages(), timers_);
  pInput_ = std::make_unique<InputForwarding>(Messages());
  WriteStartupValues();
}

const msg::RouteTable<AIInterface>& AIInterface::Routes() {
  using A = AIInterface;
  static constexpr msg::Route<A> kRoutes[] = {
      {msg::kResourceReloaded, [](A& ai, MessageArgs a) { ai.ReloadChangedScript(a); }},
      {msg::kMouse, [](A& ai, MessageArgs a) { ai.pInput_->ForwardMouse(a); }},
      {msg::kObjectCreated, [](A& ai, MessageArgs a) { ai.StartObjectScripts(a, false); }},
      {msg::kLevelObjectCreated, [](A& ai, MessageArgs a) { ai.StartObjectScripts(a, true); }},
      {msg::kObjectDestroyed, [](A& ai, MessageArgs a) { ai.CloseDestroyedObject(a); }},
      {msg::kLevelInitializeComplete, [](A& ai, MessageArgs a) { ai.StartPlayerScripts(a); }},
      {msg::kConsolePrint,
       [](A&, MessageArgs a) { std::printf("%s\n", msg::TextOr(a[0]).c_str()); }},
      {msg::kUnloadAllLevels, [](A& ai, MessageArgs) { ai.pHost_->CloseAllScripts(); }},
      {msg::kLevelSwitched, [](A& ai, MessageArgs a) { ai.CloseSwitchedLevel(a); }},
      {msg::kKeyboard, [](A& ai, MessageArgs a) { ai.pInput_->ForwardKeyboard(a); }},
      {msg::kXboxController, [](A& ai, MessageArgs a) { ai.pInput_->ForwardPads(a); }},
      {msg::kUnloadLevel, [](A& ai, MessageArgs a) { ai.CloseUnloadedLevel(a); }},
      {msg::kTogglePause, [](A& ai, MessageArgs) { ai.TogglePause(); }},
      {msg::kExitToMainMenu, [](A& ai, MessageArgs) { ai.ExitToMainMenu(); }},
      // Stick steps drive scripted menus: both Down messages mean down, both Up messages up.
      {msg::kLeftStickDown, [](A& ai, MessageArgs a) { ai.StepMenu(msg::scr::kMenuDown, a); }},
      {msg::kLeftStickUp, [](A& ai, MessageArgs a) { ai.StepMenu(msg::scr::kMenuUp, a); }},
      {msg::kRightStickDown, [](A& ai, MessageArgs a) { ai.StepMenu(msg::scr::kMenuDown, a); }},
      {msg::kRightStickUp, [](A& ai, MessageArgs a) { ai.StepMenu(msg::scr::kMenuUp, a); }},
  };
  static constexpr msg::RouteTable<A> kTable{"AI", kRoutes};
  return kTable;
}

void AIInterface::OnStart() {
  Routes().Listen(Messages(), *this);
  ScriptRequests::Routes().Listen(Messages(), *pRequests_);
}

void AIInterface::ReloadChangedScript(MessageArgs args) {
  const std::string file = msg::TextOr(args[0]);
  if (file.find("lua") == std::string::npos) return;
  // Scripts know their file relative to the script folder.
  const std::string fileName =
      file.starts_with(kScriptFolder) ? file.substr(kScriptFolder.size()) : file;
  if (pHost_->TakeReloadNotice(fileName)) pHost_->ReloadScriptFile(fileName);
}

void AIInterface::StepMenu(const msg::MessageType<msg::Real>& menuMessage, MessageArgs args) {
  msg::Post(Messages(), menuMessage, msg::ScriptNumber::Read(args[0]));
}

void AIInterface::OnExit() {
  Routes().UnListen(Messages());
  ScriptRequests::Routes().UnListen(Messages());
}

void AIInterface::OnUnload() {
  if (pHost_) pHost_->CloseAllScripts();
  pInput_.reset();
  pRequests_.reset();
  pHost_.reset();
}

void AIInterface::Update(float dt) {
  if (!pHost_) return;
  // Pausing is the scripts' business (a pause menu is a script): countdowns, the frame count and
  // every "Update" run in every frame.
  RunCountdowns(dt);
  if (timers_.isDateTracked) WriteDate();
  if (const DataHandle<Database> globals =
          Root().Find<Database>(KeyOf(WellKnown::GlobalVariables))) {
    if (const DataHandle<double> count = globals->Find<double>(KeyOf(WellKnown::Count)))
      *count += 1.0;
  }
  const std::string level = CurrentLevelName();
  if (!level.empty()) pHost_->CallInLevel(level, "Update");
}

std::string AIInterface::CurrentLevelName() const {
  const DataHandle<std::string> level = Root().Find<std::string>(KeyOf(WellKnown::CurrentLevel));
  return level ? *level : std::string();
}

}  // namespace grindle
