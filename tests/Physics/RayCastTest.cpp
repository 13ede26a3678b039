// Ray casts through the published `Systems.RayCaster`, called the way the script API calls it.
#include "PhysicsFixture.h"

namespace grindle {
namespace {

class RayCastTest : public PhysicsTest {
 protected:
  // As a script's RayCast(x, y, z, dx, dy, dz) reaches the physics system.
  RayHit Cast(double x, double y, double z, double dx, double dy, double dz) {
    RayCaster* caster = *root_.Find<Database>("Systems")->Find<RayCaster*>("RayCaster");
    return caster->Cast(x, y, z, dx * 9e6, dy * 9e6, dz * 9e6);
  }

  void AddSlab(const std::string& name, const btVector3& centre, bool isStatic = true) {
    BoxSpec slab;
    slab.position = centre;
    slab.scale = btVector3(4, 1, 4);
    slab.isStatic = isStatic;
    AddBody(name, slab);
  }
};

TEST_F(RayCastTest, StraightDownOntoAnObjectTenUnitsBelowGivesTenAndItsName) {
  AddSlab("Target", btVector3(3, -0.5f, 2));  // top face at y = 0
  AddSlab("Beside", btVector3(20, 5, 2));
  const RayHit hit = Cast(3.5, 10, 2, 0, -1, 0);
  EXPECT_NEAR(hit.distance, 10.0, 1e-3);
  EXPECT_EQ(hit.name, "Target");

  // A sideways ray of any length is normalised: the distance is in world units.
  const RayHit side = Cast(0, 5, 2, 0.25, 0, 0);
  EXPECT_NEAR(side.distance, 18.0, 1e-3);
  EXPECT_EQ(side.name, "Beside");
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

TEST_F(RayCastTest, RaysPassThroughPowerUpsAndFollowMovingBodies) {
  AddSlab("Floor", btVector3(0, -0.5f, 0));
  BoxSpec powerUp;
  powerUp.position = btVector3(0, 5, 0);
  powerUp.isStatic = true;
  AddBody("PowerUpJump", powerUp);
  EXPECT_EQ(Cast(0, 10, 0, 0, -1, 0).name, "Floor");

  AddSlab("Lift", btVector3(10, 2, 0), false);
  *TransformOf("Lift").Find<double>("PositionY") = 7.0;
  SetPaused(false);
  Frames(1);
  const RayHit hit = Cast(10, 20, 0, 0, -1, 0);
  EXPECT_EQ(hit.name, "Lift");
  EXPECT_NEAR(hit.distance, 20.0 - (Read("Lift", "PositionY") + 0.5), 1e-3);
}

}  // namespace
}  // namespace grindle
