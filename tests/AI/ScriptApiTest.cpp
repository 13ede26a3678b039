// The engine functions as scripts call them: database paths, value marshalling, message sending
// limits, the listener bridge and ray casts without a physics system. Then script requests end to
// end: a script sends "SCR:" requests, the AI system turns them into the engine's messages, and a
// real physics system (or the database) shows the effect.
#include <gtest/gtest.h>

#include <glm/vec4.hpp>

#include "Core/MathTypes.h"
#include "Physics/PhysicsLibraryInterface.h"
#include "ScriptWorld.h"

namespace grindle::test {
namespace {

using ScriptApiTest = ScriptTest;

// FindData reads through the starred path parts; an int entry, a database and missing paths give no
// value. SetData writes by Lua type: a number where a number is changes in place, so handles other
// systems hold stay good; another kind of plain value is replaced; a database stays. Send passes a
// boolean as the empty text (it is no string to Lua's conversion); an immediate message arrives
// during the call, before anything queued.
TEST_F(ScriptApiTest, EngineFunctionsReadWriteSendAndListenAndRefuseWhatTheyCannotDo) {
  const DataHandle<Database> crate = world_.AddObject("Arena", "Crate", {"Probe.lua"});
  const DataHandle<double> px = crate->Add<Database>("Transform")->Add<double>("PositionX", 4.5);
  crate->Add<std::string>("Label", "wooden");
  crate->Add<bool>("Flag", true);
  crate->Add<int>("Counter", 7);
  world_.Echo({"Probe", "ProbeNow"});
  // Show(path, ...) prints, for each path, how many values FindData gave, the type and the value.
  world_.WriteScript("Probe.lua", world_.kEmptyEntries + std::string(R"(
function OnPing(...) print(select('#', ...), ...) end
function OnBoom() error("boom") end
function Show(...)
  for _, path in ipairs({...}) do print(select('#', FindData(path)), type((FindData(path))), FindData(path)) end
end
function Start()
  Show("*CurrentObject.Transform.PositionX", "*CurrentLevel.GameObjects.Crate.Transform.PositionX",
       "*CurrentLevel.*Name", "*CurrentObject.*Name", "*CurrentObject.Label", "*CurrentObject.Flag",
       "CurrentLevel", "*CurrentObject.Counter", "No.Such.Path", "*CurrentObject.Nothing",
       "*CurrentObject.Transform")
  print(RayCast(0, 10, 0, 0, -1, 0), RayCastName(0, 10, 0, 0, -1, 0))
  SetData("Lives", 3)
  SetData("GlobalVariables.Name", "abc")
  SetData("GlobalVariables.On", false)
  SetData("*CurrentLevel.GameObjects.Crate.Transform.PositionX", 9)
  SetData("*CurrentLevel.GameObjects.Crate.Label", 12)
  SetData("GlobalVariables.Only")
  SetData("Nowhere.At.All", 5)
  SetData("GlobalVariables.", 5)
  SetData("GlobalVariables.Table", {})
  SetData("Levels", 7)
  Show("Lives", "GlobalVariables.Name", "GlobalVariables.On", "*CurrentObject.Label",
       "GlobalVariables.Only", "Nowhere.At.All", "GlobalVariables.Table", "Levels")
  Send("Probe", 1, "two", true, 4)
  Send("Probe", 1, 2, 3, 4, 5)
  Send("Probe")
  SendImmediate("ProbeNow", 1, "2", 3)
  SendImmediate("ProbeNow", 1, 2, 3, 4)
  SayHey(" from the crate")
  Listen("Ping", "OnPing")
  Listen("Boom", "OnBoom")
  Listen("Gone", "OnPing")
  UnListen("Gone", "OnPing")
end
)"));
  EXPECT_EQ(CaptureStdout([&] { world_.AnnounceLevel("Arena"); }),
            "1\tnumber\t4.5\n1\tnumber\t4.5\n1\tstring\tArena\n1\tstring\tCrate\n"
            "1\tstring\twooden\n1\tboolean\ttrue\n1\tstring\tArena\n"
            "0\tnil\n0\tnil\n0\tnil\n0\tnil\n-1\t\n"
            "Wrong number of args passed to set database!"
            "SetData: \"Levels\" holds a database or an engine object and is not replaced\n"
            "1\tnumber\t3\n1\tstring\tabc\n1\tboolean\tfalse\n1\tnumber\t12\n"
            "0\tnil\n0\tnil\n0\tnil\n0\tnil\n"
            "Can't send message with > 4 arguments\nProbeNow(1 \"2\" 3)\n"
            "Can't send immediate message with > 3 arguments\nHey Guys! from the crate\n"
            "Probe(1 \"two\" \"\" 4)\nProbe()\n");
  EXPECT_EQ(*px, 9.0);
  EXPECT_FALSE(root_.FindEntry("Nowhere"));

  // The listener bridge: a value it cannot pass is left out, those behind it moving up, and the
  // count stays whole; an error
  // in one call leaves the next one working; a closed state's listeners go with it.
  EXPECT_EQ(handler_.ListenerCount("Gone"), 0u);
  auto ping = [&] {
    handler_.SendArgs("Ping", "text", true, 2.5);
    handler_.SendArgs("Boom");
    handler_.SendArgs("Ping", "again");
    world_.Deliver();
  };
  EXPECT_EQ(CaptureStdout(ping),
            "Attempt to pass wrong type of value to lua via message\n3\ttext\t2.5\tnil\n"
            "Error executing lua function \"OnBoom\" : Scripts/Probe.lua:3: boom\n1\tagain\n");
  handler_.SendArgs("UnloadLevel", "Arena");
  world_.Deliver();
  EXPECT_EQ(handler_.ListenerCount("Ping"), 0u);
  EXPECT_EQ(CaptureStdout(ping), "");
}

TEST_F(ScriptApiTest, RayCastsReachThePhysicsWorld) {
  root_.Add<bool>("isGamePaused", false);
  PhysicsInterface physics;
  StartSystem(physics, root_);
  world_.WriteScript("Eye.lua", world_.kEmptyEntries + std::string(R"(
function Start()
  SetData("GlobalVariables.down", RayCast(0, 20, 0, 0, -1, 0))
  print(RayCastName(0, 20, 0, 0, -0.001, 0), RayCast(0, 20, 0, 0, 1, 0))
end)"));
  // A 1 x 1 x 1 static floor at (0, 10, 0) and an eye.
  const DataHandle<Database> floor = world_.AddObject("Arena", "Floor", {});
  floor->Add<Database>("Transform")->Add<double>("PositionY", 10.0);
  floor->Add<Database>("Body")->Add<Vector4>("ShapeScale", Vector4{0.5f, 0.5f, 0.5f, 0});
  floor->Find<Database>("Body")->Add<int>("Static", 1);
  world_.AddObject("Arena", "Eye", {"Eye.lua"});
  // The level's bodies are built before its scripts start.
  handler_.SendArgs("msgLoadLevel", "Arena");
  EXPECT_EQ(CaptureStdout([&] { world_.AnnounceLevel("Arena"); }), "Floor\t-1\n");
  EXPECT_NEAR(world_.Global("down"), 9.5, 0.06);
  StopSystem(physics);
}

// A velocity for an unknown object is dropped; the other requests go out with a null handle. The
// pad index leaves as an integer. A colour keeps the material's alpha (a new material is opaque);
// the light turns with the body. A created object starts its archetype's script (the archetype
// itself runs none); a destroyed one ends it.
TEST_F(ScriptApiTest, RequestsBecomeEngineMessagesAndDatabaseChanges) {
  world_.Echo({"AddForceToBody", "AddRelativeForceToBody", "SetBodySpeed", "msgSetBodyRotation",
               "msgSetBodyVelocityXZ", "msgAddImpulse", "msgSetBodyVelocity",
               "msgSetControllerVibration"});
  world_.WriteScript("Asks.lua", world_.kEmptyEntries + std::string(R"(
function Start(me)
  Send("SCR:AddForceToObject", me, 1, 2, 3)
  Send("SCR:AddRelativeForceToObject", me, 4, 5, 6)
  Send("SCR:SetBodySpeed", me, 7)
  Send("SCR:RotateObjectAboutY", me, 0.5)
  Send("SCR:SetVelocityXZOnBody", me, 8, 9)
  Send("SCR:SetRelativeVelocityOnBody", me, 1, 0, 0)
  Send("SCR:SetVelocityOnBody", me, 3, 0, 0)
  Send("SCR:SetVelocityOnBody", "NoSuchObject", 1, 1, 1)
  Send("SCR:AddForceToObject", "NoSuchObject", 1, 1, 1)
  Send("SCR:SetControllerVibration", 2, 0.5, 1)
  Send("SCR:SetObjectColor", "Lamp", 0.25, 0.5, 0.75)
  Send("SCR:SetObjectColor", "Bare", 1, 0, 0)
  Send("SCR:RotateObjectWithLightAboutY", "Lamp", math.pi / 2)
  Send("SCR:CreateObject", "Crate", "Crate7")
end)"));
  world_.WriteScript("Spawned.lua", world_.kEmptyEntries + std::string(R"(
function Start(me) print("start " .. me) end
function End() print("end " .. (FindData("*CurrentObject.*Name") or "gone")) end
)"));
  const DataHandle<Database> archetype =
      root_.Add<Database>("GameObjectArchetypes")->Add<Database>("Crate")->Add<Database>("Script");
  archetype->Add<std::string>("FileName", "Spawned.lua");
  const DataHandle<Database> lamp = world_.AddObject("Arena", "Lamp", {});
  lamp->Add<Database>("Material")->Add<glm::vec4>("Diffuse", glm::vec4(1, 1, 1, 0.5f));
  const DataHandle<Database> light = lamp->Add<Database>("Light");
  for (const auto& [key, value] :
       {std::pair{"DirectionX", 0.0}, {"DirectionY", -1.0}, {"DirectionZ", 2.0}}) {
    light->Add<double>(key, value);
  }
  const DataHandle<Database> bare = world_.AddObject("Arena", "Bare", {});
  world_.AddObject("Arena", "Asker", {"Asks.lua"});
  EXPECT_EQ(CaptureStdout([&] { world_.AnnounceLevel("Arena"); }),
            "AddImpulse: 1.000000 0.000000 0.000000\n"
            "AddForceToBody(@Asker 1 2 3)\nAddRelativeForceToBody(@Asker 4 5 6)\n"
            "SetBodySpeed(@Asker 7)\nmsgSetBodyRotation(@Asker 0 1 0 0.5)\n"
            "msgSetBodyVelocityXZ(@Asker 8 9)\nmsgAddImpulse(@Asker 1 0 0)\n"
            "msgSetBodyVelocity(@Asker 3 0 0)\n"
            "AddForceToBody(@null 1 1 1)\nmsgSetControllerVibration(2i 0.5 1)\n"
            "msgSetBodyRotation(@Lamp 0 1 0 1.5708)\nstart Crate7\n");
  EXPECT_EQ(*lamp->Find<Database>("Material")->Find<glm::vec4>("Diffuse"),
            glm::vec4(0.25f, 0.5f, 0.75f, 0.5f));
  EXPECT_EQ(*bare->Find<Database>("Material")->Find<glm::vec4>("Diffuse"), glm::vec4(1, 0, 0, 1));
  EXPECT_NEAR(*light->Find<double>("DirectionX"), 2.0, 1e-9);
  EXPECT_NEAR(*light->Find<double>("DirectionZ"), 0.0, 1e-9);
  EXPECT_EQ(*light->Find<double>("DirectionY"), -1.0);

  EXPECT_EQ(CaptureStdout([&] {
              handler_.SendArgs("SCR:CreateObject", "Crate", "Crate7");
              handler_.SendArgs("SCR:CreateObject", "Barrel", "Barrel1");
              handler_.SendArgs("SCR:DestroyObject", "Crate7");
              world_.Deliver();
            }),
            "SCR:CreateObject: an object named \"Crate7\" already exists\n"
            "SCR:CreateObject: no archetype \"Barrel\" or no current level to put it in\n"
            "end Crate7\n");
  ASSERT_TRUE(world_.Db("Levels.Arena.GameObjects.Crate7.Script"));
  EXPECT_FALSE(world_.Db("Levels.Arena.GameObjects.Crate7.Script")->FindEntry("LuaState"));
  EXPECT_FALSE(archetype->FindEntry("LuaState"));
  EXPECT_EQ(world_.ai_.Host()->RunningScriptCount(), 1u);
}

}  // namespace
}  // namespace grindle::test
