#include "Core/Bootstrapper/LevelManager.h"

#include <cstdio>

#include "Core/Assert.h"
#include "Core/Bootstrapper/RootEntries.h"
#include "Core/LookupDiagnostics.h"
#include "Core/MessageHandler.h"
#include "Core/Messages/Catalogue.h"
#include "Core/xmlParser.h"

namespace grindle {

namespace {

constexpr const char* kLoadingScreen = "LoadingScreen";
constexpr const char* kArchetypesFile = "Assets/GameObjects/Archetypes.xml";
// The step every system is updated with while the loading level is on screen.
constexpr float kLoadingScreenStep = 16.0f;

std::string& StringEntry(Database& root, WellKnown name) {
  DataHandle<std::string> entry = root.Find<std::string>(KeyOf(name));
  if (!entry) entry = root.Add<std::string>(kWellKnownKeyNames[static_cast<size_t>(name)]);
  return *entry;
}

}  // namespace

LevelManager::LevelManager(Database& root, MessageHandler& messages)
    : root_(root), messages_(messages) {
  SetLookupRoot(&root_);
  root_.Add<std::string>("NextLevel");
  root_.Add<std::string>("CurrentLevel");
}

LevelManager::~LevelManager() {
  SetLookupRoot(nullptr);
  root_.Remove(KeyOf(WellKnown::NextLevel));
  root_.Remove(KeyOf(WellKnown::CurrentLevel));
}

std::string& LevelManager::Current() { return StringEntry(root_, WellKnown::CurrentLevel); }
std::string& LevelManager::Next() { return StringEntry(root_, WellKnown::NextLevel); }

void LevelManager::LoadArchetypes() {
  NoteLookupOrigin("GameObjectArchetypes", kArchetypesFile);
  ParseFile(kArchetypesFile, root_);
}

void LevelManager::Initialize(const std::string& firstLevel) {
  // Kept although it does nothing: the listener is part of the manager's registrations.
  messages_.Listen(msg::kKeyboard.name, "LevelManager", [](MessageArgs) {});
  root_.Add<Database>("Levels");
  Next() = firstLevel;
}

void LevelManager::ProcessLevelChange(const std::vector<ISystem*>& systems) {
  if (Next().empty()) return;
  messages_.Deliver(MessageHandler::kDeliverAll);
  const std::string requested = Next();
  Next() = kLoadingScreen;
  SwitchLevel();
  messages_.Deliver(MessageHandler::kDeliverAll);
  for (ISystem* system : systems) system->Update(kLoadingScreenStep);
  Next() = requested;
  SwitchLevel();
}

void LevelManager::SwitchLevel() {
  if (Next().empty()) return;
  if (Next() != Current()) {
    if (Next() == "LevelTitleScreen") {
      DataHandle<Database> globals = root_.Find<Database>(KeyOf(WellKnown::GlobalVariables));
      if (!globals) globals = root_.Add<Database>("GlobalVariables");
      WriteEntry<double>(*globals, WellKnown::ActivePlayer0, 1.0);
      WriteEntry<double>(*globals, WellKnown::ActivePlayer1, 1.0);
      WriteEntry<double>(*globals, WellKnown::ActivePlayer2, 1.0);
      WriteEntry<double>(*globals, WellKnown::ActivePlayer3, 1.0);
    }
    const std::string old = Current();
    Current() = Next();
    Next().clear();
    const std::string current = Current();
    msg::Post(messages_, msg::kMsgUnloadLevel, old);
    LoadLevel(current);
    msg::Post(messages_, msg::kMsgLoadLevel, current);
    msg::Post(messages_, msg::kLevelSwitched, old, current);
    // The old level outlives the loading of the new one.
    if (!old.empty()) UnloadLevel(old);
    return;
  }
  // Reloading the current level: no msgUnloadLevel/msgLoadLevel, only the two half switches.
  const std::string current = Current();
  msg::Post(messages_, msg::kLevelSwitched, current, "");
  UnloadLevel(current);
  LoadLevel(current);
  msg::Post(messages_, msg::kLevelSwitched, "", current);
  Next().clear();
}

void LevelManager::LoadLevel(const std::string& name) {
  LoadLevelFile("Assets/Levels/" + name + ".xml", name);
}

void LevelManager::LoadLevelFile(const std::string& path, const std::string& name) {
  const DataHandle<Database> levels = root_.Find<Database>(KeyOf(WellKnown::Levels));
  Database* pLevelDB = levels ? levels->Add<Database>(name).Get() : nullptr;
  GRINDLE_ASSERT(pLevelDB == nullptr, "Level Database failed in creation");
  msg::Post(messages_, msg::kLevelInitialize, name);
  NoteLookupOrigin("Levels." + name, path);
  ParseFile(path, *pLevelDB);
  AnnounceObjects(*pLevelDB, name);
  msg::Post(messages_, msg::kLevelInitializeComplete, name);
  WriteEntry<bool>(root_, WellKnown::isGamePaused, false);
}

void LevelManager::AnnounceObjects(Database& level, const std::string& name) {
  const DataHandle<Database> objects = level.Find<Database>(KeyOf(WellKnown::GameObjects));
  if (!objects) return;
  // Listing order, names as listed: a replaced object is listed (and announced) twice.
  for (const Database::Record& record : objects->Records()) {
    const DataHandle<Database> object = objects->Find<Database>(record.name);
    if (object) msg::Post(messages_, msg::kLevelObjectCreated, object, record.name, name);
  }
}

void LevelManager::UnloadLevel(const std::string& name) {
  const DataHandle<Database> levels = root_.Find<Database>(KeyOf(WellKnown::Levels));
  if (!levels || levels->FindEntry(name) == nullptr) {
    std::printf("Attempt to unload level that does not exist yet!\n");
    return;
  }
  msg::Post(messages_, msg::kUnloadLevel, name);
  levels->Remove(name);
}

void LevelManager::UnloadAllLevels() { msg::Post(messages_, msg::kUnloadAllLevels); }

}  // namespace grindle
