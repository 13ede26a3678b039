// Bodies built from the database: where they are placed, what they write back, their shapes and the
// restitution and gravity each kind of object gets.
#include <cmath>
#include <glm/glm.hpp>

#include "PhysicsFixture.h"

namespace grindle {
namespace {

TEST_F(PhysicsTest, ShapeOffsetPlacesBodyCentreAtReadPositionAndMovesTransformBack) {
  BoxSpec spec;
  spec.position = btVector3(2, 5, -3);
  spec.offset = btVector3(0.5f, 1, 0);
  AddBody("Crate", spec);

  EXPECT_FLOAT_EQ(Centre("Crate").x(), 2.0f);
  EXPECT_FLOAT_EQ(Centre("Crate").y(), 5.0f);
  EXPECT_FLOAT_EQ(Centre("Crate").z(), -3.0f);
  EXPECT_DOUBLE_EQ(Read("Crate", "PositionX"), 1.5);
  EXPECT_DOUBLE_EQ(Read("Crate", "PositionY"), 4.0);
  EXPECT_DOUBLE_EQ(Read("Crate", "PositionZ"), -3.0);

  // A frame later the body still sits at transform + offset, fallen by one frame of gravity only.
  Frames(1);
  EXPECT_NEAR(Read("Crate", "PositionX") + 0.5, Centre("Crate").x(), 1e-5);
  EXPECT_NEAR(Read("Crate", "PositionY") + 1.0, Centre("Crate").y(), 1e-5);
  EXPECT_LT(Read("Crate", "PositionY"), 4.0);
  EXPECT_GT(Read("Crate", "PositionY"), 3.9);
}

TEST_F(PhysicsTest, HalfExtentsAreScaleTimesShapeScaleAndBackPointerIsStored) {
  BoxSpec spec;
  spec.scale = btVector3(4, 2, 6);
  Database& object = AddBody("Crate", spec);
  // A file may write ShapeScale as an xmfloat4 instead of a vec4.
  Database& wide = MakeObject("Wide", spec);
  wide.Find<Database>("Body")->Add<glm::vec4>("ShapeScale", glm::vec4(1, 1, 1, 1));
  Announce("Wide");

  const btVector3 half = Record("Crate")->pBox_->getHalfExtentsWithMargin();
  EXPECT_FLOAT_EQ(half.x(), 2.0f);
  EXPECT_FLOAT_EQ(half.y(), 1.0f);
  EXPECT_FLOAT_EQ(half.z(), 3.0f);
  EXPECT_FLOAT_EQ(Record("Crate")->pBox_->getMargin(), 0.05f);
  EXPECT_FLOAT_EQ(Record("Wide")->pBox_->getHalfExtentsWithMargin().z(), 6.0f);

  const DataHandle<BodyRecord*> back =
      object.Find<Database>("Body")->Find<BodyRecord*>("BodyGetBack");
  ASSERT_TRUE(back);
  EXPECT_EQ(*back, Record("Crate"));
}

TEST_F(PhysicsTest, EulerAnglesBecomeTheRotationMatrixInRowVectorForm) {
  BoxSpec spec;
  spec.rotationY = 0.5;
  spec.isStatic = true;
  AddBody("Ramp", spec);

  // Rotating the x axis by +0.5 about y turns it towards -z: row 0 is the image of x.
  const glm::mat4& rotation = *TransformOf("Ramp").Find<glm::mat4>("Rotation");
  EXPECT_NEAR(rotation[0][0], std::cos(0.5), 1e-6);
  EXPECT_NEAR(rotation[0][2], -std::sin(0.5), 1e-6);
  EXPECT_NEAR(rotation[2][0], std::sin(0.5), 1e-6);
  EXPECT_NEAR(rotation[1][1], 1.0, 1e-6);
  EXPECT_FLOAT_EQ(rotation[3][3], 1.0f);
  const btVector3 xAxis =
      Record("Ramp")->pObject_->getWorldTransform().getBasis() * btVector3(1, 0, 0);
  EXPECT_NEAR(xAxis.z(), rotation[0][2], 1e-6);
}

TEST_F(PhysicsTest, RestitutionAndGravityDefaultsFollowTheObjectKind) {
  BoxSpec still;
  still.isStatic = true;
  AddBody("Floor", still);
  BoxSpec dynamic;
  dynamic.position = btVector3(10, 0, 0);
  AddBody("Potato", dynamic);
  dynamic.position = btVector3(20, 0, 0);
  AddBody("Crate", dynamic);
  BoxSpec light = dynamic;
  light.position = btVector3(30, 0, 0);
  light.gravityFactor = 0.5;
  AddBody("Balloon", light);
  // An explicit restitution keeps the potato's gravity.
  BoxSpec tuned = dynamic;
  tuned.position = btVector3(40, 0, 0);
  tuned.restitution = 0.3;
  tuned.gravityFactor = 2.0;
  MakeObject("Potato", tuned, "Kitchen");
  Announce("Potato", "Kitchen");

  EXPECT_FLOAT_EQ(Body("Floor").getRestitution(), 0.95f);
  EXPECT_FLOAT_EQ(Body("Potato").getRestitution(), 0.95f);
  EXPECT_FLOAT_EQ(Body("Potato").getGravity().y(), 0.0f);
  EXPECT_FLOAT_EQ(Body("Crate").getRestitution(), 0.0f);
  EXPECT_FLOAT_EQ(Body("Crate").getGravity().y(), -kGravity);
  EXPECT_FLOAT_EQ(Body("Balloon").getGravity().y(), -kGravity / 2);
  EXPECT_FLOAT_EQ(Body("Floor").getInvMass(), 0.0f);
  EXPECT_FLOAT_EQ(Body("Crate").getInvMass(), 1.0f);

  const DataHandle<BodyRecord*> kitchen =
      Objects("Kitchen").Find<Database>("Potato")->Find<Database>("Body")->Find<BodyRecord*>(
          "BodyGetBack");
  ASSERT_TRUE(kitchen);
  EXPECT_FLOAT_EQ((*kitchen)->Rigid()->getRestitution(), 0.3f);
  EXPECT_FLOAT_EQ((*kitchen)->Rigid()->getGravity().y(), -2 * kGravity);
}

TEST_F(PhysicsTest, BadBodyDescriptionsAreReportedByObjectName) {
  Database& scenery = *Objects().Add<Database>("Tree");
  scenery.Add<Database>("Transform")->Add<double>("PositionY", 3.0);
  Announce("Tree");
  Objects().Add<Database>("Ghost")->Add<Database>("Body");
  MakeObject("Flat", BoxSpec{}).Find<Database>("Transform")->Add<double>("Scale", 4.0);
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
}

TEST_F(PhysicsTest, AnnouncingAnObjectAgainReplacesItsBody) {
  AddBody("Crate", BoxSpec{});
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

}  // namespace
}  // namespace grindle
