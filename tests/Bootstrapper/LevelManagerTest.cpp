#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "Core/Bootstrapper/LevelManager.h"
#include "Core/Database.h"
#include "Core/MessageHandler.h"
#include "Core/SystemBase.h"
#include "Core/WellKnownKeys.h"
#include "TempWorkDir.h"
#include "TestOutput.h"

namespace grindle {
namespace {

const char* const kLevelMessages[] = {"msgUnloadLevel", "msgLoadLevel", "LevelSwitched",
                                      "LevelInitialize", "msgLevelObjectCreated",
                                      "LevelInitializeComplete", "UnloadLevel", "UnloadAllLevels"};

std::string Describe(const char* name, MessageArgs args) {
  std::string text = std::string(name) + "(";
  for (uint32_t i = 0; i < args.count; ++i) {
    if (i > 0) text += ",";
    if (const std::string* s = args.Get<std::string>(i)) {
      text += *s;
    } else if (const DataHandle<Database>* object = args.Get<DataHandle<Database>>(i)) {
      text += "@" + (*object)->Name();
    } else {
      text += "?";
    }
  }
  return text + ")";
}

// Records what the level manager says and when the systems are updated, in one timeline.
class RecordingSystem final : public SystemBase {
 public:
  explicit RecordingSystem(std::vector<std::string>& log) : SystemBase("Recorder"), log_(log) {}
  void Update(float dt) override { log_.push_back("Update(" + std::to_string(int(dt)) + ")"); }

 private:
  std::vector<std::string>& log_;
};

class LevelManagerTest : public testing::Test {
 protected:
  LevelManagerTest() {
    InternWellKnownKeys();
    for (const char* name : kLevelMessages) {
      messages.Listen(name, "Test", [this, name](MessageArgs args) { log.push_back(Describe(name, args)); });
    }
    dir.Write("Assets/Levels/LoadingScreen.xml", "<int name=\"Spinner\">1</int>\n");
    dir.Write("Assets/Levels/Arena.xml",
              "<Database name=\"GameObjects\">\n"
              "  <Database name=\"Floor\"><double name=\"Scale\">10</double></Database>\n"
              "  <Database name=\"Ball\"><double name=\"Scale\">1</double></Database>\n"
              "  <Database name=\"Crate\"></Database>\n"
              "</Database>\n");
  }

  std::vector<std::string> Take() {
    messages.Deliver(MessageHandler::kDeliverAll);
    return std::exchange(log, {});
  }
  const std::string& Level(WellKnown key) { return *root.Find<std::string>(KeyOf(key)); }
  bool IsLoaded(const char* level) { return root.Find<Database>("Levels")->FindEntry(level) != nullptr; }

  TempWorkDir dir;
  Database root;
  MessageHandler messages;
  std::vector<std::string> log;
};

using Log = std::vector<std::string>;

TEST_F(LevelManagerTest, FirstRequestPassesThroughTheLoadingScreenWithEveryMessageInOrder) {
  LevelManager levels(root, messages);
  levels.Initialize("Arena");
  RecordingSystem system(log);
  levels.ProcessLevelChange({&system});

  EXPECT_EQ(Take(), (Log{"msgUnloadLevel()", "LevelInitialize(LoadingScreen)",
                         "LevelInitializeComplete(LoadingScreen)", "msgLoadLevel(LoadingScreen)",
                         "LevelSwitched(,LoadingScreen)", "Update(16)",
                         "msgUnloadLevel(LoadingScreen)", "LevelInitialize(Arena)",
                         "msgLevelObjectCreated(@Floor,Floor,Arena)",
                         "msgLevelObjectCreated(@Ball,Ball,Arena)",
                         "msgLevelObjectCreated(@Crate,Crate,Arena)",
                         "LevelInitializeComplete(Arena)", "msgLoadLevel(Arena)",
                         "LevelSwitched(LoadingScreen,Arena)", "UnloadLevel(LoadingScreen)"}));
  EXPECT_EQ(Level(WellKnown::CurrentLevel), "Arena");
  EXPECT_EQ(Level(WellKnown::NextLevel), "");
  EXPECT_TRUE(IsLoaded("Arena"));
  EXPECT_FALSE(IsLoaded("LoadingScreen"));
  EXPECT_EQ(*root.Find<Database>("Levels")->Find<Database>("Arena")->Find<Database>("GameObjects")
                 ->Find<Database>("Floor")->Find<double>("Scale"),
            10.0);

  // Nothing requested: nothing happens, no update either.
  levels.ProcessLevelChange({&system});
  EXPECT_TRUE(Take().empty());
}

TEST_F(LevelManagerTest, RequestingTheCurrentLevelReloadsItWithTwoHalfSwitches) {
  LevelManager levels(root, messages);
  levels.Initialize("Arena");
  levels.ProcessLevelChange({});
  Take();
  // Changes made to the loaded level are gone after the reload.
  root.Find<Database>("Levels")->Find<Database>("Arena")->Add<int>("Scribble", 1);

  *root.Find<std::string>("NextLevel") = "Arena";
  levels.SwitchLevel();
  const Log reload = Take();
  EXPECT_EQ(reload.front(), "LevelSwitched(Arena,)");
  EXPECT_EQ(reload[1], "UnloadLevel(Arena)");
  EXPECT_EQ(reload[2], "LevelInitialize(Arena)");
  EXPECT_EQ(reload.back(), "LevelSwitched(,Arena)");
  for (const std::string& line : reload) {
    EXPECT_EQ(line.find("msgUnloadLevel"), std::string::npos);
    EXPECT_EQ(line.find("msgLoadLevel"), std::string::npos);
  }
  EXPECT_EQ(Level(WellKnown::NextLevel), "");
  EXPECT_EQ(root.Find<Database>("Levels")->Find<Database>("Arena")->FindEntry("Scribble"), nullptr);
}

TEST_F(LevelManagerTest, RequestingTheLoadingScreenItselfEndsInAReloadOfIt) {
  LevelManager levels(root, messages);
  levels.Initialize("LoadingScreen");
  levels.ProcessLevelChange({});
  EXPECT_EQ(Take(), (Log{"msgUnloadLevel()", "LevelInitialize(LoadingScreen)",
                         "LevelInitializeComplete(LoadingScreen)", "msgLoadLevel(LoadingScreen)",
                         "LevelSwitched(,LoadingScreen)", "LevelSwitched(LoadingScreen,)",
                         "UnloadLevel(LoadingScreen)", "LevelInitialize(LoadingScreen)",
                         "LevelInitializeComplete(LoadingScreen)",
                         "LevelSwitched(,LoadingScreen)"}));
  EXPECT_TRUE(IsLoaded("LoadingScreen"));
}

TEST_F(LevelManagerTest, LoadingResetsThePauseAndTheTitleScreenActivatesAllPlayers) {
  dir.Write("Assets/Levels/LevelTitleScreen.xml", "<string name=\"Title\">Press start</string>\n");
  LevelManager levels(root, messages);
  levels.Initialize("LevelTitleScreen");
  root.Add<bool>("isGamePaused", true);
  levels.ProcessLevelChange({});
  EXPECT_FALSE(*root.Find<bool>("isGamePaused"));
  const DataHandle<Database> globals = root.Find<Database>("GlobalVariables");
  ASSERT_TRUE(globals);
  for (const char* player : {"ActivePlayer0", "ActivePlayer1", "ActivePlayer2", "ActivePlayer3"}) {
    EXPECT_EQ(*globals->Find<double>(player), 1.0) << player;
  }
  // A level without GameObjects announces no objects at all.
  for (const std::string& line : Take()) {
    EXPECT_EQ(line.find("msgLevelObjectCreated"), std::string::npos) << line;
  }
}

TEST_F(LevelManagerTest, UnloadingAnUnknownLevelOnlyPrintsAndShutdownSendsUnloadAllLevels) {
  LevelManager levels(root, messages);
  levels.Initialize();
  EXPECT_EQ(Level(WellKnown::NextLevel), "SplashScreens");
  const std::string out = CaptureStdout([&] { levels.UnloadLevel("Nowhere"); });
  EXPECT_EQ(out, "Attempt to unload level that does not exist yet!\n");
  EXPECT_TRUE(Take().empty());
  levels.UnloadAllLevels();
  EXPECT_EQ(Take(), Log{"UnloadAllLevels()"});
}

TEST_F(LevelManagerTest, OwnsTheLevelNameEntriesForItsLifetime) {
  {
    LevelManager levels(root, messages);
    EXPECT_TRUE(root.Find<std::string>("NextLevel"));
    EXPECT_TRUE(root.Find<std::string>("CurrentLevel"));
  }
  EXPECT_FALSE(root.Find<std::string>("NextLevel"));
  EXPECT_FALSE(root.Find<std::string>("CurrentLevel"));
}

TEST_F(LevelManagerTest, AMissingLevelFileStopsTheProgram) {
  auto loadMissing = [this] {
    StdoutToStderr();
    LevelManager levels(root, messages);
    levels.Initialize("Atlantis");
    levels.ProcessLevelChange({});
  };
  EXPECT_DEATH(loadMissing(), "Missing FileAssets/Levels/Atlantis.xml");
}

}  // namespace
}  // namespace grindle
