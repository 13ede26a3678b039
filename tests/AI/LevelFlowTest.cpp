// Scripts across real level changes: level files on disk, the level manager's switches through the
// loading level, and the messages it sends, with the AI system as the only system.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "AI/Script.h"
#include "Core/Bootstrapper/LevelManager.h"
#include "ScriptWorld.h"
#include "TestOutput.h"

namespace grindle::test {
namespace {

std::string LevelFile(std::initializer_list<const char*> objects) {
  std::string text = "<Database name=\"GameObjects\">\n";
  for (const char* object : objects) {
    text += std::string("  <Database name=\"") + object +
            "\">\n    <Database name=\"Script\"><string name=\"FileName\">Tracer.lua</string>"
            "</Database>\n  </Database>\n";
  }
  return text + "</Database>\n";
}

class LevelFlowTest : public testing::Test {
 protected:
  void SetUp() override {
    std::filesystem::create_directories("Assets/Levels");
    std::ofstream("Assets/Levels/LoadingScreen.xml") << LevelFile({});
    std::ofstream("Assets/Levels/Arena.xml") << LevelFile({"Player0", "Crate"});
    std::ofstream("Assets/Levels/Title.xml") << LevelFile({"Logo"});
    world_.WriteScript("Tracer.lua", R"(
local function Trace(text) SetData("GlobalVariables.Trace", (FindData("GlobalVariables.Trace") or "") .. text .. ";") end
function Start(me) Trace("start " .. me) end
function End() Trace("end " .. (FindData("*CurrentObject.*Name") or "?") .. " in " .. FindData("CurrentLevel")) end
)");
  }

  // One pass of the frame loop's level step, delivery and the AI system's update.
  void Frame() {
    CaptureStdout([&] { levels_.ProcessLevelChange({&world_.ai_}); });
    world_.Frame();
  }

  Database root_;
  MessageHandler handler_;
  ScriptWorld world_{root_, handler_};
  LevelManager levels_{root_, handler_};
};

TEST_F(LevelFlowTest, ScriptsLiveExactlyAsLongAsTheirLevelIsCurrent) {
  levels_.Initialize("Arena");
  Frame();
  EXPECT_EQ(world_.GlobalText("Trace"), "start Crate;start Player0;");
  EXPECT_EQ(world_.ai_.Host()->RunningScriptCount(), 2u);

  *root_.Find<std::string>("NextLevel") = "Title";
  Frame();
  // The arena's scripts end once it stopped being current and its data is gone.
  EXPECT_EQ(world_.GlobalText("Trace"),
            "start Crate;start Player0;end ? in LoadingScreen;end ? in LoadingScreen;start Logo;");
  EXPECT_EQ(world_.ai_.Host()->RunningScriptCount(), 1u);
  EXPECT_FALSE(root_.Find<Database>("Levels")->Find<Database>("Arena"));

  levels_.UnloadAllLevels();
  world_.Deliver();
  EXPECT_EQ(world_.ai_.Host()->RunningScriptCount(), 0u);
}

}  // namespace
}  // namespace grindle::test
