// Device input reaching scripts: keys written into SDL's key state, a virtual pad on SDL's
// joystick driver and window messages for the mouse go through the real input system, whose
// device messages the AI system forwards as "SCR:" events to a script's listeners.
#include <gtest/gtest.h>

#include "InputHarness.h"
#include "ScriptWorld.h"
#include "TestOutput.h"

namespace grindle::test {
namespace {

// Records every event a script listener receives as one line "event:arg,arg,...".
constexpr const char* kRecorder = R"(
local events = {"SCR:KeyboardPressed", "SCR:KeyboardTriggered", "SCR:Cheat", "SCR:MouseButtonPressed",
  "SCR:MouseButtonTriggered", "SCR:MouseButtonReleased", "SCR:MousePosition", "SCR:MouseDeltaPosition",
  "SCR:MouseWheel", "SCR:ControllerButton", "SCR:ControllerButtonTriggered", "SCR:ControllerLeftStick",
  "SCR:ControllerRightStick", "msgLeftStick_Down", "msgRightStick_Right", "SCR:MenuDown"}
log = ""
for i, name in ipairs(events) do
  _G["On" .. i] = function(...)
    local parts = {}
    for _, v in ipairs({...}) do parts[#parts + 1] = tostring(v) end
    log = log .. name .. ":" .. table.concat(parts, ",") .. "\n"
  end
  Listen(name, "On" .. i)
end
function Update() SetData("GlobalVariables.Log", log); log = "" end
)";

class InputForwardingTest : public InputHarness {
 protected:
  void SetUp() override {
    InputHarness::SetUp();
    world_ = std::make_unique<ScriptWorld>(root_, handler_);
    world_->WriteScript("Recorder.lua", kRecorder);
    world_->AddObject("Arena", "Listener", {"Recorder.lua"});
    world_->AnnounceLevel("Arena");
    Activate();
  }
  void TearDown() override {
    world_.reset();
    InputHarness::TearDown();
  }

  // One frame of the engine: input samples and sends, delivery forwards, scripts update and log.
  std::string FrameLog() {
    Frame();
    world_->Frame();
    return world_->GlobalText("Log");
  }

  std::unique_ptr<ScriptWorld> world_;
};

bool Has(const std::string& log, const std::string& line) {
  return log.find(line + "\n") != std::string::npos;
}

TEST_F(InputForwardingTest, KeysArriveTriggeredThenHeldAndDebugKeysAsCheats) {
  SetKey(SDL_SCANCODE_SPACE, true);
  SetKey(SDL_SCANCODE_F3, true);
  std::string log = FrameLog();
  EXPECT_TRUE(Has(log, "SCR:KeyboardTriggered:Space")) << log;
  EXPECT_TRUE(Has(log, "SCR:Cheat:NextLevel")) << log;
  EXPECT_FALSE(Has(log, "SCR:KeyboardPressed:Space")) << log;

  SetKey(SDL_SCANCODE_F3, false);
  log = FrameLog();
  EXPECT_TRUE(Has(log, "SCR:KeyboardPressed:Space")) << log;
  EXPECT_FALSE(Has(log, "SCR:KeyboardTriggered:Space")) << log;
  EXPECT_FALSE(Has(log, "SCR:Cheat:NextLevel")) << log;
}

TEST_F(InputForwardingTest, MouseButtonsPositionAndWheelArriveWithTheirValues) {
  WindowMessage(kWmMouseMove, 0, 100 | (50 << 16));
  std::string log = FrameLog();
  EXPECT_TRUE(Has(log, "SCR:MousePosition:100,50")) << log;

  WindowMessage(kWmLButtonDown, 0, 110 | (45 << 16));
  WindowMessage(kWmMouseWheel, static_cast<uint64_t>(static_cast<uint16_t>(-120)) << 16,
                110 | (45 << 16));
  log = FrameLog();
  EXPECT_TRUE(Has(log, "SCR:MouseButtonTriggered:LEFT")) << log;
  EXPECT_TRUE(Has(log, "SCR:MouseButtonPressed:LEFT")) << log;
  EXPECT_TRUE(Has(log, "SCR:MouseDeltaPosition:10,-5")) << log;
  EXPECT_TRUE(Has(log, "SCR:MousePosition:110,45")) << log;
  EXPECT_TRUE(Has(log, "SCR:MouseWheel:-1")) << log;

  WindowMessage(kWmLButtonUp, 0, 110 | (45 << 16));
  log = FrameLog();
  EXPECT_TRUE(Has(log, "SCR:MouseButtonReleased:LEFT")) << log;
  EXPECT_FALSE(log.find("SCR:MousePosition") != std::string::npos) << log;
  EXPECT_FALSE(log.find("SCR:MouseWheel") != std::string::npos) << log;
}

TEST_F(InputForwardingTest, PadButtonsSticksAndStickStepsArriveWithThePadIndex) {
  VirtualPad pad;
  pad.Press(SDL_CONTROLLER_BUTTON_A);
  pad.SetAxis(SDL_CONTROLLER_AXIS_LEFTY, 32767);  // SDL's Y grows downwards
  pad.SetAxis(SDL_CONTROLLER_AXIS_TRIGGERRIGHT, 32767);
  FrameLog();  // the pad is seated in this frame
  std::string log = FrameLog();
  for (int i = 0; i < 3 && log.find("SCR:ControllerButton") == std::string::npos; ++i)
    log = FrameLog();
  EXPECT_TRUE(Has(log, "SCR:ControllerButton:A,0")) << log;
  EXPECT_TRUE(Has(log, "SCR:ControllerButtonTriggered:RightTrigger,0")) << log;
  EXPECT_TRUE(Has(log, "SCR:ControllerLeftStick:0,0,-1")) << log;

  pad.Press(SDL_CONTROLLER_BUTTON_B);
  pad.SetAxis(SDL_CONTROLLER_AXIS_RIGHTX, 32767);
  log = FrameLog();
  EXPECT_TRUE(Has(log, "SCR:ControllerButtonTriggered:B,0")) << log;
  EXPECT_TRUE(Has(log, "SCR:ControllerButton:RightTrigger,0")) << log;
  EXPECT_FALSE(Has(log, "SCR:ControllerButtonTriggered:RightTrigger,0")) << log;
  EXPECT_TRUE(Has(log, "SCR:ControllerRightStick:0,1,0")) << log;
  EXPECT_TRUE(Has(log, "msgRightStick_Right:0")) << log;
}

TEST_F(InputForwardingTest, LeftStickStepDownReachesScriptedMenus) {
  VirtualPad pad;
  FrameLog();
  pad.SetAxis(SDL_CONTROLLER_AXIS_LEFTY, 32767);
  std::string log = FrameLog();
  for (int i = 0; i < 3 && log.find("msgLeftStick_Down") == std::string::npos; ++i)
    log = FrameLog();
  EXPECT_TRUE(Has(log, "msgLeftStick_Down:0")) << log;
  EXPECT_TRUE(Has(log, "SCR:MenuDown:0")) << log;
  log = FrameLog();
  EXPECT_FALSE(Has(log, "msgLeftStick_Down:0")) << log;
}

}  // namespace
}  // namespace grindle::test
