// The script host inside a running AI system: a script's life from its top-level code to "End",
// renewal of a loaded component, hot reload, and the error paths (load errors go on, errors in
// called functions and endless loops stop the program).
#include <gtest/gtest.h>

#include <chrono>
#include <cmath>
#include <thread>

#include "AI/Script.h"
#include "Core/ResourceManager.h"
#include "Core/ThreadManager.h"
#include "Core/WellKnownKeys.h"
#include "ScriptWorld.h"
#include "TestOutput.h"

namespace grindle::test {
namespace {

constexpr const char* kCratePath = "Levels.Arena.GameObjects.Crate.Script";

class ScriptHostTest : public testing::Test {
 protected:
  ScriptHost& Host() { return *world_.ai_.Host(); }
  DataHandle<Database> Registry() {
    return root_.Find<Database>("Levels")
        ->Find<Database>("Arena")
        ->Find<Database>("ComponentLists")
        ->Find<Database>("Scripts");
  }
  DataHandle<Database> Component(const char* object, const char* name = "Script") {
    return root_.Find<Database>("Levels")
        ->Find<Database>("Arena")
        ->Find<Database>("GameObjects")
        ->Find<Database>(object)
        ->Find<Database>(name);
  }

  Database root_;
  MessageHandler handler_;
  ScriptWorld world_{root_, handler_};
};

TEST_F(ScriptHostTest, ScriptRunsFromTopLevelThroughUpdatesToEndWhenItsLevelUnloads) {
  world_.WriteScript("Life.lua", R"(
SetData("GlobalVariables.TopLevel", 1)
function Start(name) SetData("GlobalVariables.StartedAs", name) end
function Update() SetData("GlobalVariables.Updates", (FindData("GlobalVariables.Updates") or 0) + 1) end
function End() SetData("GlobalVariables.EndedAfter", FindData("GlobalVariables.Updates")) end
)");
  world_.WriteScript("Elsewhere.lua", R"(
function Update() SetData("GlobalVariables.OtherUpdates", 1) end
)");
  world_.AddObject("Backstage", "Prop", {"Elsewhere.lua"});
  world_.AnnounceLevel("Backstage");
  world_.AddObject("Arena", "Crate", {"Life.lua", "Life.lua"});
  world_.AnnounceLevel("Arena");

  EXPECT_EQ(world_.Global("TopLevel"), 1.0);
  EXPECT_EQ(world_.GlobalText("StartedAs"), "Crate");
  ASSERT_TRUE(Registry());
  const auto registered = Registry()->Find<DataHandle<Database>>(kCratePath);
  ASSERT_TRUE(registered);
  EXPECT_EQ(registered->Get(), Component("Crate").Get());
  EXPECT_TRUE(Registry()->Find<DataHandle<Database>>(std::string(kCratePath) + "1"));
  EXPECT_TRUE(Component("Crate")->Find<lua_State*>("LuaState"));

  for (int i = 0; i < 3; ++i) world_.Frame();
  // Two components on the crate, each updated once a frame; the other level's script never.
  EXPECT_EQ(world_.Global("Updates"), 6.0);
  EXPECT_TRUE(std::isnan(world_.Global("OtherUpdates")));
  EXPECT_EQ(Host().RunningScriptCount(), 3u);

  handler_.SendArgs("UnloadLevel", "Arena");
  world_.Deliver();
  EXPECT_EQ(world_.Global("EndedAfter"), 6.0);
  EXPECT_FALSE(Component("Crate")->Find<lua_State*>("LuaState"));
  EXPECT_FALSE(Registry()->Find<DataHandle<Database>>(kCratePath));
  EXPECT_EQ(Host().RunningScriptCount(), 1u);
  world_.Frame();
  EXPECT_EQ(world_.Global("Updates"), 6.0);
}

TEST_F(ScriptHostTest, LoadingALoadedComponentEndsTheOldStateAndRenewsItWithoutEngineFunctions) {
  world_.WriteScript("Renew.lua", R"(
local present = 0
for _, name in ipairs({"SayHey", "FindData", "SetData", "Send", "SendImmediate", "Listen",
                       "UnListen", "RayCast", "RayCastName"}) do
  if type(_G[name]) == "function" then present = present + 1 end
end
print("engine functions: " .. present .. ", " .. string.upper("lua libraries"))
function End() print("ended") end
)");
  world_.AddObject("Arena", "Crate", {"Renew.lua"});
  const std::string first = CaptureStdout([&] { world_.AnnounceLevel("Arena"); });
  EXPECT_EQ(first, "engine functions: 9, LUA LIBRARIES\n");

  const std::string second =
      CaptureStdout([&] { Host().LoadScript(Component("Crate"), kCratePath); });
  EXPECT_EQ(second, "ended\nLua state already exists\nengine functions: 0, LUA LIBRARIES\n");
  EXPECT_EQ(Host().RunningScriptCount(), 1u);
  EXPECT_EQ(Registry()->Find<DataHandle<Database>>(kCratePath)->Get(), Component("Crate").Get());
}

constexpr const char* kSharedV1 = R"(
local me = FindData("*CurrentObject.*Name")
function Start() SetData("GlobalVariables.Version" .. me, 1) end
function End() SetData("GlobalVariables.Ends" .. me, (FindData("GlobalVariables.Ends" .. me) or 0) + 1) end
)";
constexpr const char* kSharedV2 = R"(
function Start()
  local me = FindData("*CurrentObject.*Name")
  SetData("GlobalVariables.Version" .. me, 2)
  SetData("GlobalVariables.Starts" .. me, (FindData("GlobalVariables.Starts" .. me) or 0) + 1)
end
)";

TEST_F(ScriptHostTest, ChangedFileReloadsEveryComponentThatUsesIt) {
  world_.WriteScript("Shared.lua", kSharedV1);
  world_.WriteScript("Other.lua", "function Start() SetData('GlobalVariables.OtherStarts', 1) end");
  world_.AddObject("Arena", "Left", {"Shared.lua"});
  world_.AddObject("Arena", "Right", {"Shared.lua"});
  world_.AddObject("Arena", "Bystander", {"Other.lua"});
  world_.AnnounceLevel("Arena");
  ASSERT_EQ(world_.Global("VersionLeft"), 1.0);

  world_.WriteScript("Shared.lua", kSharedV2);
  handler_.SendArgs("ResourceReloaded", "Assets/Textures/Shared.png");
  world_.Deliver();
  EXPECT_EQ(world_.Global("VersionLeft"), 1.0);

  handler_.SendArgs("ResourceReloaded", "Scripts/Shared.lua");
  world_.Deliver();
  for (const char* object : {"Left", "Right"}) {
    EXPECT_EQ(world_.Global(std::string("Ends") + object), 1.0) << object;
    EXPECT_EQ(world_.Global(std::string("Version") + object), 2.0) << object;
    EXPECT_EQ(world_.Global(std::string("Starts") + object), 1.0) << object;
  }
  EXPECT_EQ(world_.Global("OtherStarts"), 1.0);
}

TEST_F(ScriptHostTest, ScriptErrorsAtLoadArePrintedAndTheGameGoesOn) {
  world_.WriteScript("Broken.lua", "function Update(\n  SetData(\n");
  world_.WriteScript("Throws.lua",
                     "error('not today')\nfunction Update() SetData('GlobalVariables.Ran', 1) end");
  world_.AddObject("Arena", "Crate", {"Broken.lua", "Throws.lua", "Missing.lua"});
  const DataHandle<Database> nameless = world_.AddObject("Arena", "Nameless", {});
  nameless->Add<Database>("Script");

  const std::string out = CaptureStdout([&] {
    world_.AnnounceLevel("Arena");
    world_.Frame();
  });
  EXPECT_NE(out.find("\nLUA ERR:: Scripts/Broken.lua:2:"), std::string::npos) << out;
  EXPECT_NE(out.find("\nLUA ERR:: Scripts/Throws.lua:1: not today\n"), std::string::npos) << out;
  EXPECT_NE(out.find("\nLUA ERR:: cannot open Scripts/Missing.lua"), std::string::npos) << out;
  EXPECT_NE(out.find("No FileName for script file\n"), std::string::npos) << out;
  EXPECT_TRUE(std::isnan(world_.Global("Ran")));
  EXPECT_EQ(Host().RunningScriptCount(), 3u);
}

TEST_F(ScriptHostTest, RealResourceManagerReloadsAChangedScriptOnce) {
  ThreadManager threads(1, 10);
  ResourceManager manager(threads, handler_, ".");
  root_.Find<Database>("Systems")->Add<ResourceManager*>("ResourceManager", &manager);
  world_.WriteScript("Shared.lua", kSharedV1);
  world_.AddObject("Arena", "Left", {"Shared.lua"});
  world_.AnnounceLevel("Arena");
  int notices = 0;
  handler_.Listen("ResourceReloaded", "Test", [&](MessageArgs) { ++notices; });

  std::this_thread::sleep_for(std::chrono::milliseconds(100));
  world_.WriteScript("Shared.lua", kSharedV2);
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(3);
  while (world_.Global("VersionLeft") != 2.0 && std::chrono::steady_clock::now() < deadline) {
    manager.Update();
    world_.Deliver();
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }
  for (int i = 0; i < 3; ++i) {
    manager.Update();
    world_.Deliver();
  }
  EXPECT_EQ(world_.Global("VersionLeft"), 2.0);
  // Each reload of the manager and its "ResourceReloaded" notice make one reload, not two (the
  // watcher may see a rewrite as more than one change).
  ASSERT_GE(notices, 1);
  EXPECT_EQ(world_.Global("StartsLeft"), notices);
  EXPECT_EQ(world_.Global("EndsLeft"), notices);
  world_.ai_.Exit();
  world_.ai_.Unload();  // withdraws the script resources while the manager still exists
}

using ScriptHostDeathTest = ScriptHostTest;

TEST_F(ScriptHostDeathTest, ErrorInsideUpdateOrStartStopsTheProgram) {
  world_.WriteScript("Fails.lua", "function Update()\n  local t = nil\n  return t.x\nend");
  world_.WriteScript("FailsAtStart.lua", "function Start(name)\n  error('no ' .. name)\nend");
  world_.AddObject("Arena", "Crate", {"Fails.lua"});
  world_.AnnounceLevel("Arena");
  EXPECT_DEATH(
      {
        StdoutToStderr();
        world_.Frame();
      },
      "Error executing lua function \"Update\" : "
      "\\(Levels\\.Arena\\.GameObjects\\.Crate\\.Script\\)"
      "Scripts/Fails\\.lua:3: attempt to index local 't' \\(a nil value\\)\n\\{\\}\n(.|\n)*"
      "DETAILS: Lua Error!(.|\n)*The expression true failed\\.");

  world_.AddObject("Arena", "Box", {"FailsAtStart.lua"});
  EXPECT_DEATH(
      {
        StdoutToStderr();
        world_.AnnounceLevel("Arena");
      },
      "Error executing lua function \"Start\" : \\(Levels\\.Arena\\.GameObjects\\.Box\\.Script\\)"
      "Scripts/FailsAtStart\\.lua:2: no Box(.|\n)*Lua Error!");
}

TEST_F(ScriptHostDeathTest, EndlessLoopIsStoppedNamingTheFileAndFunction) {
  world_.WriteScript("Loop.lua",
                     "function Update()\n  local n = 0\n  while true do n = n + 1 end\nend");
  world_.AddObject("Arena", "Crate", {"Loop.lua"});
  world_.AnnounceLevel("Arena");
  Host().SetInstructionBudget(5'000'000);
  EXPECT_DEATH(
      {
        StdoutToStderr();
        world_.Frame();
      },
      "Error executing lua function \"Update\" : "
      "\\(Levels\\.Arena\\.GameObjects\\.Crate\\.Script\\)"
      "Scripts/Loop\\.lua:3: stopped after 5 million instructions(.|\n)*Lua Error!");
}

}  // namespace
}  // namespace grindle::test
