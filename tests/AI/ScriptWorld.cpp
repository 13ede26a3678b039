#include "ScriptWorld.h"

#include <unistd.h>

#include <cmath>
#include <fstream>

#include "Core/MemoryManager.h"
#include "Core/WellKnownKeys.h"
#include "TestOutput.h"

namespace grindle::test {

ScriptWorld::ScriptWorld(Database& root, MessageHandler& handler) : root_(root), handler_(handler) {
  InternWellKnownKeys();
  previousDirectory_ = std::filesystem::current_path();
  char pattern[] = "/tmp/grindle_ai_XXXXXX";
  directory_ = mkdtemp(pattern);
  std::filesystem::create_directories(directory_ / "Scripts");
  std::filesystem::current_path(directory_);

  if (!root_.Find<Database>("Systems")) root_.Add<Database>("Systems");
  root_.Find<Database>("Systems")->Add<MessageHandler*>("MessageHandler", &handler_);
  root_.Add<Database>("Levels");
  root_.Add<std::string>("CurrentLevel", "");
  root_.Add<std::string>("NextLevel", "");
  void* args[kSynchronizeArgCount] = {&root_, &CurrentMemoryRegistry(), nullptr, nullptr};
  CaptureStdout([&] {
    ai_.synchronize(args, kSynchronizeArgCount);
    ai_.Load();
    ai_.Start();
  });
}

ScriptWorld::~ScriptWorld() {
  CaptureStdout([&] {
    ai_.Exit();
    ai_.Unload();
  });
  std::filesystem::current_path(previousDirectory_);
  std::filesystem::remove_all(directory_);
}

void ScriptWorld::WriteScript(const std::string& fileName, const std::string& text) const {
  std::ofstream(directory_ / "Scripts" / fileName) << text;
}

DataHandle<Database> ScriptWorld::AddObject(const std::string& level, const std::string& object,
                                            std::initializer_list<const char*> scriptFiles) {
  DataHandle<Database> levels = root_.Find<Database>("Levels");
  DataHandle<Database> levelDb = levels->Find<Database>(level);
  if (!levelDb) levelDb = levels->Add<Database>(level);
  DataHandle<Database> objects = levelDb->Find<Database>("GameObjects");
  if (!objects) objects = levelDb->Add<Database>("GameObjects");
  DataHandle<Database> objectDb = objects->Add<Database>(object);
  int index = 0;
  for (const char* file : scriptFiles) {
    const std::string component = index == 0 ? "Script" : "Script" + std::to_string(index);
    objectDb->Add<Database>(component)->Add<std::string>("FileName", file);
    ++index;
  }
  return objectDb;
}

void ScriptWorld::AnnounceLevel(const std::string& level) {
  *root_.Find<std::string>("CurrentLevel") = level;
  const DataHandle<Database> objects =
      root_.Find<Database>("Levels")->Find<Database>(level)->Find<Database>("GameObjects");
  for (const Database::Record& record : objects->Records()) {
    handler_.SendArgs("msgLevelObjectCreated", objects->Find<Database>(record.name), record.name,
                      level);
  }
  handler_.SendArgs("LevelInitializeComplete", level);
  Deliver();
}

void ScriptWorld::Frame() {
  ai_.Update(1.0f / 60.0f);
  Deliver();
}

double ScriptWorld::Global(const std::string& name) const {
  const DataHandle<double> value = root_.Find<Database>("GlobalVariables")->Find<double>(name);
  return value ? *value : std::nan("");
}

std::string ScriptWorld::GlobalText(const std::string& name) const {
  const DataHandle<std::string> value =
      root_.Find<Database>("GlobalVariables")->Find<std::string>(name);
  return value ? *value : "<absent>";
}

}  // namespace grindle::test
