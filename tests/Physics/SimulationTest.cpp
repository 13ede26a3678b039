// The frame step end to end: gravity, resting contact, rotation locks, the yaw read back through
// asin, pausing, and the database as the authority between frames.
#include <cmath>
#include <glm/glm.hpp>
#include <limits>
#include <numbers>

#include "PhysicsFixture.h"

namespace grindle {
namespace {

TEST_F(PhysicsTest, ABodyDroppedFromRestFallsAsGravityFifteenGivesWhateverTheFrameTime) {
  BoxSpec spec;
  spec.position = btVector3(3, 60, -4);
  AddBody("Crate", spec);
  const int frames = 15;
  for (int i = 0; i < frames; ++i) {
    // The frame time is ignored: every frame is four fixed steps.
    system_.Update(i % 2 == 0 ? 0.5f : 0.001f);
  }
  const double t = frames * kFrameSeconds;
  const double fallen = 60.0 - Read("Crate", "PositionY");
  // Stepping with a fixed 1/60 s is exact up to half a step's worth of speed over the time.
  const double stepError = kGravity * (1.0 / 60.0) * t;
  EXPECT_NEAR(fallen, 0.5 * kGravity * t * t, stepError);
  EXPECT_NEAR(Body("Crate").getLinearVelocity().y(), -kGravity * t, 1e-3);
  EXPECT_DOUBLE_EQ(Read("Crate", "PositionX"), 3.0);
  EXPECT_DOUBLE_EQ(Read("Crate", "PositionZ"), -4.0);
}

TEST_F(PhysicsTest, ABoxFallingOntoAStaticFloorComesToRestOnIt) {
  BoxSpec floor;
  floor.scale = btVector3(40, 1, 40);  // top face at y = 0.5
  floor.isStatic = true;
  AddBody("Floor", floor);
  BoxSpec crate;
  crate.position = btVector3(1, 6, 2);
  AddBody("Crate", crate);

  Frames(60);
  EXPECT_NEAR(Read("Crate", "PositionY"), 1.0, 0.06);
  EXPECT_NEAR(Body("Crate").getLinearVelocity().length(), 0.0, 0.05);
  EXPECT_NEAR(Read("Crate", "PositionX"), 1.0, 1e-3);
  // The static floor is never moved, not even by a script writing its transform.
  *TransformOf("Floor").Find<double>("PositionY") = 30.0;
  Frames(1);
  EXPECT_FLOAT_EQ(Centre("Floor").y(), 0.0f);
  EXPECT_NEAR(Read("Crate", "PositionY"), 1.0, 0.06);
}

TEST_F(PhysicsTest, RotationLocksKeepOrdinaryBoxesStraightAndLetMissilesTurnAboutTheVertical) {
  // Each mover slides into a fixed block that only half its front face meets, which turns any
  // body free to turn.
  for (const float z : {0.0f, 10.0f}) {
    BoxSpec block;
    block.position = btVector3(5, 0, z + 0.5f);
    block.isStatic = true;
    AddBody(z == 0 ? "Block" : "Block2", block);
    BoxSpec mover;
    mover.position = btVector3(0, 0, z);
    mover.gravityFactor = 0.0;
    AddBody(z == 0 ? "Crate" : "Missile1", mover);
  }

  for (const char* name : {"Crate", "Missile1"}) {
    messages_.SendArgs("msgSetBodyVelocity", Handle(name), 12.0, 0.0, 0.0);
  }
  Frames(12);

  const glm::mat4& crate = *TransformOf("Crate").Find<glm::mat4>("Rotation");
  EXPECT_NEAR(crate[0][0], 1.0, 1e-6);
  EXPECT_NEAR(crate[1][1], 1.0, 1e-6);
  EXPECT_NEAR(Read("Crate", "RotationY"), 0.0, 1e-6);
  EXPECT_NEAR(Body("Crate").getAngularVelocity().length(), 0.0, 1e-6);

  // The same hit turns a missile, about y only.
  const btVector3 spin = Body("Missile1").getAngularVelocity();
  EXPECT_GT(std::fabs(Read("Missile1", "RotationY")), 0.005);
  EXPECT_FLOAT_EQ(spin.x(), 0.0f);
  EXPECT_FLOAT_EQ(spin.z(), 0.0f);
  const glm::mat4& turned = *TransformOf("Missile1").Find<glm::mat4>("Rotation");
  EXPECT_NEAR(turned[1][1], 1.0, 1e-6);
}

TEST_F(PhysicsTest, YawPastAQuarterTurnReadsBackFoldedThroughAsin) {
  BoxSpec spec;
  spec.rotationY = 1.4;
  AddBody("Potato", spec);  // floats: a potato has no gravity by default
  Body("Potato").setAngularVelocity(btVector3(0, 3, 0));
  Frames(1);
  // The body turned to 1.4 + 3 * 4/60 = 1.6 rad; asin folds that back to pi - 1.6.
  const double turned = 1.4 + 3.0 * kFrameSeconds;
  EXPECT_NEAR(Record("Potato")->pObject_->getWorldTransform().getRotation().getAngle(), turned,
              1e-4);
  EXPECT_NEAR(Read("Potato", "RotationY"), std::numbers::pi - turned, 1e-4);
  // The next frame starts the body from the folded yaw the database holds, past the quarter turn
  // again, so it folds back once more.
  Frames(1);
  const double again = (std::numbers::pi - turned) + 3.0 * kFrameSeconds;
  EXPECT_NEAR(Read("Potato", "RotationY"), std::numbers::pi - again, 1e-4);
}

TEST_F(PhysicsTest, WhilePausedNothingMovesAndScriptWritesWaitForTheResume) {
  BoxSpec spec;
  spec.position = btVector3(0, 10, 0);
  AddBody("Crate", spec);
  Frames(2);
  const float centre = Centre("Crate").y();

  SetPaused(true);
  *TransformOf("Crate").Find<double>("PositionY") = 40.0;
  Frames(5);
  EXPECT_FLOAT_EQ(Centre("Crate").y(), centre);
  EXPECT_DOUBLE_EQ(Read("Crate", "PositionY"), 40.0);

  // A script pausing through SetData writes a number, not a bool.
  root_.Add<double>("isGamePaused", 1.0);
  Frames(1);
  EXPECT_FLOAT_EQ(Centre("Crate").y(), centre);

  root_.Add<double>("isGamePaused", 0.0);
  Frames(1);
  EXPECT_NEAR(Read("Crate", "PositionY"), 40.0, 0.5);
  EXPECT_LT(Read("Crate", "PositionY"), 40.0);
}

TEST_F(PhysicsTest, NumbersThatAreNotFiniteNeverReachTheWorld) {
  BoxSpec spec;
  spec.position = btVector3(0, std::nanf(""), 0);
  MakeObject("Broken", spec);
  const std::string out = CaptureStdout([&] { Announce("Broken"); });
  EXPECT_EQ(Record("Broken"), nullptr);
  EXPECT_NE(out.find("'Broken' of level 'Arena' has a position, scale or rotation that is not a "
                     "finite number"),
            std::string::npos)
      << out;

  spec.position = btVector3(0, 10, 0);
  AddBody("Crate", spec);
  *TransformOf("Crate").Find<double>("PositionY") = std::numeric_limits<double>::infinity();
  *TransformOf("Crate").Find<double>("RotationY") = std::nan("");
  Frames(1);
  // The body kept falling from where it was, and the database holds its real place again.
  EXPECT_LT(Read("Crate", "PositionY"), 10.0);
  EXPECT_GT(Read("Crate", "PositionY"), 9.0);
  EXPECT_DOUBLE_EQ(Read("Crate", "RotationY"), 0.0);
}

}  // namespace
}  // namespace grindle
