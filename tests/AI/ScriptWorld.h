// A running AI system over a real root database and message handler, with script files written to
// a fresh temporary working directory (Scripts/...). Levels and objects are built in the database
// and announced through the same messages the level manager sends. Main thread, one at a time.
#pragma once

#include <filesystem>
#include <initializer_list>
#include <string>

#include "AI/AILibraryInterface.h"
#include "Core/Database.h"
#include "Core/MessageHandler.h"

namespace grindle::test {

class ScriptWorld {
 public:
  ScriptWorld(Database& root, MessageHandler& handler);
  ~ScriptWorld();

  void WriteScript(const std::string& fileName, const std::string& text) const;
  // Levels.<level>.GameObjects.<object> with one script component per file ("Script",
  // "Script1"...).
  DataHandle<Database> AddObject(const std::string& level, const std::string& object,
                                 std::initializer_list<const char*> scriptFiles);
  // Makes `level` current and announces every object of it, then the end of the level's load.
  void AnnounceLevel(const std::string& level);
  // One frame of the AI system, then delivery of everything queued.
  void Frame();
  void Deliver() { handler_.Deliver(MessageHandler::kDeliverAll); }

  // GlobalVariables.<name> as a double (NaN when absent or not a double).
  double Global(const std::string& name) const;
  std::string GlobalText(const std::string& name) const;

  Database& root_;
  MessageHandler& handler_;
  AIInterface ai_;

 private:
  std::filesystem::path previousDirectory_;
  std::filesystem::path directory_;
};

}  // namespace grindle::test
