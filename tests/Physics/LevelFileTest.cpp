// A level file in, bodies, transforms and collision messages out: the path a game level takes from
// its XML through the level messages into the simulation.
#include <unistd.h>

#include <cstdio>
#include <fstream>

#include "Core/xmlParser.h"
#include "PhysicsFixture.h"

namespace grindle {
namespace {

constexpr const char* kLevelText =
    R"(<!-- a floor, a crate dropped onto it, a power-up it falls through -->
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
  <Database name="PowerUpSpeed">
    <Database name="Transform">
      <double name="PositionX">2</double>
      <double name="PositionY">3</double>
      <vec4 name="Scale">1 1 1</vec4>
    </Database>
    <Database name="Body">
      <vec4 name="ShapeScale">0.5 0.5 0.5</vec4>
      <int name="Static">1</int>
    </Database>
  </Database>
</Database>
)";

TEST_F(PhysicsTest, ALevelFileBecomesBodiesThatFallLandAndReport) {
  const std::string path =
      testing::TempDir() + "physics_level_" + std::to_string(getpid()) + ".xml";
  std::ofstream(path) << kLevelText;
  Database& levels = *root_.Find<Database>("Levels");
  ParseFile(path, *levels.Add<Database>("Yard"));
  std::remove(path.c_str());
  root_.Add<std::string>("CurrentLevel", "Yard");

  messages_.SendArgs("msgLoadLevel", std::string("Yard"));
  Frames(45);

  ASSERT_EQ(Sim().Records().size(), 3u);
  // The crate's body centre started at 6 with the transform 0.5 below it; it now rests on the floor
  // (top at 0) with its centre half a unit up and keeps the yaw the file gave it.
  EXPECT_NEAR(Centre("Crate").y(), 0.5, 0.06);
  EXPECT_NEAR(*TransformOf("Crate", "Yard").Find<double>("PositionY"), 0.0, 0.06);
  EXPECT_NEAR(*TransformOf("Crate", "Yard").Find<double>("RotationY"), 0.25, 1e-5);
  ASSERT_EQ(collisions_.size(), 3u);
  EXPECT_EQ(collisions_[0], (Collision{"CollisionBegin", "PowerUpSpeed", "Crate"}));
  EXPECT_EQ(collisions_[1], (Collision{"CollisionEnd", "PowerUpSpeed", "Crate"}));
  EXPECT_EQ(collisions_[2].message, "CollisionBegin");
  EXPECT_TRUE((collisions_[2].first == "Floor") != (collisions_[2].second == "Floor"));
  EXPECT_EQ(system_.Cast(2, 10, 0, 0, -1, 0).name, "Crate");
}

}  // namespace
}  // namespace grindle
