// Mesh components end to end: a level database built here, "msgLevelObjectCreated" and
// "msgObjectDestroyed" sent through a real MessageHandler to the handler as the renderer forwards
// them, the shared store behind a real OpenGL context (SDL offscreen), and the assertions.
#include "Graphics/Meshes/PrimitiveCatalogue.h"
#include "Graphics/RenderInterface/OpenGL/TextureStore.h"
#include "MeshTestLevel.h"
#include "TestOutput.h"

namespace grindle::gfx {
namespace {

using MeshCompHandlerTest = MeshGlFixture;

TEST_F(MeshCompHandlerTest, ObjectsNamingOneMeshShareItsRecordAndIndex) {
  Database& level = AddLevel("Arena");
  const char* files[] = {"Box.mesh", "Box.mesh", "Sphere.mesh", "Box.mesh"};
  std::vector<DataHandle<Database>> objects;
  for (int i = 0; i < 4; ++i) {
    objects.push_back(AddObject(level, "Thing" + std::to_string(i), files[i]));
    Announce(objects.back(), "Thing" + std::to_string(i));
  }
  EXPECT_EQ(MeshIndexOf(objects[0]), 0);
  EXPECT_EQ(MeshIndexOf(objects[1]), 0);
  EXPECT_EQ(MeshIndexOf(objects[2]), 1);
  EXPECT_EQ(MeshIndexOf(objects[3]), 0);
  const MeshStore& store = meshes_->Store();
  ASSERT_EQ(store.Count(), 2u);
  EXPECT_EQ(store.At(0).name, "Box.mesh");
  EXPECT_EQ(store.At(1).name, "Sphere.mesh");
  for (uint32_t i = 0; i < store.Count(); ++i) {
    const MeshData generated = BuildPrimitive(store.At(i).name);
    EXPECT_EQ(store.At(i).indexCount, generated.indices.size());
    EXPECT_EQ(store.At(i).vertices.Size(), generated.vertices.size() * sizeof(GeneratedVertex));
    EXPECT_NE(store.At(i).vertices.Id(), 0u);
  }
  // Each object's list entry refers to its own Mesh component.
  Database& list = MeshList(level);
  ASSERT_EQ(list.Records().size(), 4u);
  for (int i = 0; i < 4; ++i) {
    const auto entry = list.Find<DataHandle<Database>>("Thing" + std::to_string(i));
    ASSERT_TRUE(entry.IsValid());
    EXPECT_EQ(entry->Get(), objects[i]->Find<Database>("Mesh").Get());
  }
}

TEST_F(MeshCompHandlerTest, IndicesOutliveTheLevelThatCreatedThem) {
  Database& first = AddLevel("First");
  Announce(AddObject(first, "Crate", "Box.mesh"), "Crate");
  Announce(AddObject(first, "Ball", "Sphere.mesh"), "Ball");
  root_.Find<Database>("Levels")->Remove("First");

  Database& second = AddLevel("Second");
  const auto ball = AddObject(second, "Ball", "Sphere.mesh");
  const auto pillar = AddObject(second, "Pillar", "Cylinder.mesh");
  Announce(ball, "Ball");
  Announce(pillar, "Pillar");
  EXPECT_EQ(MeshIndexOf(ball), 1);
  EXPECT_EQ(MeshIndexOf(pillar), 2);
  EXPECT_EQ(meshes_->Store().Count(), 3u);
}

TEST_F(MeshCompHandlerTest, ListingFollowsCreationReannouncementAndDestruction) {
  Database& level = AddLevel("Arena");
  Announce(AddObject(level, "Scenery", nullptr), "Scenery");
  EXPECT_EQ(MeshList(level).EntryCount(), 0u);

  const auto crate = AddObject(level, "Crate", "Grid.mesh");
  Announce(crate, "Crate");
  Announce(crate, "Crate");
  // Announced twice, listed and indexed once.
  EXPECT_EQ(MeshList(level).Records().size(), 1u);
  EXPECT_EQ(crate->Find<Database>("Mesh")->Records().size(), 3u);

  messages_.SendArgs("msgObjectDestroyed", root_.Find<Database>("Levels")->Find<Database>("Arena"),
                     std::string("Crate"));
  messages_.Deliver(MessageHandler::kDeliverAll);
  EXPECT_EQ(MeshList(level).EntryCount(), 0u);
  EXPECT_EQ(meshes_->Store().Count(), 1u) << "records outlive their objects";
}

TEST_F(MeshCompHandlerTest, LevelListsAreBuiltForObjectsNotYetListed) {
  Database& level = AddLevel("Arena", false);
  AddObject(level, "Crate", "Box.mesh");
  AddObject(level, "Marker", nullptr);
  const auto ball = AddObject(level, "Ball", "Sphere.mesh");
  meshes_->BuildLevelLists(level);
  Database& list = MeshList(level);
  EXPECT_EQ(list.Records().size(), 2u);
  EXPECT_TRUE(list.FindEntry("Crate") != nullptr);
  EXPECT_TRUE(list.FindEntry("Ball") != nullptr);
  EXPECT_EQ(MeshIndexOf(ball), 1);

  meshes_->BuildLevelLists(level);
  EXPECT_EQ(list.Records().size(), 2u);
}

using MeshCompHandlerDeathTest = MeshLevelFixture;

TEST_F(MeshCompHandlerDeathTest, RegistrationStopsOnMissingListOrFilenameOrUnknownMesh) {
  Database& unlisted = AddLevel("Unlisted", false);
  const auto crate = AddObject(unlisted, "Crate", "Box.mesh");
  EXPECT_DEATH(
      {
        StdoutToStderr();
        Announce(crate, "Crate");
      },
      "Um hello\\? component list much\\?(.|\n)*The expression !dhdCurrMeshList.IsValid\\(\\) "
      "failed");

  root_.Add<std::string>("CurrentLevel", "Elsewhere");
  EXPECT_DEATH(
      {
        StdoutToStderr();
        Announce(crate, "Crate");
      },
      "Um hello\\? component list much\\?");

  Database& level = AddLevel("Arena");
  const auto nameless = AddObject(level, "Nameless", "");
  EXPECT_DEATH(
      {
        StdoutToStderr();
        Announce(nameless, "Nameless");
      },
      "All meshes must contain a database entry called 'Filename'");

  const auto teapot = AddObject(level, "Teapot", "Teapot.mesh");
  EXPECT_DEATH(
      {
        StdoutToStderr();
        Announce(teapot, "Teapot");
      },
      "you can only allocate a grid!");
}

// Drawing takes the renderer's texture store, so this one runs with the GL context.
using MeshCompHandlerGlDeathTest = MeshCompHandlerTest;

TEST_F(MeshCompHandlerGlDeathTest, DrawingWithoutACurrentLevelStops) {
  AddLevel("Arena");
  root_.Add<std::string>("CurrentLevel", "Gone");
  TextureStore textures("Asphalt.jpg");
  EXPECT_DEATH(
      {
        StdoutToStderr();
        meshes_->Draw(false, glm::mat4(1.0f), textures);
      },
      "Current level not found(.|\n)*The expression !dhCurLevel.IsValid\\(\\) failed");
}

}  // namespace
}  // namespace grindle::gfx
