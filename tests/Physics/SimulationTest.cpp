// The frame step end to end: gravity, resting contact, sleep and wake, rotation locks, the yaw read
// back through asin, pausing, the database as the authority between frames, collision messages,
// and a level file on disk becoming bodies.
#include <unistd.h>

#include <cmath>
#include <cstdio>
#include <fstream>
#include <glm/glm.hpp>
#include <limits>
#include <numbers>

#include "Core/xmlParser.h"
#include "PhysicsFixture.h"
#include "TempWorkDir.h"

namespace grindle {
namespace {

bool Names(const Collision& c, const std::string& a, const std::string& b) {
  return (c.first == a && c.second == b) || (c.first == b && c.second == a);
}

TEST_F(PhysicsTest, ABodyDroppedFromRestFallsAsGravityFifteenGivesWhateverTheFrameTime) {
  AddBody("Crate", {.position = {3, 60, -4}});
  const int frames = 15;
  for (int i = 0; i < frames; ++i) {
    system_.Update(i % 2 == 0 ? 0.5f : 0.001f);  // ignored: every frame is four fixed steps
  }
  const double t = frames * kFrameSeconds;
  // Stepping with a fixed 1/60 s is exact up to half a step's worth of speed over the time.
  EXPECT_NEAR(60.0 - Field("Crate", "PositionY"), 0.5 * kGravity * t * t, kGravity / 60.0 * t);
  EXPECT_NEAR(Body("Crate").getLinearVelocity().y(), -kGravity * t, 1e-3);
  EXPECT_DOUBLE_EQ(Field("Crate", "PositionX"), 3.0);
  EXPECT_DOUBLE_EQ(Field("Crate", "PositionZ"), -4.0);
}

TEST_F(PhysicsTest, ACrateLandsSleepsWakesOnRequestsAndIsDestroyedWithEveryContactReportedOnce) {
  AddFloor();
  AddBody("Crate", {.position = {1, 6, 2}});
  Frames(60);
  EXPECT_NEAR(Field("Crate", "PositionY"), 1.0, 0.06);
  EXPECT_NEAR(Field("Crate", "PositionX"), 1.0, 1e-3);
  EXPECT_EQ(collisions_.size(), 1u);
  // The static floor is never moved, not even by a script writing its transform.
  Field("Floor", "PositionY") = 30.0;
  Frames(1);
  EXPECT_FLOAT_EQ(Centre("Floor").y(), 0.0f);
  EXPECT_NEAR(Field("Crate", "PositionY"), 1.0, 0.06);
  ASSERT_FALSE(Body("Crate").isActive()) << "four simulated seconds at rest put it to sleep";

  messages_.SendArgs("msgSetBodyVelocity", Handle("Crate"), 3.0, 12.0, 0.0);
  Frames(3);
  EXPECT_GT(Field("Crate", "PositionX"), 1.3);
  EXPECT_EQ(collisions_.size(), 2u) << "lifting off ends the contact";
  // Back down and asleep again, a script moving it through its transform wakes it too.
  Frames(75);
  ASSERT_FALSE(Body("Crate").isActive());
  Field("Crate", "PositionY") = 5.0;
  Frames(1);
  EXPECT_LT(Field("Crate", "PositionY"), 5.0 - 0.02);
  Frames(30);
  // Destroying it ends its contacts. The graphics system's form of the message puts a level handle
  // first; the name is found either way.
  messages_.SendArgs("msgObjectDestroyed", root_.Find<Database>("Levels")->Find<Database>(kLevel),
                     std::string("Crate"));
  Frames(2);
  ASSERT_EQ(collisions_.size(), 6u);
  for (size_t i = 0; i < collisions_.size(); ++i) {
    EXPECT_EQ(collisions_[i].message, i % 2 == 0 ? "CollisionBegin" : "CollisionEnd") << i;
    EXPECT_TRUE(Names(collisions_[i], "Floor", "Crate")) << i;
  }
  EXPECT_FALSE(BackPointer("Crate"));
  ASSERT_EQ(Sim().Records().size(), 1u);
  EXPECT_EQ(Sim().NameOf(Record("Floor")->pObject_.get()), "Floor");
  // The removed body is gone from the world: the transform no longer follows anything.
  Field("Crate", "PositionY") = 7.0;
  Frames(1);
  EXPECT_DOUBLE_EQ(Field("Crate", "PositionY"), 7.0);
}

TEST_F(PhysicsTest, RotationLocksKeepOrdinaryBoxesStraightAndLetMissilesTurnAboutTheVertical) {
  // Each mover slides into a fixed block that only half its front face meets, which turns any
  // body free to turn.
  for (const float z : {0.0f, 10.0f}) {
    AddBody(z == 0 ? "Block" : "Block2", {.position = {5, 0, z + 0.5f}, .isStatic = true});
    const char* mover = z == 0 ? "Crate" : "Missile1";
    AddBody(mover, {.position = {0, 0, z}, .gravityFactor = 0.0});
    messages_.SendArgs("msgSetBodyVelocity", Handle(mover), 12.0, 0.0, 0.0);
  }
  Frames(12);

  const glm::mat4& crate = *TransformOf("Crate").Find<glm::mat4>("Rotation");
  EXPECT_NEAR(crate[0][0], 1.0, 1e-6);
  EXPECT_NEAR(crate[1][1], 1.0, 1e-6);
  EXPECT_NEAR(Field("Crate", "RotationY"), 0.0, 1e-6);
  EXPECT_NEAR(Body("Crate").getAngularVelocity().length(), 0.0, 1e-6);
  // The same hit turns a missile, about y only.
  const btVector3 spin = Body("Missile1").getAngularVelocity();
  EXPECT_GT(std::fabs(Field("Missile1", "RotationY")), 0.005);
  EXPECT_FLOAT_EQ(spin.x(), 0.0f);
  EXPECT_FLOAT_EQ(spin.z(), 0.0f);
  EXPECT_NEAR((*TransformOf("Missile1").Find<glm::mat4>("Rotation"))[1][1], 1.0, 1e-6);
}

TEST_F(PhysicsTest, YawPastAQuarterTurnReadsBackFoldedThroughAsin) {
  AddBody("Potato", {.rotationY = 1.4});  // floats: a potato has no gravity by default
  Body("Potato").setAngularVelocity(btVector3(0, 3, 0));
  Frames(1);
  // The body turned to 1.4 + 3 * 4/60 = 1.6 rad; asin folds that back to pi - 1.6.
  const double turned = 1.4 + 3.0 * kFrameSeconds;
  EXPECT_NEAR(Record("Potato")->pObject_->getWorldTransform().getRotation().getAngle(), turned,
              1e-4);
  EXPECT_NEAR(Field("Potato", "RotationY"), std::numbers::pi - turned, 1e-4);
  // The next frame starts the body from the folded yaw the database holds, past the quarter turn
  // again, so it folds back once more.
  Frames(1);
  const double again = (std::numbers::pi - turned) + 3.0 * kFrameSeconds;
  EXPECT_NEAR(Field("Potato", "RotationY"), std::numbers::pi - again, 1e-4);
}

// A body keeps its transform entries from frame to frame; whatever replaces them (an entry written
// anew, a new Transform group, a new object of the same name) is what it follows from then on, and
// a removed body leaves nothing behind in the entries it used.
TEST_F(PhysicsTest, ABodyFollowsWhicheverEntriesReplaceTheOnesItWasBoundTo) {
  AddBody("Crate", {.position = {0, 10, 0}});
  Frames(1);
  TransformOf("Crate").Add<double>("PositionX", 7.0);
  Frames(1);
  EXPECT_FLOAT_EQ(Centre("Crate").x(), 7.0f);
  EXPECT_DOUBLE_EQ(Field("Crate", "PositionX"), 7.0);

  Database& moved = *Objects().Find<Database>("Crate")->Add<Database>("Transform");
  moved.Add<double>("PositionX", -3.0);
  moved.Add<float>("PositionY", 20.0f);  // a file's float: kept, as a double
  Frames(1);
  EXPECT_FLOAT_EQ(Centre("Crate").x(), -3.0f);
  EXPECT_NEAR(Centre("Crate").y(), 20.0f, 0.5f);
  EXPECT_LT(Field("Crate", "PositionY"), 20.0);
  EXPECT_DOUBLE_EQ(Field("Crate", "PositionZ"), 0.0) << "a missing axis is where the body is";
  EXPECT_DOUBLE_EQ(Field("Crate", "RotationY"), 0.0);
  EXPECT_TRUE(TransformOf("Crate").Find<glm::mat4>("Rotation"));

  // The level manager copying an object in anew, without announcing it: the new object has no
  // back-pointer, but the body is still the one of its level and name.
  const btCollisionObject& crate = *Record("Crate")->pObject_;
  MakeObject("Crate", {.position = {5, 30, 5}});
  Frames(1);
  EXPECT_FLOAT_EQ(crate.getWorldTransform().getOrigin().x(), 5.0f);
  EXPECT_LT(Field("Crate", "PositionY"), 30.0);

  AddBody("Ball", {.position = {-5, 30, -5}});
  Frames(1);
  messages_.SendArgs("msgObjectDestroyed", std::string("Ball"));
  Frames(1);
  TransformOf("Ball").Add<double>("PositionX", 1.0);
  Objects().Remove("Ball");
  Frames(1);
  ASSERT_EQ(Sim().Records().size(), 1u);
  EXPECT_LT(Field("Crate", "PositionY"), 29.0);
}

TEST_F(PhysicsTest, WhilePausedNothingMovesAndScriptWritesWaitForTheResume) {
  AddBody("Crate", {.position = {0, 10, 0}});
  Frames(2);
  const float centre = Centre("Crate").y();
  root_.Add<bool>("isGamePaused", true);
  Field("Crate", "PositionY") = 40.0;
  Frames(5);
  EXPECT_FLOAT_EQ(Centre("Crate").y(), centre);
  EXPECT_DOUBLE_EQ(Field("Crate", "PositionY"), 40.0);
  // A script pausing through SetData writes a number, not a bool.
  root_.Add<double>("isGamePaused", 1.0);
  Frames(1);
  EXPECT_FLOAT_EQ(Centre("Crate").y(), centre);

  root_.Add<double>("isGamePaused", 0.0);
  Frames(1);
  EXPECT_NEAR(Field("Crate", "PositionY"), 40.0, 0.5);
  EXPECT_LT(Field("Crate", "PositionY"), 40.0);
}

TEST_F(PhysicsTest, APowerUpReportsEnterAndLeaveAndDoesNotStopWhatPassesThrough) {
  AddBody("PowerUpSpeed", {.position = {0, 10, 0}, .scale = {4, 2, 4}, .isStatic = true});
  AddBody("Crate", {.position = {0, 20, 0}});
  AddBody("Witness", {.position = {30, 20, 0}});
  Frames(30);  // falls 2 s: from 20 to about -10, straight through the volume
  ASSERT_EQ(collisions_.size(), 2u);
  EXPECT_EQ(collisions_[0], (Collision{"CollisionBegin", "PowerUpSpeed", "Crate"}));
  EXPECT_EQ(collisions_[1], (Collision{"CollisionEnd", "PowerUpSpeed", "Crate"}));
  EXPECT_DOUBLE_EQ(Field("Crate", "PositionY"), Field("Witness", "PositionY"));
  EXPECT_EQ(Sim().Records()[0]->Rigid(), nullptr);
}

TEST_F(PhysicsTest, APowerUpVolumeIsTheBoxMovedByTheShapeOffset) {
  // The record sits at the position read and its box is moved by the offset from there, so the
  // volume spans x 9.5 .. 10.5: "Crate" overlaps it, "Decoy" only the unmoved box.
  AddBody("PowerUpShield", {.offset = {10, 0, 0}, .gravityFactor = 0.0});
  AddBody("Crate", {.position = {10.8f, 0, 0}, .gravityFactor = 0.0});
  AddBody("Decoy", {.position = {0.8f, 0, 0}, .gravityFactor = 0.0});
  Frames(1);
  ASSERT_EQ(collisions_.size(), 1u);
  EXPECT_EQ(collisions_[0], (Collision{"CollisionBegin", "PowerUpShield", "Crate"}));
  EXPECT_DOUBLE_EQ(Field("PowerUpShield", "PositionX"), -10.0);
}

constexpr const char* kLevelText =
    R"(<!-- a floor and a crate dropped onto it -->
<Database name="GameObjects">
  <Database name="Floor">
    <Database name="Transform">
      <double name="PositionY">-0.5</double>
      <xmmatrix4 name="Rotation">identity</xmmatrix4>
      <vec4 name="Scale">20 1 20</vec4>
    </Database>
    <Database name="Body">
      <vec4 name="ShapeScale">0.5 0.5 0.5</vec4>
      <double name="Static">1</double>
    </Database>
  </Database>
  <Database name="Crate">
    <Database name="Transform">
      <double name="PositionX">2</double>
      <double name="PositionY">6</double>
      <double name="RotationY">0.25</double>
      <xmmatrix4 name="Rotation">identity</xmmatrix4>
      <vec4 name="Scale">1 1 1</vec4>
    </Database>
    <Database name="Body">
      <xmfloat4 name="ShapeScale">0.5 0.5 0.5 0</xmfloat4>
      <double name="ShapeOffsetY">0.5</double>
      <int name="CollisionFilter">3</int>
    </Database>
  </Database>
</Database>
)";

TEST_F(PhysicsTest, ALevelFileBecomesBodiesThatFallLandAndReport) {
  const std::string path = ScratchPath("physics_level", ".xml").string();
  std::ofstream(path) << kLevelText;
  ParseFile(path, *root_.Find<Database>("Levels")->Add<Database>("Yard"));
  std::remove(path.c_str());
  root_.Add<std::string>("CurrentLevel", "Yard");

  messages_.SendArgs("msgLoadLevel", std::string("Yard"));
  Frames(45);
  ASSERT_EQ(Sim().Records().size(), 2u);
  // The crate's body centre started at 6 with the transform 0.5 below it; it now rests on the floor
  // (top at 0) with its centre half a unit up and keeps the yaw the file gave it.
  EXPECT_NEAR(Centre("Crate").y(), 0.5, 0.06);
  EXPECT_NEAR(Field("Crate", "PositionY", "Yard"), 0.0, 0.06);
  EXPECT_NEAR(Field("Crate", "RotationY", "Yard"), 0.25, 1e-5);
  ASSERT_EQ(collisions_.size(), 1u);
  EXPECT_EQ(collisions_[0].message, "CollisionBegin");
  EXPECT_TRUE(Names(collisions_[0], "Floor", "Crate"));
  EXPECT_EQ(system_.Cast(2, 10, 0, 0, -1, 0).name, "Crate");
}

}  // namespace
}  // namespace grindle
