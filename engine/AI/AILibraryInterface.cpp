#include "AI/AILibraryInterface.h"

#include <cstdio>
#include <string>
#include <vector>

#include "AI/InputForwarding.h"
#include "AI/Script.h"
#include "Core/Database.h"
#include "Core/MessageHandler.h"
#include "Core/WellKnownKeys.h"

namespace grindle {
namespace {

constexpr std::string_view kOwner = "AI";
constexpr std::string_view kScriptFolder = "Scripts/";

// Every message the AI system listens to, in the order Start registers them.
std::vector<std::string_view> ListenedMessages() {
  std::vector<std::string_view> names = {"ResourceReloaded",
                                         "Mouse",
                                         "SCR:SetControllerVibration",
                                         "msgObjectCreated",
                                         "msgLevelObjectCreated",
                                         "msgObjectDestroyed",
                                         "LevelInitializeComplete",
                                         "ConsolePrint",
                                         "UnloadAllLevels",
                                         "LevelSwitched",
                                         "Keyboard",
                                         "XboxController",
                                         "UnloadLevel"};
  for (std::string_view request : ScriptRequests::Names()) {
    if (request != "SCR:SetControllerVibration") names.push_back(request);
  }
  for (std::string_view name : {"TogglePauseMsg", "ExitToMainMenuMSG", "msgLeftStick_Down",
                                "msgLeftStick_Up", "msgRightStick_Down", "msgRightStick_Up"}) {
    names.push_back(name);
  }
  return names;
}

}  // namespace

AIInterface::AIInterface() : SystemBase("AI") {}
AIInterface::~AIInterface() = default;

void AIInterface::OnLoad() {
  pHost_ = std::make_unique<ScriptHost>(Root(), Messages());
  pRequests_ = std::make_unique<ScriptRequests>(Root(), Messages(), timers_);
  pInput_ = std::make_unique<InputForwarding>(Messages());
  WriteStartupValues();
}

void AIInterface::OnStart() {
  MessageHandler& messages = Messages();
  for (std::string_view name : ListenedMessages()) {
    auto listen = [&](auto handler) { messages.Listen(name, kOwner, handler); };
    if (name == "ResourceReloaded") {
      listen([this](MessageArgs args) {
        const std::string file = TextAt(args, 0);
        if (file.find("lua") == std::string::npos) return;
        // Scripts know their file relative to the script folder.
        const std::string fileName =
            file.starts_with(kScriptFolder) ? file.substr(kScriptFolder.size()) : file;
        if (pHost_->TakeReloadNotice(fileName)) pHost_->ReloadScriptFile(fileName);
      });
    } else if (name == "Mouse") {
      listen([this](MessageArgs args) { pInput_->ForwardMouse(args); });
    } else if (name == "Keyboard") {
      listen([this](MessageArgs args) { pInput_->ForwardKeyboard(args); });
    } else if (name == "XboxController") {
      listen([this](MessageArgs args) { pInput_->ForwardPads(args); });
    } else if (name == "msgObjectCreated") {
      listen([this](MessageArgs args) { StartObjectScripts(args, false); });
    } else if (name == "msgLevelObjectCreated") {
      listen([this](MessageArgs args) { StartObjectScripts(args, true); });
    } else if (name == "msgObjectDestroyed") {
      listen([this](MessageArgs args) { CloseDestroyedObject(args); });
    } else if (name == "LevelInitializeComplete") {
      listen([this](MessageArgs args) { StartPlayerScripts(args); });
    } else if (name == "ConsolePrint") {
      listen([](MessageArgs args) { std::printf("%s\n", TextAt(args, 0).c_str()); });
    } else if (name == "UnloadAllLevels") {
      listen([this](MessageArgs) { pHost_->CloseAllScripts(); });
    } else if (name == "LevelSwitched") {
      listen([this](MessageArgs args) { CloseSwitchedLevel(args); });
    } else if (name == "UnloadLevel") {
      listen([this](MessageArgs args) { CloseUnloadedLevel(args); });
    } else if (name == "TogglePauseMsg") {
      listen([this](MessageArgs) { TogglePause(); });
    } else if (name == "ExitToMainMenuMSG") {
      listen([this](MessageArgs) { ExitToMainMenu(); });
    } else if (name.starts_with("msg")) {
      // Stick steps drive scripted menus: both Down messages mean down, both Up messages up.
      const char* menuMessage = name.ends_with("_Down") ? "SCR:MenuDown" : "SCR:MenuUp";
      listen([this, menuMessage](MessageArgs args) {
        Messages().SendArgs(menuMessage, NumberAt(args, 0));
      });
    } else {
      pRequests_->Listen(name, kOwner);
    }
  }
}

void AIInterface::OnExit() {
  for (std::string_view name : ListenedMessages()) Messages().UnListen(name, kOwner);
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
