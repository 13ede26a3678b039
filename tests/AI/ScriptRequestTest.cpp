// Script requests end to end: a script sends "SCR:" requests, the AI system turns them into the
// engine's messages, and a real physics system (or the database) shows the effect.
#include <gtest/gtest.h>

#include <cmath>
#include <glm/vec4.hpp>
#include <vector>

#include "AI/Script.h"
#include "Core/MathTypes.h"
#include "Physics/PhysicsLibraryInterface.h"
#include "ScriptWorld.h"
#include "TestOutput.h"

namespace grindle::test {
namespace {

class ScriptRequestTest : public testing::Test {
 protected:
  void SetUp() override {
    void* args[kSynchronizeArgCount] = {&root_, &CurrentMemoryRegistry(), nullptr, nullptr};
    root_.Add<bool>("isGamePaused", false);
    CaptureStdout([&] {
      physics_.synchronize(args, kSynchronizeArgCount);
      physics_.Load();
      physics_.Start();
    });
  }
  void TearDown() override {
    CaptureStdout([&] {
      physics_.Exit();
      physics_.Unload();
    });
  }

  // A 1 x 1 x 1 box at (x, y, z) carrying `script`, announced as scripts create objects.
  DataHandle<Database> AddBox(const std::string& name, double x, double y, double z, bool isStatic,
                              const char* script) {
    const DataHandle<Database> object = script != nullptr
                                            ? world_.AddObject("Arena", name, {script})
                                            : world_.AddObject("Arena", name, {});
    const DataHandle<Database> transform = object->Add<Database>("Transform");
    const double values[] = {x, y, z, 0.0, 0.0, 0.0};
    const char* keys[] = {"PositionX", "PositionY", "PositionZ",
                          "RotationX", "RotationY", "RotationZ"};
    for (int i = 0; i < 6; ++i) transform->Add<double>(keys[i], values[i]);
    transform->Add<Vector4>("Scale", Vector4{1, 1, 1, 0});
    const DataHandle<Database> body = object->Add<Database>("Body");
    body->Add<Vector4>("ShapeScale", Vector4{0.5f, 0.5f, 0.5f, 0});
    for (const char* key : {"ShapeOffsetX", "ShapeOffsetY", "ShapeOffsetZ"})
      body->Add<double>(key, 0.0);
    body->Add<int>("Static", isStatic ? 1 : 0);
    body->Add<double>("GravityFactor", 0.0);
    *root_.Find<std::string>("CurrentLevel") = "Arena";
    handler_.SendArgs("msgObjectCreated", object, name, "Arena");
    world_.Deliver();
    return object;
  }

  void Frames(int count) {
    for (int i = 0; i < count; ++i) {
      world_.Frame();
      physics_.Update(1.0f / 60.0f);
    }
  }

  std::vector<std::vector<double>> Capture(const char* message) {
    handler_.Listen(message, "Test", [this, message](MessageArgs args) {
      std::vector<double> numbers;
      for (uint32_t i = 0; i < args.count; ++i) {
        if (const double* d = args.Get<double>(i)) numbers.push_back(*d);
      }
      captured_[message].push_back(numbers);
      handles_[message].push_back(
          args.Get<DataHandle<Database>>(0) ? args.Get<DataHandle<Database>>(0)->Get() : nullptr);
    });
    return {};
  }

  Database root_;
  MessageHandler handler_;
  ScriptWorld world_{root_, handler_};
  PhysicsInterface physics_;
  std::map<std::string, std::vector<std::vector<double>>> captured_;
  std::map<std::string, std::vector<Database*>> handles_;
};

TEST_F(ScriptRequestTest, VelocityRequestMovesTheBodyAndTheScriptSeesItThroughFindData) {
  world_.WriteScript("Roll.lua", R"(
function Start(me) Send("SCR:SetVelocityOnBody", me, 3, 0, 0) end
function Update() SetData("GlobalVariables.x", FindData("*CurrentObject.Transform.PositionX")) end
)");
  AddBox("Ball", 0, 5, 0, false, "Roll.lua");
  Frames(6);
  // Each physics frame advances 4/60 s at 3 units/s; the script read the position a frame late.
  EXPECT_NEAR(world_.Global("x"), 5 * 4.0 / 60.0 * 3.0, 0.02);
}

TEST_F(ScriptRequestTest, RayCastReachesThePhysicsWorld) {
  AddBox("Floor", 0, 10, 0, true, nullptr);
  world_.WriteScript("Eye.lua", R"(
function Start()
  SetData("GlobalVariables.down", RayCast(0, 20, 0, 0, -1, 0))
  SetData("GlobalVariables.hit", RayCastName(0, 20, 0, 0, -0.001, 0))
  SetData("GlobalVariables.up", RayCast(0, 20, 0, 0, 1, 0))
end)");
  AddBox("Eye", 50, 0, 0, true, "Eye.lua");
  EXPECT_NEAR(world_.Global("down"), 9.5, 0.06);
  EXPECT_EQ(world_.GlobalText("hit"), "Floor");
  EXPECT_EQ(world_.Global("up"), -1.0);
}

TEST_F(ScriptRequestTest, RequestsBecomeEngineMessagesInArgumentOrder) {
  for (const char* m :
       {"AddForceToBody", "AddRelativeForceToBody", "SetBodySpeed", "msgSetBodyRotation",
        "msgSetBodyVelocityXZ", "msgAddImpulse", "msgSetBodyVelocity"}) {
    Capture(m);
  }
  std::vector<std::pair<uint32_t, int32_t>> vibration;
  handler_.Listen("msgSetControllerVibration", "Test", [&](MessageArgs args) {
    vibration.push_back({args.TypeCode(0), args.Get<int32_t>(0) ? *args.Get<int32_t>(0) : -1});
  });
  world_.WriteScript("Asks.lua", R"(
function Start(me)
  Send("SCR:AddForceToObject", me, 1, 2, 3)
  Send("SCR:AddRelativeForceToObject", me, 4, 5, 6)
  Send("SCR:SetBodySpeed", me, 7)
  Send("SCR:RotateObjectAboutY", me, 0.5)
  Send("SCR:SetVelocityXZOnBody", me, 8, 9)
  Send("SCR:SetRelativeVelocityOnBody", me, 1, 0, 0)
  Send("SCR:SetVelocityOnBody", "NoSuchObject", 1, 1, 1)
  Send("SCR:AddForceToObject", "NoSuchObject", 1, 1, 1)
  Send("SCR:SetControllerVibration", 2, 0.5, 1)
end)");
  *root_.Find<std::string>("CurrentLevel") = "Arena";
  const std::string out = CaptureStdout([&] {
    world_.AddObject("Arena", "Asker", {"Asks.lua"});
    handler_.SendArgs("msgObjectCreated",
                      root_.Find<Database>("Levels")
                          ->Find<Database>("Arena")
                          ->Find<Database>("GameObjects")
                          ->Find<Database>("Asker"),
                      "Asker", "Arena");
    world_.Deliver();
  });
  using V = std::vector<std::vector<double>>;
  EXPECT_EQ(captured_["AddForceToBody"], (V{{1, 2, 3}, {1, 1, 1}}));
  EXPECT_EQ(captured_["AddRelativeForceToBody"], (V{{4, 5, 6}}));
  EXPECT_EQ(captured_["SetBodySpeed"], (V{{7}}));
  EXPECT_EQ(captured_["msgSetBodyRotation"], (V{{0, 1, 0, 0.5}}));
  EXPECT_EQ(captured_["msgSetBodyVelocityXZ"], (V{{8, 9}}));
  EXPECT_EQ(captured_["msgAddImpulse"], (V{{1, 0, 0}}));
  // A velocity for an unknown object is dropped; the other requests go out with a null handle.
  EXPECT_TRUE(captured_["msgSetBodyVelocity"].empty());
  ASSERT_EQ(handles_["AddForceToBody"].size(), 2u);
  EXPECT_NE(handles_["AddForceToBody"][0], nullptr);
  EXPECT_EQ(handles_["AddForceToBody"][1], nullptr);
  EXPECT_NE(out.find("AddImpulse: 1.000000 0.000000 0.000000\n"), std::string::npos) << out;
  ASSERT_EQ(vibration.size(), 1u);
  EXPECT_EQ(vibration[0].second, 2);
}

TEST_F(ScriptRequestTest, CreatedObjectsStartTheirScriptsAndDestroyedOnesEndThem) {
  world_.WriteScript("Spawned.lua", R"(
function Start(me) SetData("GlobalVariables.started", me) end
function End() SetData("GlobalVariables.ended", FindData("*CurrentObject.*Name") or "gone") end
)");
  world_.WriteScript("Spawner.lua", R"(
function Start() Send("SCR:CreateObject", "Crate", "Crate7") end
)");
  const DataHandle<Database> archetypes = root_.Add<Database>("GameObjectArchetypes");
  archetypes->Add<Database>("Crate")->Add<Database>("Script")->Add<std::string>("FileName",
                                                                                "Spawned.lua");
  world_.AddObject("Arena", "Spawner", {"Spawner.lua"});
  world_.AnnounceLevel("Arena");
  const DataHandle<Database> objects =
      root_.Find<Database>("Levels")->Find<Database>("Arena")->Find<Database>("GameObjects");
  ASSERT_TRUE(objects->Find<Database>("Crate7"));
  EXPECT_EQ(world_.GlobalText("started"), "Crate7");
  EXPECT_EQ(objects->Find<Database>("Crate7")->Name(), "Crate7");
  EXPECT_FALSE(
      archetypes->Find<Database>("Crate")->Find<Database>("Script")->FindEntry("LuaState"));

  const std::string again = CaptureStdout([&] {
    handler_.SendArgs("SCR:CreateObject", "Crate", "Crate7");
    handler_.SendArgs("SCR:CreateObject", "Barrel", "Barrel1");
    world_.Deliver();
  });
  EXPECT_NE(again.find("\"Crate7\" already exists"), std::string::npos) << again;
  EXPECT_NE(again.find("no archetype \"Barrel\""), std::string::npos) << again;
  EXPECT_EQ(world_.ai_.Host()->RunningScriptCount(), 2u);

  handler_.SendArgs("SCR:DestroyObject", "Crate7");
  world_.Deliver();
  EXPECT_EQ(world_.GlobalText("ended"), "Crate7");
  EXPECT_FALSE(objects->Find<Database>("Crate7")->Find<Database>("Script")->FindEntry("LuaState"));
  EXPECT_EQ(world_.ai_.Host()->RunningScriptCount(), 1u);
}

TEST_F(ScriptRequestTest, ColourAndLightFollowTheirRequests) {
  const DataHandle<Database> lamp = world_.AddObject("Arena", "Lamp", {});
  lamp->Add<Database>("Material")->Add<glm::vec4>("Diffuse", glm::vec4(1, 1, 1, 0.5f));
  const DataHandle<Database> light = lamp->Add<Database>("Light");
  light->Add<double>("DirectionX", 0.0);
  light->Add<double>("DirectionY", -1.0);
  light->Add<double>("DirectionZ", 2.0);
  const DataHandle<Database> bare = world_.AddObject("Arena", "Bare", {});
  *root_.Find<std::string>("CurrentLevel") = "Arena";
  Capture("msgSetBodyRotation");
  handler_.SendArgs("SCR:SetObjectColor", "Lamp", 0.25, 0.5, 0.75);
  handler_.SendArgs("SCR:SetObjectColor", "Bare", 1.0, 0.0, 0.0);
  handler_.SendArgs("SCR:RotateObjectWithLightAboutY", "Lamp", M_PI / 2);
  world_.Deliver();
  const glm::vec4 diffuse = *lamp->Find<Database>("Material")->Find<glm::vec4>("Diffuse");
  EXPECT_EQ(diffuse, glm::vec4(0.25f, 0.5f, 0.75f, 0.5f));
  EXPECT_EQ(*bare->Find<Database>("Material")->Find<glm::vec4>("Diffuse"), glm::vec4(1, 0, 0, 1));
  EXPECT_NEAR(*light->Find<double>("DirectionX"), 2.0, 1e-9);
  EXPECT_NEAR(*light->Find<double>("DirectionZ"), 0.0, 1e-9);
  EXPECT_EQ(*light->Find<double>("DirectionY"), -1.0);
  EXPECT_EQ(captured_["msgSetBodyRotation"],
            (std::vector<std::vector<double>>{{0, 1, 0, M_PI / 2}}));
}

}  // namespace
}  // namespace grindle::test
