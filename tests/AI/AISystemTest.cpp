// The AI system as the frame loop, the level manager and the input system drive it: life-cycle
// lines, per-frame values, level switches and reloads through the real level manager with level
// files on disk, player scripts starting last, pause and the way back to the title level, and
// device input forwarded to scripts.
#include <gtest/gtest.h>

#include <cmath>
#include <ctime>

#include "Core/Bootstrapper/LevelManager.h"
#include "InputHarness.h"
#include "ScriptWorld.h"

namespace grindle::test {
namespace {

using AISystemTest = ScriptTest;

TEST_F(AISystemTest, StartsWithItsLinesAndDateCountsFramesAndTimersAndStopsListening) {
  EXPECT_EQ(world_.startOutput, "LoadAI\nStartAI\n");
  const std::time_t now = std::time(nullptr);
  EXPECT_EQ(world_.Global("wMonth"), std::localtime(&now)->tm_mon + 1);

  handler_.SendArgs("SCR:SetCountdown", 3.0, 0.05);
  for (double bad : {8.0, -1.0, 2.5, std::nan(""), HUGE_VAL}) {
    handler_.SendArgs("SCR:SetCountdown", bad, 1.0);
  }
  handler_.SendArgs("ConsolePrint", "round over");
  EXPECT_EQ(CaptureStdout([&] { world_.Deliver(); }),
            "SCR:SetCountdown: no countdown 8 (there are 8, from 0)\n"
            "SCR:SetCountdown: no countdown -1 (there are 8, from 0)\n"
            "SCR:SetCountdown: no countdown 2.5 (there are 8, from 0)\n"
            "SCR:SetCountdown: no countdown nan (there are 8, from 0)\n"
            "SCR:SetCountdown: no countdown inf (there are 8, from 0)\n"
            "round over\n");
  for (int i = 0; i < 8; ++i) {
    if (i != 3) {
      EXPECT_EQ(world_.Global("Countdown" + std::to_string(i)), 0.0) << i;
    }
  }
  world_.Frame();
  EXPECT_EQ(world_.Global("Count"), 1.0);
  EXPECT_NEAR(world_.Global("Countdown3"), 0.05 - 1.0 / 60.0, 1e-6);
  for (int i = 0; i < 5; ++i) world_.Frame();
  // Counting stops once a countdown is no longer above zero.
  EXPECT_LE(world_.Global("Countdown3"), 0.0);
  EXPECT_GT(world_.Global("Countdown3"), -1.0 / 60.0);
  EXPECT_EQ(world_.Global("Count"), 6.0);

  EXPECT_EQ(StopSystem(world_.ai_), "ExitAI\nUnloadAI\n");
  EXPECT_EQ(handler_.ListenerCount("Keyboard"), 0u);
}

TEST_F(AISystemTest, ScriptsUpdateWhilePausedAndExitToMenuUnpausesOnTheWayToTheTitle) {
  world_.WriteScript("Tick.lua", "function Start() end\nfunction End() end\n"
                                 "function Update() print('tick') end");
  world_.AddObject("Arena", "Clock", {"Tick.lua"});
  world_.AnnounceLevel("Arena");
  world_.Echo({"GamePaused", "GameUnpaused"});
  EXPECT_EQ(CaptureStdout([&] {
              world_.Frame();
              handler_.Send("TogglePauseMsg");
              world_.Deliver();
              world_.Frame();
              world_.Frame();
              handler_.Send("ExitToMainMenuMSG");
              world_.Deliver();
              world_.Frame();
            }),
            "tick\nGamePaused()\ntick\ntick\nGameUnpaused()\ntick\n");
  EXPECT_EQ(*root_.Find<std::string>("NextLevel"), "LevelTitleScreen");
  EXPECT_FALSE(*root_.Find<bool>("isGamePaused"));
}

TEST_F(AISystemTest, ScriptsLiveExactlyAsLongAsTheirLevelThroughSwitchesAndReloads) {
  std::filesystem::create_directories("Assets/Levels");
  const auto object = [](const char* name) {
    return std::string("<Database name=\"") + name + "\"><Database name=\"Script\">" +
           "<string name=\"FileName\">Tracer.lua</string></Database></Database>";
  };
  std::ofstream("Assets/Levels/LoadingScreen.xml") << "<Database name=\"GameObjects\"></Database>";
  std::ofstream("Assets/Levels/Title.xml")
      << "<Database name=\"GameObjects\">" << object("Logo") << "</Database>";
  std::ofstream("Assets/Levels/Arena.xml") << "<Database name=\"GameObjects\">" << object("Player1")
                                           << object("Player0") << object("Crate") << "</Database>";
  world_.WriteScript("Tracer.lua", world_.kEmptyEntries + std::string(R"(
local function Trace(text) SetData("GlobalVariables.Trace", (FindData("GlobalVariables.Trace") or "") .. text .. ";") end
function Start(me) Trace("start " .. me) end
function End() Trace("end " .. (FindData("*CurrentObject.*Name") or "?") .. " in " .. FindData("CurrentLevel")) end
)"));
  LevelManager levels(root_, handler_);
  // One pass of the frame loop's level step, delivery and the AI system's update.
  auto frame = [&] {
    CaptureStdout([&] { levels.ProcessLevelChange({&world_.ai_}); });
    world_.Frame();
  };
  levels.Initialize("Arena");
  frame();
  // Players start after the rest of the level, in their order.
  EXPECT_EQ(world_.Global<std::string>("Trace"), "start Crate;start Player0;start Player1;");

  *root_.Find<std::string>("NextLevel") = "Title";
  frame();
  // The arena's scripts end once it stopped being current and its data is gone.
  EXPECT_EQ(world_.Global<std::string>("Trace"),
            "start Crate;start Player0;start Player1;end ? in LoadingScreen;end ? in LoadingScreen;"
            "end ? in LoadingScreen;start Logo;");
  EXPECT_EQ(world_.ai_.Host()->RunningScriptCount(), 1u);
  EXPECT_FALSE(world_.Db("Levels.Arena"));

  // A reload of the current level ends its scripts (their data already gone) before the new ones
  // start; unloading all levels ends the rest.
  *world_.Db("GlobalVariables")->Find<std::string>("Trace") = "";
  *root_.Find<std::string>("NextLevel") = "Title";
  CaptureStdout([&] { levels.SwitchLevel(); });
  world_.Deliver();
  levels.UnloadAllLevels();
  world_.Deliver();
  EXPECT_EQ(world_.Global<std::string>("Trace"), "end ? in Title;start Logo;end Logo in Title;");
  EXPECT_EQ(world_.ai_.Host()->RunningScriptCount(), 0u);
}

TEST_F(AISystemTest, ScriptDestroyingItselfFromItsOwnCallIsClosedAfterTheCallReturns) {
  world_.WriteScript("Self.lua", R"(
function Start() end
function Update()
  SendImmediate("msgObjectDestroyed", "Crate")
  print("after destroy")
end
function End() print("ended") end
)");
  world_.AddObject("Arena", "Crate", {"Self.lua"});
  world_.AnnounceLevel("Arena");
  // "End" runs at once; the state itself stays open until the call that destroyed it returns.
  EXPECT_EQ(CaptureStdout([&] { world_.Frame(); }), "ended\nafter destroy\n");
  EXPECT_EQ(world_.ai_.Host()->RunningScriptCount(), 0u);
}

using InputForwardingTest = InputHarness;

// Device input reaching scripts: keys written into SDL's key state, window messages for the mouse
// and a virtual pad on SDL's joystick driver go through the real input system, whose device
// messages the AI system forwards as "SCR:" events to a script's listeners. Stick steps also
// reach scripted menus, once per step; held buttons report as buttons, not triggered again.
TEST_F(InputForwardingTest, KeysMouseAndPadsReachScriptListeners) {
  ScriptWorld world(root_, handler_);
  // The script prints every event its listeners receive as one line "event:arg,arg,...".
  world.WriteScript("Recorder.lua", world.kEmptyEntries + std::string(R"(
for _, name in ipairs({"SCR:KeyboardPressed", "SCR:KeyboardTriggered", "SCR:Cheat",
    "SCR:MouseButtonPressed", "SCR:MouseButtonTriggered", "SCR:MouseButtonReleased",
    "SCR:MousePosition", "SCR:MouseDeltaPosition", "SCR:MouseWheel", "SCR:ControllerButton",
    "SCR:ControllerButtonTriggered", "SCR:ControllerLeftStick", "SCR:ControllerRightStick",
    "msgLeftStick_Down", "msgRightStick_Right", "SCR:MenuDown"}) do
  _G[name] = function(...) print(name .. ":" .. table.concat({...}, ",")) end
  Listen(name, name)
end
)"));
  world.AddObject("Arena", "Listener", {"Recorder.lua"});
  world.AnnounceLevel("Arena");
  Activate();
  // One frame of the engine: input samples and sends, delivery forwards to the script.
  const auto frameLog = [&] {
    return CaptureStdout([&] {
      Frame();
      world.Frame();
    });
  };
  frameLog();  // the first frame reports where the mouse starts
  SetKey(SDL_SCANCODE_SPACE, true);
  SetKey(SDL_SCANCODE_F3, true);
  EXPECT_EQ(frameLog(),
            "SCR:KeyboardTriggered:Space\nSCR:KeyboardTriggered:F3\nSCR:Cheat:NextLevel\n");
  SetKey(SDL_SCANCODE_F3, false);
  EXPECT_EQ(frameLog(), "SCR:KeyboardPressed:Space\n");
  SetKey(SDL_SCANCODE_SPACE, false);  // a release is no event

  WindowMessage(kWmMouseMove, 0, 100 | (50 << 16));
  EXPECT_EQ(frameLog(), "SCR:MouseDeltaPosition:100,50\nSCR:MousePosition:100,50\n");
  WindowMessage(kWmLButtonDown, 0, 110 | (45 << 16));
  WindowMessage(kWmMouseWheel, static_cast<uint64_t>(static_cast<uint16_t>(-120)) << 16,
                110 | (45 << 16));
  EXPECT_EQ(frameLog(),
            "SCR:MouseButtonTriggered:LEFT\nSCR:MouseButtonPressed:LEFT\n"
            "SCR:MouseDeltaPosition:10,-5\nSCR:MousePosition:110,45\nSCR:MouseWheel:-1\n");
  WindowMessage(kWmLButtonUp, 0, 110 | (45 << 16));
  EXPECT_EQ(frameLog(), "SCR:MouseButtonReleased:LEFT\n");

  VirtualPad pad;
  frameLog();  // the pad is seated in this frame
  pad.Press(SDL_CONTROLLER_BUTTON_A);
  pad.SetAxis(SDL_CONTROLLER_AXIS_TRIGGERRIGHT, 32767);
  pad.SetAxis(SDL_CONTROLLER_AXIS_LEFTY, 32767);  // SDL's Y grows downwards
  EXPECT_EQ(frameLog(),
            "SCR:ControllerLeftStick:0,0,-1\nSCR:ControllerButtonTriggered:A,0\n"
            "SCR:ControllerButtonTriggered:RightTrigger,0\nmsgLeftStick_Down:0\nSCR:MenuDown:0\n");
  pad.Press(SDL_CONTROLLER_BUTTON_B);
  pad.SetAxis(SDL_CONTROLLER_AXIS_RIGHTX, 32767);
  EXPECT_EQ(frameLog(),
            "SCR:ControllerLeftStick:0,0,-1\nSCR:ControllerRightStick:0,1,0\n"
            "SCR:ControllerButton:A,0\nSCR:ControllerButtonTriggered:B,0\n"
            "SCR:ControllerButton:RightTrigger,0\nmsgRightStick_Right:0\n");
}

}  // namespace
}  // namespace grindle::test
