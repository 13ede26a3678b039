// A running AI system over a real root database and message handler, with script files written to
// a fresh temporary working directory (Scripts/...). Levels and objects are built in the database
// and announced through the same messages the level manager sends. Main thread, one at a time.
#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "AI/AILibraryInterface.h"
#include "AI/Script.h"
#include "Core/Database.h"
#include "Core/MessageHandler.h"
#include "Core/WellKnownKeys.h"
#include "SystemRig.h"

namespace grindle::test {

class ScriptWorld {
 public:
  ScriptWorld(Database& root, MessageHandler& handler) : root_(root), handler_(handler) {
    InternWellKnownKeys();
    char pattern[] = "/tmp/grindle_ai_XXXXXX";
    directory_ = mkdtemp(pattern);
    std::filesystem::create_directories(directory_ / "Scripts");
    std::filesystem::current_path(directory_);
    PublishHandler(root_, handler_);
    root_.Add<Database>("Levels");
    root_.Add<std::string>("CurrentLevel", "");
    root_.Add<std::string>("NextLevel", "");
    startOutput = StartSystem(ai_, root_);
  }
  ~ScriptWorld() {
    StopSystem(ai_);
    std::filesystem::current_path(previousDirectory_);
    std::filesystem::remove_all(directory_);
  }

  // Every script the engine runs needs "Start", "Update" and "End"; a test script that is about
  // something else starts with these empty ones and redefines what it needs.
  static constexpr const char* kEmptyEntries =
      "function Start() end function Update() end function End() end ";  // keeps line numbers
  void WriteScript(const std::string& fileName, const std::string& text) const {
    std::ofstream(directory_ / "Scripts" / fileName) << text;
  }
  // The database at a dotted path from the root; a null handle where a part is missing.
  DataHandle<Database> Db(const std::string& path) const {
    std::istringstream parts(path);
    DataHandle<Database> db;
    const Database* at = &root_;
    for (std::string part; at != nullptr && std::getline(parts, part, '.'); at = db.Get()) {
      db = at->Find<Database>(part);
    }
    return db;
  }
  // Levels.<level>.GameObjects.<object> with one script component per file ("Script",
  // "Script1"...).
  DataHandle<Database> AddObject(const std::string& level, const std::string& object,
                                 std::initializer_list<const char*> scriptFiles) {
    if (!Db("Levels." + level)) root_.Find<Database>("Levels")->Add<Database>(level);
    if (!Db("Levels." + level + ".GameObjects"))
      Db("Levels." + level)->Add<Database>("GameObjects");
    const DataHandle<Database> objectDb =
        Db("Levels." + level + ".GameObjects")->Add<Database>(object);
    int index = 0;
    for (const char* file : scriptFiles) {
      const std::string component = "Script" + (index++ > 0 ? std::to_string(index - 1) : "");
      objectDb->Add<Database>(component)->Add<std::string>("FileName", file);
    }
    return objectDb;
  }
  // Makes `level` current and announces every object of it, then the end of the level's load.
  void AnnounceLevel(const std::string& level) {
    *root_.Find<std::string>("CurrentLevel") = level;
    const DataHandle<Database> objects = Db("Levels." + level + ".GameObjects");
    for (const Database::Record& record : objects->Records()) {
      handler_.SendArgs("msgLevelObjectCreated", objects->Find<Database>(record.name), record.name,
                        level);
    }
    handler_.SendArgs("LevelInitializeComplete", level);
    Deliver();
  }
  // One frame of the AI system, then delivery of everything queued.
  void Frame() {
    ai_.Update(1.0f / 60.0f);
    Deliver();
  }
  void Deliver() { handler_.Deliver(MessageHandler::kDeliverAll); }
  // Prints "<name>(<arguments>)" for every delivery of the named messages, among what scripts
  // print: numbers as C++ prints them, "texts" quoted, 2i for an int, @Name for an object's
  // database (@null for a null handle), ? for anything else.
  void Echo(std::initializer_list<const char*> names) {
    for (const char* name : names) {
      handler_.Listen(name, "Echo", [name](MessageArgs args) {
        std::ostringstream out;
        for (uint32_t i = 0; i < args.count; ++i) {
          out << (i > 0 ? " " : "");
          if (const double* number = args.Get<double>(i)) {
            out << *number;
          } else if (const std::string* text = args.Get<std::string>(i)) {
            out << '"' << *text << '"';
          } else if (const int* integer = args.Get<int>(i)) {
            out << *integer << 'i';
          } else if (const auto* object = args.Get<DataHandle<Database>>(i)) {
            out << '@' << (*object ? (*object)->Name() : "null");
          } else {
            out << '?';
          }
        }
        std::printf("%s(%s)\n", name, out.str().c_str());
      });
    }
  }

  // GlobalVariables.<name>, or T() when it is absent or of another kind.
  template <class T = double>
  T Global(const std::string& name) const {
    const DataHandle<T> value = Db("GlobalVariables")->Find<T>(name);
    return value ? *value : T();
  }

  Database& root_;
  MessageHandler& handler_;
  AIInterface ai_;
  std::string startOutput;  // what synchronize, Load and Start printed

 private:
  std::filesystem::path previousDirectory_ = std::filesystem::current_path();
  std::filesystem::path directory_;
};

// A world over a root and handler of its own.
class ScriptTest : public testing::Test {
 protected:
  Database root_;
  MessageHandler handler_;
  ScriptWorld world_{root_, handler_};
};

}  // namespace grindle::test
