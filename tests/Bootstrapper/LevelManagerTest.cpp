#include "BootstrapperKit.h"
#include "Core/Bootstrapper/LevelManager.h"
#include "TestOutput.h"

namespace grindle {
namespace {

class LevelManagerTest : public testing::Test {
 protected:
  LevelManagerTest() {
    InternWellKnownKeys();
    dir.Write("Assets/Levels/LoadingScreen.xml", "<int name=\"Spinner\">1</int>\n");
    dir.Write("Assets/Levels/Arena.xml",
              "<Database name=\"GameObjects\">\n"
              "  <Database name=\"Floor\"><double name=\"Scale\">10</double></Database>\n"
              "  <Database name=\"Ball\"><double name=\"Scale\">1</double></Database>\n"
              "  <Database name=\"Crate\"></Database>\n"
              "</Database>\n");
  }

  // Runs the first level request, with `systems` updated while the loading screen shows.
  void Open(const std::string& firstLevel, const std::vector<ISystem*>& systems = {}) {
    levels.Initialize(firstLevel);
    levels.ProcessLevelChange(systems);
  }
  const std::string& Level(WellKnown key) { return *root.Find<std::string>(KeyOf(key)); }
  DataHandle<Database> Loaded(const char* level) {
    return root.Find<Database>("Levels")->Find<Database>(level);
  }

  TempWorkDir dir;
  Database root;
  MessageHandler messages;
  MessageLog log{
      messages,
      {"msgUnloadLevel", "msgLoadLevel", "LevelSwitched", "LevelInitialize",
       "msgLevelObjectCreated", "LevelInitializeComplete", "UnloadLevel", "UnloadAllLevels"}};
  LevelManager levels{root, messages};
};

TEST_F(LevelManagerTest, FirstRequestPassesThroughTheLoadingScreenWithEveryMessageInOrder) {
  // Updates join the message log, so that the log is one timeline.
  UpdateHook system(
      [this](float dt) { log.lines.push_back("Update(" + std::to_string(int(dt)) + ")"); });
  Open("Arena", {&system});
  EXPECT_EQ(
      log.Take(),
      (Log{"msgUnloadLevel()", "LevelInitialize(LoadingScreen)",
           "LevelInitializeComplete(LoadingScreen)", "msgLoadLevel(LoadingScreen)",
           "LevelSwitched(,LoadingScreen)", "Update(16)", "msgUnloadLevel(LoadingScreen)",
           "LevelInitialize(Arena)", "msgLevelObjectCreated(@Floor,Floor,Arena)",
           "msgLevelObjectCreated(@Ball,Ball,Arena)", "msgLevelObjectCreated(@Crate,Crate,Arena)",
           "LevelInitializeComplete(Arena)", "msgLoadLevel(Arena)",
           "LevelSwitched(LoadingScreen,Arena)", "UnloadLevel(LoadingScreen)"}));
  EXPECT_EQ(Level(WellKnown::CurrentLevel), "Arena");
  EXPECT_EQ(Level(WellKnown::NextLevel), "");
  EXPECT_FALSE(Loaded("LoadingScreen"));
  // The level file is read into the level's own database.
  EXPECT_TRUE(Loaded("Arena")->Find<Database>("GameObjects")->Find<Database>("Floor"));

  // Nothing requested: nothing happens, no update either.
  levels.ProcessLevelChange({&system});
  EXPECT_TRUE(log.Take().empty());
}

TEST_F(LevelManagerTest, RequestingTheCurrentLevelReloadsItWithTwoHalfSwitches) {
  Open("Arena");
  log.Take();
  // Changes made to the loaded level are gone after the reload.
  Loaded("Arena")->Add<int>("Scribble", 1);
  *root.Find<std::string>("NextLevel") = "Arena";
  levels.SwitchLevel();
  EXPECT_EQ(log.Take(), (Log{"LevelSwitched(Arena,)", "UnloadLevel(Arena)",
                             "LevelInitialize(Arena)", "msgLevelObjectCreated(@Floor,Floor,Arena)",
                             "msgLevelObjectCreated(@Ball,Ball,Arena)",
                             "msgLevelObjectCreated(@Crate,Crate,Arena)",
                             "LevelInitializeComplete(Arena)", "LevelSwitched(,Arena)"}));
  EXPECT_EQ(Level(WellKnown::NextLevel), "");
  EXPECT_EQ(Loaded("Arena")->FindEntry("Scribble"), nullptr);
}

TEST_F(LevelManagerTest, RequestingTheLoadingScreenItselfEndsInAReloadOfIt) {
  Open("LoadingScreen");
  EXPECT_EQ(log.Take(),
            (Log{"msgUnloadLevel()", "LevelInitialize(LoadingScreen)",
                 "LevelInitializeComplete(LoadingScreen)", "msgLoadLevel(LoadingScreen)",
                 "LevelSwitched(,LoadingScreen)", "LevelSwitched(LoadingScreen,)",
                 "UnloadLevel(LoadingScreen)", "LevelInitialize(LoadingScreen)",
                 "LevelInitializeComplete(LoadingScreen)", "LevelSwitched(,LoadingScreen)"}));
  EXPECT_TRUE(Loaded("LoadingScreen"));
}

TEST_F(LevelManagerTest, LoadingResetsThePauseAndTheTitleScreenActivatesAllPlayers) {
  dir.Write("Assets/Levels/LevelTitleScreen.xml", "<string name=\"Title\">Press start</string>\n");
  root.Add<bool>("isGamePaused", true);
  Open("LevelTitleScreen");
  EXPECT_FALSE(*root.Find<bool>("isGamePaused"));
  const DataHandle<Database> globals = root.Find<Database>("GlobalVariables");
  ASSERT_TRUE(globals);
  for (const char* player : {"ActivePlayer0", "ActivePlayer1", "ActivePlayer2", "ActivePlayer3"}) {
    EXPECT_EQ(*globals->Find<double>(player), 1.0) << player;
  }
  // A level without GameObjects announces no objects at all.
  for (const std::string& line : log.Take()) {
    EXPECT_EQ(line.find("msgLevelObjectCreated"), std::string::npos) << line;
  }
}

TEST_F(LevelManagerTest, UnloadingAnUnknownLevelOnlyPrintsAndShutdownSendsUnloadAllLevels) {
  {
    LevelManager own(root, messages);
    own.Initialize();
    EXPECT_EQ(Level(WellKnown::NextLevel), "SplashScreens");
    const std::string out = CaptureStdout([&] { own.UnloadLevel("Nowhere"); });
    EXPECT_EQ(out, "Attempt to unload level that does not exist yet!\n");
    EXPECT_TRUE(log.Take().empty());
    own.UnloadAllLevels();
    EXPECT_EQ(log.Take(), Log{"UnloadAllLevels()"});
  }
  // The level name entries belong to the manager and go with it.
  EXPECT_FALSE(root.Find<std::string>("NextLevel"));
  EXPECT_FALSE(root.Find<std::string>("CurrentLevel"));
}

TEST_F(LevelManagerTest, ALevelNestedAHundredThousandDeepLoadsAndUnloads) {
  constexpr int kDepth = 100000;
  std::string text = "<Database name=\"GameObjects\"><Database name=\"Tower\">\n";
  for (int i = 0; i < kDepth; ++i) text += "<Database name=\"Floor\">\n";
  text += "<int name=\"Top\">1</int>\n";
  for (int i = 0; i < kDepth + 2; ++i) text += "</Database>\n";
  dir.Write("Assets/Levels/Deep.xml", text);
  Open("Deep");
  const Database* floor = Loaded("Deep")->Find<Database>("GameObjects")->Find<Database>("Tower").Get();
  for (int i = 0; i < kDepth; ++i) floor = floor->Find<Database>("Floor").Get();
  EXPECT_EQ(*floor->Find<int>("Top"), 1);
  root.Find<std::string>(KeyOf(WellKnown::NextLevel)).Get()->assign("Arena");
  levels.ProcessLevelChange({});
  EXPECT_FALSE(Loaded("Deep"));
  EXPECT_TRUE(Loaded("Arena"));
}

TEST_F(LevelManagerTest, AMissingLevelFileStopsTheProgram) {
  EXPECT_DEATH(
      {
        StdoutToStderr();
        Open("Atlantis");
      },
      "Missing FileAssets/Levels/Atlantis.xml");
}

}  // namespace
}  // namespace grindle
