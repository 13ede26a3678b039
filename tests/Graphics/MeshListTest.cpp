// The per-frame walk of a level's mesh list: it visits each listed object with a Mesh component
// once, in listing order, and keeps doing so while the list and the objects change under it.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "Core/Database.h"
#include "Core/WellKnownKeys.h"
#include "Graphics/Meshes/ListedMeshes.h"

namespace grindle {
namespace {

class MeshListTest : public testing::Test {
 protected:
  static void SetUpTestSuite() { InternWellKnownKeys(); }

  void List(const std::string& name, bool withMesh = true) {
    DataHandle<Database> object = objects_.Add<Database>(name);
    DataHandle<Database> mesh;
    if (withMesh) mesh = object->Add<Database>("Mesh");
    list_.Add<DataHandle<Database>>(name, mesh);
  }

  // The objects visited, checked to come with their own Mesh component.
  std::vector<std::string> Walk() {
    std::vector<std::string> names;
    walker_.ForEach(list_, objects_, [&](const Database& object, const Database& mesh) {
      EXPECT_EQ(&mesh, object.Find<Database>("Mesh").Get());
      names.push_back(object.Name());
    });
    return names;
  }

  Database objects_;
  Database list_;
  ListedMeshes walker_;
};

using Names = std::vector<std::string>;

TEST_F(MeshListTest, VisitsListedObjectsWithMeshesInListingOrderAsTheListAndObjectsChange) {
  List("Crate");
  List("Marker", false);
  List("Ball");
  List("Pillar");
  EXPECT_EQ(Walk(), (Names{"Crate", "Ball", "Pillar"}));
  EXPECT_EQ(Walk(), (Names{"Crate", "Ball", "Pillar"}));
  objects_.Remove("Crate");
  objects_.Find<Database>("Ball")->Remove("Mesh");
  EXPECT_EQ(Walk(), (Names{"Pillar"}));
  // An object made again under a listed name is drawn again, from its new database.
  objects_.Add<Database>("Crate")->Add<Database>("Mesh");
  EXPECT_EQ(Walk(), (Names{"Crate", "Pillar"}));
  // Replacing an entry leaves a stale record of the same name; it must not be drawn twice.
  list_.Add<DataHandle<Database>>("Crate",
                                  objects_.Find<Database>("Crate")->Find<Database>("Mesh"));
  EXPECT_EQ(Walk(), (Names{"Pillar", "Crate"}));
  // Removed and re-added keeps the size the same; a walk at most one frame later sees the change.
  list_.Remove("Pillar");
  List("Lamp");
  Walk();
  EXPECT_EQ(Walk(), (Names{"Crate", "Lamp"}));
}

}  // namespace
}  // namespace grindle
