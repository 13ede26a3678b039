// Which level is loaded. A level change is requested by writing a name into the root string
// `NextLevel`; once a frame ProcessLevelChange performs it, always passing through the level
// "LoadingScreen", and announces every step with the level messages. Main thread only. The root
// entries `NextLevel` and `CurrentLevel` exist from construction to destruction; they are looked up
// by key each time, so whoever replaces them does not leave this object with a dead handle.
#pragma once

#include <string>
#include <vector>

#include "Core/ISystem.h"

namespace grindle {

class Database;
class MessageHandler;

class LevelManager {
 public:
  LevelManager(Database& root, MessageHandler& messages);
  ~LevelManager();
  LevelManager(const LevelManager&) = delete;
  LevelManager& operator=(const LevelManager&) = delete;

  // Parses Assets/GameObjects/Archetypes.xml into the root database.
  void LoadArchetypes();
  // Adds `Levels` and requests the first level.
  void Initialize(const std::string& firstLevel = "SplashScreens");

  // The per-frame step: a pending request loads "LoadingScreen", updates every system once with
  // the fixed step 16.0 so that it is shown, then loads the requested level.
  void ProcessLevelChange(const std::vector<ISystem*>& systems);
  void SwitchLevel();
  void LoadLevel(const std::string& name);
  void UnloadLevel(const std::string& name);
  void UnloadAllLevels();

 private:
  void LoadLevelFile(const std::string& path, const std::string& name);
  void AnnounceObjects(Database& level, const std::string& name);
  std::string& Current();
  std::string& Next();

  Database& root_;
  MessageHandler& messages_;
};

}  // namespace grindle
