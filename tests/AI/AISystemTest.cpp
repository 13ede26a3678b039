// The AI system as the frame loop and the level manager drive it: life-cycle lines, per-frame
// values, level switches and reloads, player scripts starting last, pause and the way back to the
// title level.
#include <gtest/gtest.h>

#include <cmath>
#include <ctime>

#include "AI/Script.h"
#include "Core/WellKnownKeys.h"
#include "ScriptWorld.h"
#include "TestOutput.h"

namespace grindle::test {
namespace {

class AISystemTest : public testing::Test {
 protected:
  Database root_;
  MessageHandler handler_;
  ScriptWorld world_{root_, handler_};
};

TEST(AISystemLifeCycle, PrintsItsLinesAndListensOnlyWhileStarted) {
  InternWellKnownKeys();
  Database root;
  MessageHandler handler;
  root.Add<Database>("Systems")->Add<MessageHandler*>("MessageHandler", &handler);
  AIInterface ai;
  void* args[kSynchronizeArgCount] = {&root, &CurrentMemoryRegistry(), nullptr, nullptr};
  const std::string start = CaptureStdout([&] {
    ai.synchronize(args, kSynchronizeArgCount);
    ai.Load();
    ai.Start();
  });
  EXPECT_EQ(start, "LoadAI\nStartAI\n");
  for (const char* name : {"ResourceReloaded", "Keyboard", "SCR:DestroyObject", "TogglePauseMsg",
                           "msgRightStick_Up"}) {
    EXPECT_EQ(handler.ListenerCount(name), 1u) << name;
  }
  const std::string stop = CaptureStdout([&] {
    ai.Exit();
    ai.Unload();
  });
  EXPECT_EQ(stop, "ExitAI\nUnloadAI\n");
  EXPECT_EQ(handler.ListenerCount("Keyboard"), 0u);
  EXPECT_EQ(handler.ListenerCount("SCR:SetControllerVibration"), 0u);
}

TEST_F(AISystemTest, FramesCountTimersAndDate) {
  const std::time_t now = std::time(nullptr);
  std::tm local{};
  localtime_r(&now, &local);
  EXPECT_EQ(world_.Global("wMonth"), local.tm_mon + 1);
  EXPECT_EQ(world_.GlobalText("WorldType"), "NoSelectedWorld");
  EXPECT_TRUE(root_.Find<Database>("Menus"));

  handler_.SendArgs("SCR:SetCountdown", 3.0, 0.05);
  handler_.SendArgs("SCR:SetCountdown", 8.0, 1.0);
  const std::string out = CaptureStdout([&] { world_.Deliver(); });
  EXPECT_NE(out.find("SCR:SetCountdown: no countdown 8"), std::string::npos) << out;
  const double before = world_.Global("Count");
  world_.Frame();
  EXPECT_EQ(world_.Global("Count"), before + 1.0);
  EXPECT_NEAR(world_.Global("Countdown3"), 0.05 - 1.0 / 60.0, 1e-6);
  for (int i = 0; i < 5; ++i) world_.Frame();
  // Counting stops once a countdown is no longer above zero.
  EXPECT_LE(world_.Global("Countdown3"), 0.0);
  EXPECT_GT(world_.Global("Countdown3"), -1.0 / 60.0);
  EXPECT_EQ(world_.Global("Count"), before + 6.0);
}

TEST_F(AISystemTest, PauseStopsScriptUpdatesAndExitToMenuUnpausesOnTheWayToTheTitle) {
  world_.WriteScript("Tick.lua",
                     "function Update() SetData('GlobalVariables.Ticks', "
                     "(FindData('GlobalVariables.Ticks') or 0) + 1) end");
  world_.AddObject("Arena", "Clock", {"Tick.lua"});
  world_.AnnounceLevel("Arena");
  std::vector<std::string> announced;
  for (const char* name : {"GamePaused", "GameUnpaused"}) {
    handler_.Listen(name, "Test", [&announced, name](MessageArgs) { announced.push_back(name); });
  }
  world_.Frame();
  handler_.Send("TogglePauseMsg");
  world_.Deliver();
  ASSERT_TRUE(root_.Find<bool>("isGamePaused"));
  EXPECT_TRUE(*root_.Find<bool>("isGamePaused"));
  world_.Frame();
  world_.Frame();
  EXPECT_EQ(world_.Global("Ticks"), 1.0);

  handler_.Send("ExitToMainMenuMSG");
  world_.Deliver();
  EXPECT_EQ(*root_.Find<std::string>("NextLevel"), "LevelTitleScreen");
  EXPECT_FALSE(*root_.Find<bool>("isGamePaused"));
  EXPECT_EQ(announced, (std::vector<std::string>{"GamePaused", "GameUnpaused"}));
  world_.Frame();
  EXPECT_EQ(world_.Global("Ticks"), 2.0);
}

TEST_F(AISystemTest, ConsolePrintWritesItsLine) {
  handler_.SendArgs("ConsolePrint", "round over");
  EXPECT_EQ(CaptureStdout([&] { world_.Deliver(); }), "round over\n");
}

constexpr const char* kTracer = R"(
function Start(me) SetData("GlobalVariables.Trace", (FindData("GlobalVariables.Trace") or "") .. "start " .. me .. ";") end
function End() SetData("GlobalVariables.Trace", (FindData("GlobalVariables.Trace") or "") .. "end;") end
)";

TEST_F(AISystemTest, PlayersStartAfterTheRestOfTheLevel) {
  world_.WriteScript("Tracer.lua", kTracer);
  world_.AddObject("Arena", "Player1", {"Tracer.lua"});
  world_.AddObject("Arena", "Camera", {"Tracer.lua"});
  world_.AddObject("Arena", "Player0", {"Tracer.lua"});
  world_.AnnounceLevel("Arena");
  EXPECT_EQ(world_.GlobalText("Trace"), "start Camera;start Player0;start Player1;");
  EXPECT_EQ(world_.ai_.Host()->RunningScriptCount(), 3u);
}

// The level manager's reload of the current level: LevelSwitched(level, ""), UnloadLevel,
// the level's announcements again, LevelSwitched("", level).
TEST_F(AISystemTest, ReloadedLevelEndsOldScriptsBeforeTheNewOnesStart) {
  world_.WriteScript("Tracer.lua", kTracer);
  world_.AddObject("Arena", "Crate", {"Tracer.lua"});
  world_.AnnounceLevel("Arena");

  handler_.SendArgs("LevelSwitched", "Arena", "");
  handler_.SendArgs("UnloadLevel", "Arena");
  root_.Find<Database>("Levels")->Remove("Arena");
  world_.AddObject("Arena", "Crate", {"Tracer.lua"});
  world_.AnnounceLevel("Arena");
  handler_.SendArgs("LevelSwitched", "", "Arena");
  world_.Deliver();
  EXPECT_EQ(world_.GlobalText("Trace"), "start Crate;end;start Crate;");
  EXPECT_EQ(world_.ai_.Host()->RunningScriptCount(), 1u);

  handler_.Send("UnloadAllLevels");
  world_.Deliver();
  EXPECT_EQ(world_.GlobalText("Trace"), "start Crate;end;start Crate;end;");
  EXPECT_EQ(world_.ai_.Host()->RunningScriptCount(), 0u);
}

TEST_F(AISystemTest, ScriptDestroyingItselfFromItsOwnCallIsClosedAfterTheCallReturns) {
  world_.WriteScript("Self.lua", R"(
function Update()
  SendImmediate("msgObjectDestroyed", "Crate")
  SetData("GlobalVariables.AfterDestroy", 1)
end
function End() SetData("GlobalVariables.Ended", 1) end
)");
  world_.AddObject("Arena", "Crate", {"Self.lua"});
  world_.AnnounceLevel("Arena");
  world_.Frame();
  EXPECT_EQ(world_.Global("Ended"), 1.0);
  EXPECT_EQ(world_.Global("AfterDestroy"), 1.0);
  EXPECT_EQ(world_.ai_.Host()->RunningScriptCount(), 0u);
}

}  // namespace
}  // namespace grindle::test
