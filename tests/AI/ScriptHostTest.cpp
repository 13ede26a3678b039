// The script host inside a running AI system: a script's life from its top-level code to "End",
// renewal of a loaded component, hot reload, the error paths (load errors go on, errors in called
// functions and endless loops stop the program) and modules shared through require.
#include <gtest/gtest.h>

#include <chrono>
#include <thread>
#include <tuple>

#include "Core/ResourceManager.h"
#include "Core/ThreadManager.h"
#include "ScriptWorld.h"

namespace grindle::test {
namespace {

constexpr const char* kCratePath = "Levels.Arena.GameObjects.Crate.Script";

class ScriptHostTest : public ScriptTest {
 protected:
  DataHandle<Database> Registry() { return world_.Db("Levels.Arena.ComponentLists.Scripts"); }
  DataHandle<Database> Crate() { return world_.Db(kCratePath); }
};

// Two components on the crate, each updated once a frame; the other level's script never.
TEST_F(ScriptHostTest, ScriptRunsFromTopLevelThroughUpdatesToEndWhenItsLevelUnloads) {
  world_.WriteScript("Life.lua", R"(
print("top level")
function Start(name) print("start " .. name) end
function Update() print("update") end
function End() print("end") end
)");
  world_.WriteScript("Elsewhere.lua", world_.kEmptyEntries +
                                          std::string("function Update() print('elsewhere') end"));
  world_.AddObject("Backstage", "Prop", {"Elsewhere.lua"});
  world_.AnnounceLevel("Backstage");
  world_.AddObject("Arena", "Crate", {"Life.lua", "Life.lua"});
  EXPECT_EQ(CaptureStdout([&] {
              world_.AnnounceLevel("Arena");
              world_.Frame();
            }),
            "top level\ntop level\nstart Crate\nstart Crate\nupdate\nupdate\n");
  ASSERT_TRUE(Registry() && Registry()->Find<DataHandle<Database>>(kCratePath));
  EXPECT_EQ(Registry()->Find<DataHandle<Database>>(kCratePath)->Get(), Crate().Get());
  EXPECT_TRUE(Registry()->Find<DataHandle<Database>>(std::string(kCratePath) + "1"));
  EXPECT_TRUE(Crate()->Find<lua_State*>("LuaState"));
  EXPECT_EQ(world_.ai_.Host()->RunningScriptCount(), 3u);

  handler_.SendArgs("UnloadLevel", "Arena");
  EXPECT_EQ(CaptureStdout([&] {
              world_.Deliver();
              world_.Frame();
            }),
            "end\nend\n");
  EXPECT_FALSE(Crate()->Find<lua_State*>("LuaState"));
  EXPECT_FALSE(Registry()->Find<DataHandle<Database>>(kCratePath));
  EXPECT_EQ(world_.ai_.Host()->RunningScriptCount(), 1u);
}

// Modules live beside the scripts, in subfolders too; each state loads its own copy, so a module's
// upvalues are per component like everything else in a state.
TEST_F(ScriptHostTest, ScriptsRequireModulesFromTheScriptsFolderEachStateItsOwnCopy) {
  std::filesystem::create_directories("Scripts/Shared");
  world_.WriteScript("Shared/Tally.lua", R"(
local count = 0
return { Add = function() count = count + 1; return count end }
)");
  world_.WriteScript("Counts.lua", R"(
local Tally = require("Shared.Tally")
function Start() end
function Update() print(Tally.Add()) end
function End() end
)");
  world_.AddObject("Arena", "Crate", {"Counts.lua", "Counts.lua"});
  EXPECT_EQ(CaptureStdout([&] {
              world_.AnnounceLevel("Arena");
              world_.Frame();
              world_.Frame();
            }),
            "1\n1\n2\n2\n");
}

TEST_F(ScriptHostTest, LoadingALoadedComponentEndsTheOldStateAndRenewsItWithoutEngineFunctions) {
  world_.WriteScript("Renew.lua", world_.kEmptyEntries + std::string(R"(
print(type(FindData), type(Send), type(Listen), string.upper("lua libraries"))
function End() print("ended") end
)"));
  world_.AddObject("Arena", "Crate", {"Renew.lua"});
  EXPECT_EQ(CaptureStdout([&] { world_.AnnounceLevel("Arena"); }),
            "function\tfunction\tfunction\tLUA LIBRARIES\n");
  EXPECT_EQ(CaptureStdout([&] { world_.ai_.Host()->LoadScript(Crate(), kCratePath); }),
            "ended\nLua state already exists\nnil\tnil\tnil\tLUA LIBRARIES\n");
  EXPECT_EQ(world_.ai_.Host()->RunningScriptCount(), 1u);
  EXPECT_EQ(Registry()->Find<DataHandle<Database>>(kCratePath)->Get(), Crate().Get());
}

// Counts each object's Start and End calls.
constexpr const char* kCounter = R"(
function Update() end
local me = FindData("*CurrentObject.*Name")
local function Count(what) SetData("GlobalVariables." .. what .. me, (FindData("GlobalVariables." .. what .. me) or 0) + 1) end
function Start() Count("Starts") end
function End() Count("Ends") end
)";

// Each notice reloads every component using the file once: End, the file again, Start. The
// manager's own reload and its "ResourceReloaded" notice make one reload, not two (the watcher may
// see a rewrite as more than one change); a notice for another file of the same base name none.
TEST_F(ScriptHostTest, RewrittenFileReloadsEveryComponentThatUsesItOncePerNotice) {
  world_.WriteScript("Shared.lua", kCounter);
  world_.WriteScript("Other.lua", kCounter);
  ThreadManager threads(1, 10);
  ResourceManager manager(threads, handler_, ".");  // watches from now on
  root_.Find<Database>("Systems")->Add<ResourceManager*>("ResourceManager", &manager);
  for (const char* object : {"Left", "Right"}) world_.AddObject("Arena", object, {"Shared.lua"});
  world_.AddObject("Arena", "Bystander", {"Other.lua"});
  world_.AnnounceLevel("Arena");
  int notices = 0;
  handler_.Listen("ResourceReloaded", "Test", [&](MessageArgs args) {
    notices += *args.Get<std::string>(0) == "Scripts/Shared.lua" ? 1 : 0;
  });

  std::this_thread::sleep_for(std::chrono::milliseconds(100));
  world_.WriteScript("Shared.lua", kCounter + std::string("SetData('GlobalVariables.New', 1)\n"));
  // Waits for the reload, then gives any further change the watcher saw a few passes to arrive.
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(3);
  for (int after = 0; after < 3 && std::chrono::steady_clock::now() < deadline;) {
    manager.Update();
    world_.Deliver();
    if (notices > 0) ++after;
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }
  handler_.SendArgs("ResourceReloaded", "Assets/Textures/Shared.png");
  handler_.SendArgs("ResourceReloaded", "Scripts/Shared.lua");
  world_.Deliver();
  ASSERT_GE(notices, 2);
  EXPECT_EQ(world_.Global("New"), 1.0);
  for (const std::string object : {"Left", "Right"}) {
    EXPECT_EQ(world_.Global("Starts" + object), 1 + notices) << object;
    EXPECT_EQ(world_.Global("Ends" + object), notices) << object;
  }
  EXPECT_EQ(world_.Global("StartsBystander"), 1.0);
  StopSystem(world_.ai_);  // withdraws the script resources while the manager still exists
}

TEST_F(ScriptHostTest, AComponentWithoutFileNameIsReportedAndTheGameGoesOn) {
  world_.AddObject("Arena", "Nameless", {})->Add<Database>("Script");
  EXPECT_EQ(CaptureStdout([&] {
              world_.AnnounceLevel("Arena");
              world_.Frame();
            }),
            "No FileName for script file\n");
  EXPECT_EQ(world_.ai_.Host()->RunningScriptCount(), 0u);
}

// A file that fails to load leaves its state without functions: its "LUA ERR::" line comes first,
// then the call of "Start" fails like any call of a function the script lacks. Standard error also
// gets the Lua call stack of a failed call.
TEST_F(ScriptHostTest, ErrorsInCalledFunctionsAndEndlessLoopsStopTheProgram) {
  const std::string at = "\\(Levels\\.Arena\\.GameObjects\\.Crate\\.Script\\)";
  const std::string noStart =
      "(.|\n)*Error executing lua function \"Start\" : " + at + "attempt to call a nil value";
  const std::tuple<std::string, std::string, std::string> cases[] = {
      {"Fails.lua",
       "function Start() end function End() end function Update()\n  local t = nil\n  return "
       "t.x\nend",
       "Scripts/Fails\\.lua:3: attempt to index local 't' \\(a nil value\\)\nstack traceback:\n"
       "\tScripts/Fails\\.lua:3: in function <Scripts/Fails\\.lua:1>(.|\n)*"
       "Error executing lua function \"Update\" : " +
           at +
           "Scripts/Fails\\.lua:3: attempt to index local 't' \\(a nil value\\)\n\\{\\}\n(.|\n)*"
           "DETAILS: Lua Error!(.|\n)*The expression true failed\\."},
      {"NoUpdate.lua", "function Start() end function End() end",
       "Error executing lua function \"Update\" : " + at + "attempt to call a nil value"},
      {"Broken.lua", "function Update(\n  SetData(\n",
       "\nLUA ERR:: Scripts/Broken\\.lua:2:" + noStart},
      {"Throws.lua", "error('not today')\nfunction Start() end",
       "\nLUA ERR:: Scripts/Throws\\.lua:1: not today\n" + noStart},
      {"Absent.lua", "", "\nLUA ERR:: cannot open Scripts/Missing\\.lua" + noStart},
      {"FailsAtStart.lua", "function Start(name)\n  error('no ' .. name)\nend",
       "Error executing lua function \"Start\" : " + at +
           "Scripts/FailsAtStart\\.lua:2: no Crate(.|\n)*Lua Error!"},
      {"Stuck.lua",
       "function Update() end function End() end function Start()\n"
       "  string.find(string.rep('a', 30) .. 'b', string.rep('a*', 25) .. 'c')\nend",
       "Scripts/Stuck\\.lua " + at +
           " has not returned from one call in 0\\.[5-9](.|\n)*Lua Error!"},
      {"Loop.lua",
       "function Start() end function End() end function Update()\n  local n = 0\n  while true do "
       "n = n + 1 end\nend",
       "Error executing lua function \"Update\" : " + at +
           "Scripts/Loop\\.lua:3: stopped after 5 million instructions(.|\n)*Lua Error!"}};
  for (const auto& [file, text, expected] : cases) {
    SCOPED_TRACE(file);
    world_.WriteScript(file, text);
    EXPECT_DEATH(
        {
          StdoutToStderr();
          world_.ai_.Host()->SetInstructionBudget(5'000'000);
          // Only the call stuck in C may meet the time limit: a loaded machine must not let it
          // beat the instruction budget to the endless Lua loop.
          world_.ai_.Host()->SetCallTimeLimit(file == "Stuck.lua" ? std::chrono::milliseconds(500)
                                                                  : std::chrono::milliseconds(60'000));
          world_.AddObject("Arena", "Crate", {file == "Absent.lua" ? "Missing.lua" : file.c_str()});
          world_.AnnounceLevel("Arena");
          world_.Frame();
        },
        expected);
  }
}

}  // namespace
}  // namespace grindle::test
