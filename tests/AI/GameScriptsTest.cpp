// The example scripts shipped in game/Scripts load, start, update and end inside the engine
// without a script error.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "ScriptWorld.h"
#include "TestOutput.h"

namespace grindle::test {
namespace {

TEST(GameScripts, EveryShippedScriptRunsWithoutErrors) {
  const std::filesystem::path folder = std::filesystem::path(GRINDLE_GAME_DIR) / "Scripts";
  int checked = 0;
  for (const auto& file : std::filesystem::directory_iterator(folder)) {
    if (file.path().extension() != ".lua") continue;
    std::ostringstream text;
    text << std::ifstream(file.path()).rdbuf();
    const std::string name = file.path().filename().string();

    Database root;
    MessageHandler handler;
    ScriptWorld world(root, handler);
    world.WriteScript(name, text.str());
    world.AddObject("Arena", "Ball", {name.c_str()});
    const std::string out = CaptureStdout([&] {
      world.AnnounceLevel("Arena");
      for (int i = 0; i < 3; ++i) world.Frame();
      handler.SendArgs("SCR:KeyboardTriggered", "Space");
      handler.SendArgs("SCR:ControllerLeftStick", 0.0, 0.5, 0.5);
      world.Deliver();
      world.Frame();
      handler.SendArgs("UnloadLevel", "Arena");
      world.Deliver();
    });
    EXPECT_EQ(out.find("LUA ERR"), std::string::npos) << name << "\n" << out;
    EXPECT_EQ(out.find("Error executing"), std::string::npos) << name << "\n" << out;
    ++checked;
  }
  EXPECT_GE(checked, 4);
}

}  // namespace
}  // namespace grindle::test
