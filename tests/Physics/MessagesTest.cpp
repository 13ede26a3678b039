// Velocity and rotation requests, object and level announcements, and the system's life cycle, all
// driven through the real message handler.
#include <glm/glm.hpp>

#include "PhysicsFixture.h"

namespace grindle {
namespace {

TEST_F(PhysicsTest, AddImpulseReplacesTheVelocityLikeSetBodyVelocity) {
  BoxSpec spec;
  spec.gravityFactor = 0.0;
  AddBody("Crate", spec);
  messages_.SendArgs("msgAddImpulse", Handle("Crate"), 1.0, 0.0, 0.0);
  messages_.SendArgs("msgAddImpulse", Handle("Crate"), 1.0, 0.0, 0.0);
  messages_.Deliver(MessageHandler::kDeliverAll);
  EXPECT_FLOAT_EQ(Body("Crate").getLinearVelocity().x(), 1.0f);

  messages_.SendArgs("msgSetBodyVelocity", Handle("Crate"), 0.0, 2.0, -3.0);
  Frames(1);
  EXPECT_NEAR(Read("Crate", "PositionY"), 2.0 * kFrameSeconds, 1e-4);
  EXPECT_NEAR(Read("Crate", "PositionZ"), -3.0 * kFrameSeconds, 1e-4);
  EXPECT_NEAR(Read("Crate", "PositionX"), 0.0, 1e-6);
}

TEST_F(PhysicsTest, VelocityRequestsAndTransformWritesWakeASleepingBody) {
  BoxSpec floor;
  floor.scale = btVector3(40, 1, 40);
  floor.isStatic = true;
  AddBody("Floor", floor);
  BoxSpec crate;
  crate.position = btVector3(0, 1, 0);
  AddBody("Crate", crate);
  Frames(60);  // four simulated seconds: long enough for the body to fall asleep
  ASSERT_FALSE(Body("Crate").isActive());
  messages_.SendArgs("msgSetBodyVelocity", Handle("Crate"), 3.0, 0.0, 0.0);
  Frames(1);
  EXPECT_GT(Read("Crate", "PositionX"), 0.1);

  // So does a script moving it through its transform: lifted, it falls back.
  Frames(60);
  ASSERT_FALSE(Body("Crate").isActive());
  *TransformOf("Crate").Find<double>("PositionY") = 5.0;
  Frames(1);
  EXPECT_LT(Read("Crate", "PositionY"), 5.0 - 0.02);
}

TEST_F(PhysicsTest, SetVelocityXZKeepsTheVerticalSpeedOfAFallingBody) {
  BoxSpec spec;
  spec.position = btVector3(0, 50, 0);
  AddBody("Crate", spec);
  Frames(3);
  const float falling = Body("Crate").getLinearVelocity().y();
  ASSERT_LT(falling, -1.0f);
  messages_.SendArgs("msgSetBodyVelocityXZ", Handle("Crate"), 2.0, -4.0);
  messages_.Deliver(MessageHandler::kDeliverAll);
  const btVector3 v = Body("Crate").getLinearVelocity();
  EXPECT_FLOAT_EQ(v.x(), 2.0f);
  EXPECT_FLOAT_EQ(v.y(), falling);
  EXPECT_FLOAT_EQ(v.z(), -4.0f);
}

TEST_F(PhysicsTest, SetBodyRotationTurnsTheBodyAndWritesTheAngle) {
  AddBody("Crate", BoxSpec{});
  messages_.SendArgs("msgSetBodyRotation", Handle("Crate"), 0.0, 1.0, 0.0, 0.7);
  messages_.Deliver(MessageHandler::kDeliverAll);
  EXPECT_DOUBLE_EQ(Read("Crate", "RotationY"), static_cast<double>(0.7f));
  EXPECT_NEAR(Record("Crate")->pObject_->getWorldTransform().getRotation().getAngle(), 0.7, 1e-6);
  Frames(1);
  EXPECT_NEAR(Read("Crate", "RotationY"), 0.7, 1e-6);
  const glm::mat4& rotation = *TransformOf("Crate").Find<glm::mat4>("Rotation");
  EXPECT_NEAR(rotation[0][2], -std::sin(0.7), 1e-6);
}

TEST_F(PhysicsTest, RemoveRotationalVelocityStopsASpinningPotatoByName) {
  AddBody("Potato", BoxSpec{});
  Body("Potato").setAngularVelocity(btVector3(0, 2, 0));
  messages_.SendArgs("msgRemoveRotationalVelocity", std::string("Potato"));
  Frames(1);
  EXPECT_FLOAT_EQ(Body("Potato").getAngularVelocity().length(), 0.0f);
  EXPECT_NEAR(Read("Potato", "RotationY"), 0.0, 1e-6);
}

TEST_F(PhysicsTest, RequestsForObjectsWithoutBodiesOrWithBadArgumentsAreIgnored) {
  AddBody("Crate", BoxSpec{});
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
  EXPECT_DOUBLE_EQ(Read("Crate", "RotationY"), 0.0);
  EXPECT_EQ(Sim().Records().size(), 1u);
  EXPECT_NE(out.find("msgSetBodyVelocity expects (object handle, x, y, z)"), std::string::npos)
      << out;
  EXPECT_NE(out.find("msgSetBodyRotation for 'Crate' has no axis"), std::string::npos) << out;
}

TEST_F(PhysicsTest, ObjectDestroyedRemovesTheBodyAndItsBackPointer) {
  AddBody("Crate", BoxSpec{});
  BoxSpec other;
  other.position = btVector3(5, 0, 0);
  AddBody("Barrel", other);
  // The graphics system's form puts a level handle first; the name is found either way.
  messages_.SendArgs("msgObjectDestroyed", root_.Find<Database>("Levels")->Find<Database>(kLevel),
                     std::string("Crate"));
  Frames(1);
  EXPECT_EQ(Record("Crate"), nullptr);
  EXPECT_FALSE(Handle("Crate")->Find<Database>("Body")->Find<BodyRecord*>("BodyGetBack"));
  ASSERT_EQ(Sim().Records().size(), 1u);
  EXPECT_EQ(Sim().Records().front()->sName_, "Barrel");
  EXPECT_EQ(Sim().NameOf(Record("Barrel")->pObject_.get()), "Barrel");
  // The removed body is gone from the world: the transform no longer follows anything.
  *TransformOf("Crate").Find<double>("PositionY") = 7.0;
  Frames(1);
  EXPECT_DOUBLE_EQ(Read("Crate", "PositionY"), 7.0);
}

TEST_F(PhysicsTest, LoadLevelRebuildsTheBodyListAndUnloadLevelEmptiesIt) {
  AddBody("Old", BoxSpec{});
  BoxSpec spec;
  spec.position = btVector3(0, 20, 0);
  MakeObject("Crate", spec, "Castle");
  spec.position = btVector3(5, 20, 0);
  MakeObject("Barrel", spec, "Castle");
  MakeObject("Crate", spec, "Castle");  // replaced: its name is listed twice
  Objects("Castle").Add<Database>("Sky");

  messages_.SendArgs("msgLoadLevel", std::string("Castle"));
  messages_.Deliver(MessageHandler::kDeliverAll);
  ASSERT_EQ(Sim().Records().size(), 2u);
  EXPECT_EQ(Sim().Records()[0]->sName_, "Barrel");
  EXPECT_EQ(Sim().Records()[1]->sName_, "Crate");
  EXPECT_EQ(Sim().Records()[1]->uLevelKey_, HashValue("Castle"));
  EXPECT_EQ(Record("Old"), nullptr);

  // Bodies follow their own level's objects, whichever level is current.
  Frames(1);
  EXPECT_LT(*TransformOf("Crate", "Castle").Find<double>("PositionY"), 20.0);

  messages_.SendArgs("msgUnloadLevel", std::string("Castle"));
  messages_.Deliver(MessageHandler::kDeliverAll);
  EXPECT_TRUE(Sim().Records().empty());
  EXPECT_FALSE(
      Objects("Castle").Find<Database>("Crate")->Find<Database>("Body")->FindEntry("BodyGetBack"));
}

TEST_F(PhysicsTest, ALevelRemovedBeforeItsUnloadMessageIsNeverTouched) {
  BoxSpec spec;
  spec.position = btVector3(0, 20, 0);
  MakeObject("Crate", spec, "Castle");
  messages_.SendArgs("msgLoadLevel", std::string("Castle"));
  Frames(1);
  // The level manager removes the old level's database before "msgUnloadLevel" is delivered, and a
  // reload replaces it without any message at all.
  root_.Find<Database>("Levels")->Remove("Castle");
  Frames(2);
  MakeObject("Crate", spec, "Castle");
  Frames(1);
  EXPECT_LT(*TransformOf("Crate", "Castle").Find<double>("PositionY"), 20.0);
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

  AddBody("Crate", BoxSpec{});
  const std::string out = CaptureStdout([&] {
    system_.Exit();
    system_.Unload();
  });
  EXPECT_EQ(out, "ExitPhysics\nUnloadPhysics\n");
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
