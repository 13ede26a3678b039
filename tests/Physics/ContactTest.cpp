// Collision begin and end messages: once per touching pair, from solid contacts and from power-up
// phantoms, and when a touching object is destroyed.
#include <algorithm>

#include "PhysicsFixture.h"

namespace grindle {
namespace {

size_t CountOf(const std::vector<Collision>& log, const std::string& message) {
  return static_cast<size_t>(std::count_if(
      log.begin(), log.end(), [&](const Collision& c) { return c.message == message; }));
}

bool Names(const Collision& c, const std::string& a, const std::string& b) {
  return (c.first == a && c.second == b) || (c.first == b && c.second == a);
}

class ContactTest : public PhysicsTest {
 protected:
  void BuildFloorAndCrate() {
    BoxSpec floor;
    floor.scale = btVector3(40, 1, 40);
    floor.isStatic = true;
    AddBody("Floor", floor);
    BoxSpec crate;
    crate.position = btVector3(0, 3, 0);
    AddBody("Crate", crate);
  }
};

TEST_F(ContactTest, ALandingIsReportedOnceAndLiftingOffEndsItOnce) {
  BuildFloorAndCrate();
  Frames(60);
  ASSERT_EQ(collisions_.size(), 1u);
  EXPECT_EQ(collisions_[0].message, "CollisionBegin");
  EXPECT_TRUE(Names(collisions_[0], "Floor", "Crate"));

  messages_.SendArgs("msgSetBodyVelocity", Handle("Crate"), 0.0, 12.0, 0.0);
  Frames(3);
  ASSERT_EQ(collisions_.size(), 2u);
  EXPECT_EQ(collisions_[1].message, "CollisionEnd");
  EXPECT_TRUE(Names(collisions_[1], "Floor", "Crate"));
}

TEST_F(ContactTest, DestroyingATouchingObjectEndsItsContacts) {
  BuildFloorAndCrate();
  Frames(30);
  ASSERT_EQ(CountOf(collisions_, "CollisionBegin"), 1u);
  messages_.SendArgs("msgObjectDestroyed", std::string("Crate"));
  Frames(2);
  ASSERT_EQ(CountOf(collisions_, "CollisionEnd"), 1u);
  EXPECT_TRUE(Names(collisions_.back(), "Floor", "Crate"));
}

TEST_F(ContactTest, APowerUpReportsEnterAndLeaveAndDoesNotStopWhatPassesThrough) {
  BoxSpec powerUp;
  powerUp.position = btVector3(0, 10, 0);
  powerUp.scale = btVector3(4, 2, 4);
  powerUp.isStatic = true;
  AddBody("PowerUpSpeed", powerUp);
  BoxSpec crate;
  crate.position = btVector3(0, 20, 0);
  AddBody("Crate", crate);
  BoxSpec free = crate;
  free.position = btVector3(30, 20, 0);
  AddBody("Witness", free);

  Frames(30);  // falls 2 s: from 20 to about -10, straight through the volume
  ASSERT_EQ(collisions_.size(), 2u);
  EXPECT_EQ(collisions_[0], (Collision{"CollisionBegin", "PowerUpSpeed", "Crate"}));
  EXPECT_EQ(collisions_[1], (Collision{"CollisionEnd", "PowerUpSpeed", "Crate"}));
  EXPECT_DOUBLE_EQ(Read("Crate", "PositionY"), Read("Witness", "PositionY"));
  EXPECT_EQ(Sim().Records()[0]->Rigid(), nullptr);
}

TEST_F(ContactTest, APowerUpVolumeIsTheBoxMovedByTheShapeOffset) {
  BoxSpec powerUp;
  powerUp.position = btVector3(0, 0, 0);
  powerUp.offset = btVector3(10, 0, 0);
  powerUp.gravityFactor = 0.0;
  AddBody("PowerUpShield", powerUp);
  // The record sits at the position read and its box is moved by the offset from there, so the
  // volume spans x 9.5 .. 10.5: "Crate" overlaps it, "Decoy" only the unmoved box.
  BoxSpec crate;
  crate.position = btVector3(10.8f, 0, 0);
  crate.gravityFactor = 0.0;
  AddBody("Crate", crate);
  crate.position = btVector3(0.8f, 0, 0);
  AddBody("Decoy", crate);
  Frames(1);
  ASSERT_EQ(collisions_.size(), 1u);
  EXPECT_EQ(collisions_[0], (Collision{"CollisionBegin", "PowerUpShield", "Crate"}));
  EXPECT_DOUBLE_EQ(*TransformOf("PowerUpShield").Find<double>("PositionX"), -10.0);
}

}  // namespace
}  // namespace grindle
