// Velocity and rotation requests, object and level announcements, and the system's life cycle, all
// driven through the real message handler.
#include <cmath>
#include <glm/glm.hpp>

#include "PhysicsFixture.h"

namespace grindle {
namespace {

TEST_F(PhysicsTest, VelocityAndRotationRequestsReachTheBody) {
  AddBody("Crate", {.gravityFactor = 0.0});
  AddBody("Barrel", {.position = {5, 50, 0}});
  Frames(3);
  const float falling = Body("Barrel").getLinearVelocity().y();
  ASSERT_LT(falling, -1.0f);
  // An impulse is no impulse: it sets the velocity, so two of them give the same as one.
  messages_.SendArgs("msgAddImpulse", Handle("Crate"), 1.0, 0.0, 0.0);
  messages_.SendArgs("msgAddImpulse", Handle("Crate"), 1.0, 0.0, 0.0);
  messages_.SendArgs("msgSetBodyVelocityXZ", Handle("Barrel"), 2.0, -4.0);
  messages_.Deliver(MessageHandler::kDeliverAll);
  EXPECT_FLOAT_EQ(Body("Crate").getLinearVelocity().x(), 1.0f);
  EXPECT_TRUE(Near(Body("Barrel").getLinearVelocity(), {2, falling, -4}, 0));

  messages_.SendArgs("msgSetBodyVelocity", Handle("Crate"), 0.0, 2.0, -3.0);
  Frames(1);
  EXPECT_TRUE(Near(Position("Crate"), btVector3(0, 2, -3) * kFrameSeconds, 1e-4f));

  messages_.SendArgs("msgSetBodyRotation", Handle("Crate"), 0.0, 1.0, 0.0, 0.7);
  messages_.Deliver(MessageHandler::kDeliverAll);
  EXPECT_DOUBLE_EQ(Field("Crate", "RotationY"), static_cast<double>(0.7f));
  EXPECT_NEAR(Record("Crate")->pObject_->getWorldTransform().getRotation().getAngle(), 0.7, 1e-6);
  Frames(1);
  EXPECT_NEAR(Field("Crate", "RotationY"), 0.7, 1e-6);
  EXPECT_NEAR((*TransformOf("Crate").Find<glm::mat4>("Rotation"))[0][2], -std::sin(0.7), 1e-6);

  AddBody("Potato", {.position = {5, 0, 0}});  // by name, as scripts stop it
  Body("Potato").setAngularVelocity(btVector3(0, 2, 0));
  messages_.SendArgs("msgRemoveRotationalVelocity", std::string("Potato"));
  Frames(1);
  EXPECT_FLOAT_EQ(Body("Potato").getAngularVelocity().length(), 0.0f);
  EXPECT_NEAR(Field("Potato", "RotationY"), 0.0, 1e-6);
}

// An object leads to its body while its back-pointer stands: a copy of it (same name, the entry
// copied along) does too; once the entry or the Body group is gone, neither the object nor a
// request naming it reaches the body any more.
TEST_F(PhysicsTest, AnObjectReachesItsBodyOnlyWhileItsBackPointerStands) {
  Database& crate = AddBody("Crate", {});
  BodyRecord* record = Record("Crate");
  ASSERT_NE(record, nullptr);
  EXPECT_EQ(Sim().RecordOf(crate), record);
  Database& copy = *Objects("Castle").Add<Database>("Crate", crate);
  EXPECT_EQ(Sim().RecordOf(copy), record);
  EXPECT_EQ(Sim().RecordOf(*Objects("Castle").Add<Database>("Barrel", crate)), nullptr);

  crate.Find<Database>("Body")->Remove("BodyGetBack");
  EXPECT_EQ(Sim().RecordOf(crate), nullptr);
  EXPECT_EQ(Sim().RecordOf(copy), record);
  messages_.SendArgs("msgSetBodyVelocity", Handle("Crate"), 4.0, 0.0, 0.0);
  messages_.Deliver(MessageHandler::kDeliverAll);
  EXPECT_FLOAT_EQ(record->Rigid()->getLinearVelocity().x(), 0.0f);

  crate.Find<Database>("Body")->Add<BodyRecord*>("BodyGetBack", record);
  EXPECT_EQ(Sim().RecordOf(crate), record);
  crate.Add<Database>("Body");
  EXPECT_EQ(Sim().RecordOf(crate), nullptr);
}

TEST_F(PhysicsTest, RequestsForObjectsWithoutBodiesOrWithBadArgumentsAreIgnored) {
  AddBody("Crate", {});
  Objects().Add<Database>("Tree")->Add<Database>("Transform");
  const std::string out = CaptureStdout([&] {
    messages_.SendArgs("msgSetBodyVelocity", Handle("Tree"), 1.0, 1.0, 1.0);
    messages_.SendArgs("msgSetBodyVelocity", DataHandle<Database>(), 1.0, 1.0, 1.0);
    messages_.SendArgs("msgAddImpulse", std::string("Crate"), 1.0, 1.0, 1.0);
    messages_.SendArgs("msgSetBodyVelocity", Handle("Crate"), 1.0, std::string("up"), 1.0);
    messages_.SendArgs("msgSetBodyRotation", Handle("Crate"), 0.0, 0.0, 0.0, 1.0);
    messages_.SendArgs("msgRemoveRotationalVelocity", std::string("Nobody"));
    messages_.SendArgs("msgObjectDestroyed", std::string("Nobody"));
    messages_.SendArgs("msgObjectCreated");
    messages_.Deliver(MessageHandler::kDeliverAll);
  });
  EXPECT_FLOAT_EQ(Body("Crate").getLinearVelocity().length(), 0.0f);
  EXPECT_DOUBLE_EQ(Field("Crate", "RotationY"), 0.0);
  EXPECT_EQ(Sim().Records().size(), 1u);
  EXPECT_NE(out.find("msgSetBodyVelocity expects (object handle, x, y, z)"), std::string::npos)
      << out;
  EXPECT_NE(out.find("msgSetBodyRotation for 'Crate' has no axis"), std::string::npos) << out;
}

TEST_F(PhysicsTest, LoadLevelRebuildsTheBodyListAndUnloadLevelEmptiesItEvenForALevelAlreadyGone) {
  AddBody("Old", {});
  messages_.SendArgs("msgObjectDestroyed", std::string("Old"));  // as scripts destroy by name
  Frames(1);
  EXPECT_TRUE(Sim().Records().empty());
  MakeObject("Crate", {.position = {0, 20, 0}}, "Castle");
  MakeObject("Barrel", {.position = {5, 20, 0}}, "Castle");
  MakeObject("Crate", {.position = {5, 20, 0}}, "Castle");  // replaced: its name is listed twice
  Objects("Castle").Add<Database>("Sky");

  messages_.SendArgs("msgLoadLevel", std::string("Castle"));
  messages_.Deliver(MessageHandler::kDeliverAll);
  ASSERT_EQ(Sim().Records().size(), 2u);
  EXPECT_EQ(Sim().Records()[0]->sName_, "Barrel");
  EXPECT_EQ(Sim().Records()[1]->sName_, "Crate");
  EXPECT_EQ(Sim().Records()[1]->uLevelKey_, HashValue("Castle"));
  // Bodies follow their own level's objects, whichever level is current.
  Frames(1);
  EXPECT_LT(Field("Crate", "PositionY", "Castle"), 20.0);

  messages_.SendArgs("msgUnloadLevel", std::string("Castle"));
  messages_.Deliver(MessageHandler::kDeliverAll);
  EXPECT_TRUE(Sim().Records().empty());
  EXPECT_FALSE(BackPointer("Crate", "Castle"));

  messages_.SendArgs("msgLoadLevel", std::string("Castle"));
  Frames(1);
  // The level manager removes the old level's database before "msgUnloadLevel" is delivered, and a
  // reload replaces it without any message at all.
  root_.Find<Database>("Levels")->Remove("Castle");
  Frames(2);
  MakeObject("Crate", {.position = {0, 20, 0}}, "Castle");
  Frames(1);
  EXPECT_LT(Field("Crate", "PositionY", "Castle"), 20.0);
  messages_.SendArgs("msgUnloadLevel", std::string("Castle"));
  Frames(1);
  EXPECT_TRUE(Sim().Records().empty());
}

TEST_F(PhysicsTest, LifeCyclePrintsItsLinesAndPublishesTheRayCasterUntilUnload) {
  EXPECT_EQ(lifeCycle_, "LoadPhysics\nStartPhysics\n");
  const DataHandle<RayCaster*> caster =
      root_.Find<Database>("Systems")->Find<RayCaster*>("RayCaster");
  ASSERT_TRUE(caster);
  EXPECT_EQ(*caster, static_cast<RayCaster*>(&system_));
  EXPECT_EQ(messages_.ListenerCount("msgSetBodyVelocity"), 1u);

  AddBody("Crate", {});
  EXPECT_EQ(test::StopSystem(system_), "ExitPhysics\nUnloadPhysics\n");
  EXPECT_EQ(messages_.ListenerCount("msgSetBodyVelocity"), 0u);
  EXPECT_EQ(messages_.ListenerCount("msgLoadLevel"), 0u);
  EXPECT_FALSE(root_.Find<Database>("Systems")->FindEntry("RayCaster"));
  EXPECT_EQ(system_.Simulation(), nullptr);
  // The singleton is cleared: a new physics system may be made.
  PhysicsInterface next;
  EXPECT_NE(next.Simulation(), nullptr);
}

}  // namespace
}  // namespace grindle
