// Bodies built from the database (where they are placed, what they write back, their shapes and
// the restitution and gravity each kind of object gets) and found again by ray casts.
#include <cmath>
#include <glm/glm.hpp>
#include <limits>

#include "PhysicsFixture.h"

namespace grindle {
namespace {

TEST_F(PhysicsTest, BodyCentreIsTheReadPositionAndTheTransformMovesBackByTheShapeOffset) {
  Database& object =
      AddBody("Crate", {.position = {2, 5, -3}, .scale = {4, 2, 6}, .offset = {0.5f, 1, 0}});
  // A file may write ShapeScale as an xmfloat4 instead of a vec4.
  MakeObject("Wide", {.scale = {4, 2, 6}})
      .Find<Database>("Body")
      ->Add<glm::vec4>("ShapeScale", glm::vec4(1, 1, 1, 1));
  Announce("Wide");

  EXPECT_TRUE(Near(Centre("Crate"), {2, 5, -3}));
  EXPECT_TRUE(Near(Position("Crate"), {1.5f, 4, -3}));
  EXPECT_TRUE(Near(Record("Crate")->pBox_->getHalfExtentsWithMargin(), {2, 1, 3}));
  EXPECT_FLOAT_EQ(Record("Crate")->pBox_->getMargin(), 0.05f);
  EXPECT_TRUE(Near(Record("Wide")->pBox_->getHalfExtentsWithMargin(), {4, 2, 6}));
  const DataHandle<BodyRecord*> back = BackPointer("Crate");
  ASSERT_TRUE(back);
  EXPECT_EQ(*back, Record("Crate"));
  EXPECT_EQ(&object, Handle("Crate").Get());

  // A frame later the body still sits at transform + offset, fallen by one frame of gravity only.
  Frames(1);
  EXPECT_TRUE(Near(Position("Crate") + btVector3(0.5f, 1, 0), Centre("Crate")));
  EXPECT_LT(Field("Crate", "PositionY"), 4.0);
  EXPECT_GT(Field("Crate", "PositionY"), 3.9);
}

TEST_F(PhysicsTest, EulerAnglesBecomeTheRotationMatrixInRowVectorForm) {
  AddBody("Ramp", {.rotationY = 0.5, .isStatic = true});
  // Rotating the x axis by +0.5 about y turns it towards -z: row 0 is the image of x.
  const glm::mat4& rotation = *TransformOf("Ramp").Find<glm::mat4>("Rotation");
  EXPECT_NEAR(rotation[0][2], -std::sin(0.5), 1e-6);
  EXPECT_NEAR(rotation[2][0], std::sin(0.5), 1e-6);
  const btVector3 xAxis =
      Record("Ramp")->pObject_->getWorldTransform().getBasis() * btVector3(1, 0, 0);
  EXPECT_NEAR(xAxis.z(), rotation[0][2], 1e-6);
}

TEST_F(PhysicsTest, RestitutionAndGravityDefaultsFollowTheObjectKind) {
  // Statics and the potato bounce and float; an explicit restitution keeps the potato's gravity.
  const struct {
    const char* name;
    const char* level;
    BoxSetup box;
    float restitution;
    float gravity;
  } cases[] = {
      {"Floor", kLevel, {.isStatic = true}, 0.95f, 0.0f},
      {"Potato", kLevel, {.position = {10, 0, 0}}, 0.95f, 0.0f},
      {"Crate", kLevel, {.position = {20, 0, 0}}, 0.0f, -kGravity},
      {"Balloon", kLevel, {.position = {30, 0, 0}, .gravityFactor = 0.5}, 0.0f, -kGravity / 2},
      {"Potato", "Kitchen", {.restitution = 0.3, .gravityFactor = 2.0}, 0.3f, -2 * kGravity},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(std::string(c.name) + " in " + c.level);
    MakeObject(c.name, c.box, c.level);
    Announce(c.name, c.level);
    const DataHandle<BodyRecord*> back = BackPointer(c.name, c.level);
    ASSERT_TRUE(back);
    const btRigidBody& body = *(*back)->Rigid();
    EXPECT_FLOAT_EQ(body.getRestitution(), c.restitution);
    EXPECT_FLOAT_EQ(body.getGravity().y(), c.gravity);
    EXPECT_FLOAT_EQ(body.getInvMass(), c.box.isStatic ? 0.0f : 1.0f);
  }
}

TEST_F(PhysicsTest, BadBodyDescriptionsAreReportedByObjectNameAndNeverReachTheWorld) {
  Database& scenery = *Objects().Add<Database>("Tree");
  scenery.Add<Database>("Transform")->Add<double>("PositionY", 3.0);
  Announce("Tree");
  Objects().Add<Database>("Ghost")->Add<Database>("Body");
  MakeObject("Flat", {}).Find<Database>("Transform")->Add<double>("Scale", 4.0);
  const std::string out = CaptureStdout([&] {
    Announce("Ghost");
    Announce("Flat");
  });

  EXPECT_FALSE(scenery.Find<Database>("Body"));
  EXPECT_NE(out.find("object 'Ghost' of level 'Arena' has a Body but no Transform"),
            std::string::npos)
      << out;
  ASSERT_EQ(Sim().Records().size(), 1u);
  EXPECT_NE(out.find("object 'Flat': Scale must be a vec4 or an xmfloat4"), std::string::npos)
      << out;
  EXPECT_FLOAT_EQ(Record("Flat")->pBox_->getHalfExtentsWithMargin().x(), 0.5f);

  // Numbers that are not finite never reach the world.
  MakeObject("Broken", {.position = {0, std::nanf(""), 0}});
  const std::string broken = CaptureStdout([&] { Announce("Broken"); });
  EXPECT_EQ(Record("Broken"), nullptr);
  EXPECT_NE(broken.find("'Broken' of level 'Arena' has a position, scale or rotation that is not "
                        "a finite number"),
            std::string::npos)
      << broken;

  AddBody("Crate", {.position = {0, 10, 0}});
  Field("Crate", "PositionY") = std::numeric_limits<double>::infinity();
  Field("Crate", "RotationY") = std::nan("");
  Frames(1);
  // The body kept falling from where it was, and the database holds its real place again.
  EXPECT_LT(Field("Crate", "PositionY"), 10.0);
  EXPECT_GT(Field("Crate", "PositionY"), 9.0);
  EXPECT_DOUBLE_EQ(Field("Crate", "RotationY"), 0.0);
}

TEST_F(PhysicsTest, AnnouncingAnObjectAgainReplacesItsBody) {
  AddBody("Crate", {});
  const BodyRecord* first = Record("Crate");
  Announce("Crate");
  ASSERT_EQ(Sim().Records().size(), 1u);
  EXPECT_NE(Sim().Records().front().get(), first);
  EXPECT_EQ(Record("Crate"), Sim().Records().front().get());
  EXPECT_EQ(Sim().Records().front()->pObject_->getWorldArrayIndex(), 0);
}

TEST(PhysicsDeathTest, ASecondPhysicsObjectStops) {
  const auto twoSystems = [] {
    StdoutToStderr();
    PhysicsInterface first;
    PhysicsInterface second;
  };
  EXPECT_DEATH(twoSystems(),
               "FILE: Physics/Physics/Physics.cpp\nLINE: [0-9]+\nDETAILS: to much physics");
  EXPECT_DEATH(twoSystems(), "The expression PHYSICS != mNULL failed\\.");
}

class RayCastTest : public PhysicsTest {
 protected:
  // As a script's RayCast(x, y, z, dx, dy, dz) reaches the physics system through the root.
  RayHit Cast(double x, double y, double z, double dx, double dy, double dz) {
    RayCaster* caster = *root_.Find<Database>("Systems")->Find<RayCaster*>("RayCaster");
    return caster->Cast(x, y, z, dx * 9e6, dy * 9e6, dz * 9e6);
  }
  void AddSlab(const std::string& name, const btVector3& centre, bool isStatic = true) {
    AddBody(name, {.position = centre, .scale = {4, 1, 4}, .isStatic = isStatic});
  }
};

TEST_F(RayCastTest, AHitGivesTheDistanceInWorldUnitsAndTheObjectName) {
  AddSlab("Target", btVector3(3, -0.5f, 2));  // top face at y = 0
  AddSlab("Beside", btVector3(20, 5, 2));
  const RayHit hit = Cast(3.5, 10, 2, 0, -1, 0);
  EXPECT_NEAR(hit.distance, 10.0, 1e-3);
  EXPECT_EQ(hit.name, "Target");
  // A sideways ray of any length is normalised.
  const RayHit side = Cast(0, 5, 2, 0.25, 0, 0);
  EXPECT_NEAR(side.distance, 18.0, 1e-3);
  EXPECT_EQ(side.name, "Beside");

  // Rays pass through power-ups and find moving bodies where the last frame put them.
  AddSlab("PowerUpJump", btVector3(3, 5, 2));
  EXPECT_EQ(Cast(3.5, 10, 2, 0, -1, 0).name, "Target");
  AddSlab("Lift", btVector3(10, 2, 0), false);
  Field("Lift", "PositionY") = 7.0;
  Frames(1);
  const RayHit lift = Cast(10, 20, 0, 0, -1, 0);
  EXPECT_EQ(lift.name, "Lift");
  EXPECT_NEAR(lift.distance, 20.0 - (Field("Lift", "PositionY") + 0.5), 1e-3);
}

// Turning or nudging a body does not wake it, and steps refresh only awake bodies' broad-phase
// boxes: rays (and falling bodies) must still find a sleeping body where it now is.
TEST_F(RayCastTest, ASleepingBodyTurnedOrNudgedWithoutWakingIsHitWhereItNowIs) {
  AddFloor();
  AddBody("Crate", {.position = {0, 3, 0}});
  Frames(90);
  ASSERT_FALSE(Body("Crate").isActive());
  // A straight unit box spans |x| <= 0.5; turned an eighth of a turn its corner reaches x = 0.707.
  EXPECT_EQ(Cast(0.6, 10, 0, 0, -1, 0).name, "Floor");
  messages_.SendArgs("msgSetBodyRotation", Handle("Crate"), 0.0, 1.0, 0.0, 0.785398);
  Frames(1);
  ASSERT_FALSE(Body("Crate").isActive());
  EXPECT_EQ(Cast(0.6, 10, 0, 0, -1, 0).name, "Crate");
  EXPECT_NEAR(Field("Crate", "RotationY"), 0.785398, 1e-5);
  // A write below the move tolerance places the body without waking it either.
  const double x = Field("Crate", "PositionX") + 5e-5;
  Field("Crate", "PositionX") = x;
  Frames(1);
  ASSERT_FALSE(Body("Crate").isActive());
  EXPECT_NEAR(Field("Crate", "PositionX"), x, 1e-7);
  EXPECT_NEAR(Centre("Crate").x(), x, 1e-7);
}

TEST_F(RayCastTest, MissesZeroDirectionsAndTargetsBeyondTwoHundredGiveNoHit) {
  AddSlab("Target", btVector3(0, -0.5f, 0));
  AddSlab("Far", btVector3(60, -0.5f, 10));
  for (const RayHit& miss :
       {Cast(0, 10, 0, 0, 1, 0), Cast(0, 10, 0, 0, 0, 0), Cast(-150, 0, 0, 0, 0, 1)}) {
    EXPECT_DOUBLE_EQ(miss.distance, -1.0);
    EXPECT_EQ(miss.name, "BODY_NOT_FOUND");
  }
  // Level with the slabs' middles: "Target"'s near face 143 units along is hit; "Far"'s, 203 units
  // along, is out of reach until the origin moves 5 units closer.
  EXPECT_NEAR(Cast(-145, -0.5, 0, 1, 0, 0).distance, 143.0, 1e-2);
  EXPECT_EQ(Cast(-145, -0.5, 10, 1, 0, 0).name, "BODY_NOT_FOUND");
  EXPECT_EQ(Cast(-140, -0.5, 10, 1, 0, 0).name, "Far");
  const std::string out = CaptureStdout([&] {
    AddSlab("Edge", btVector3(-145, -0.5f, -152.5f));  // near face 200.5 along the ray below
    EXPECT_EQ(Cast(-145, -0.5, 50, 0, 0, -1).name, "BODY_NOT_FOUND");
    AddSlab("Inside", btVector3(-145, -0.5f, -147));  // near face 195 along
    EXPECT_NEAR(Cast(-145, -0.5, 50, 0, 0, -1).distance, 195.0, 1e-2);
  });
  EXPECT_NE(out.find("'Edge' starts outside"), std::string::npos);
}

}  // namespace
}  // namespace grindle
