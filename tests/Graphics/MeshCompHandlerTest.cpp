// Mesh components end to end: a level database built here, "msgLevelObjectCreated" and
// "msgObjectDestroyed" sent through a real MessageHandler to the handler as the renderer forwards
// them, the shared store behind a real OpenGL context (SDL offscreen), and the assertions.
#include <gtest/gtest.h>

#include <SDL.h>

#include <cstdlib>
#include <memory>

#include "Core/Database.h"
#include "Core/MessageHandler.h"
#include "Core/WellKnownKeys.h"
#include "Graphics/MeshCompHandler.h"
#include "Graphics/Meshes/PrimitiveCatalogue.h"
#include "Graphics/RenderInterface/OpenGL/TextureStore.h"
#include "TestOutput.h"

namespace grindle::gfx {
namespace {

// A level with its objects and the handler listening as the renderer does. No GL context: only
// what runs before a mesh is uploaded may be used without the derived fixture.
class MeshLevelFixture : public testing::Test {
 protected:
  static void SetUpTestSuite() { InternWellKnownKeys(); }

  void SetUp() override {
    meshes_ = std::make_unique<MeshCompHandler>(root_);
    root_.Add<Database>("Levels");
    const auto forward = [this](MessageArgs args) {
      meshes_->AddObject(*args.Get<DataHandle<Database>>(0), *args.Get<std::string>(1));
    };
    messages_.Listen("msgLevelObjectCreated", "Renderer", forward);
    messages_.Listen("msgObjectCreated", "Renderer", forward);
    messages_.Listen("msgObjectDestroyed", "Renderer",
                     [this](MessageArgs args) { meshes_->RemoveObject(*args.Get<std::string>(1)); });
  }
  void TearDown() override { meshes_.reset(); }

  Database& AddLevel(const std::string& name, bool withMeshList = true) {
    Database& level = *root_.Find<Database>("Levels")->Add<Database>(name);
    level.Add<Database>("GameObjects");
    if (withMeshList) level.Add<Database>("ComponentLists")->Add<Database>("Meshes");
    root_.Add<std::string>("CurrentLevel", name);
    return level;
  }

  static DataHandle<Database> AddObject(Database& level, const std::string& name,
                                        const char* fileName) {
    DataHandle<Database> object = level.Find<Database>("GameObjects")->Add<Database>(name);
    if (fileName != nullptr) {
      Database& mesh = *object->Add<Database>("Mesh");
      if (*fileName != '\0') mesh.Add<std::string>("Filename", fileName);
      mesh.Add<double>("HasTexture", 0.0);
    }
    return object;
  }

  void Announce(DataHandle<Database> object, const std::string& name) {
    messages_.SendArgs("msgLevelObjectCreated", object, name, *root_.Find<std::string>("CurrentLevel"));
    messages_.Deliver(MessageHandler::kDeliverAll);
  }

  static Database& MeshList(Database& level) {
    return *level.Find<Database>("ComponentLists")->Find<Database>("Meshes");
  }
  static int MeshIndexOf(const DataHandle<Database>& object) {
    return *object->Find<Database>("Mesh")->Find<int>("MeshIndex");
  }

  Database root_;
  MessageHandler messages_;
  std::unique_ptr<MeshCompHandler> meshes_;
};

// Adds the OpenGL context that uploading meshes needs, once for the suite.
class MeshCompHandlerTest : public MeshLevelFixture {
 protected:
  static void SetUpTestSuite() {
    MeshLevelFixture::SetUpTestSuite();
    setenv("SDL_VIDEODRIVER", "offscreen", 0);
    ASSERT_EQ(SDL_Init(SDL_INIT_VIDEO), 0) << SDL_GetError();
    SDL_GL_SetAttribute(SDL_GL_CONTEXT_MAJOR_VERSION, 4);
    SDL_GL_SetAttribute(SDL_GL_CONTEXT_MINOR_VERSION, 5);
    SDL_GL_SetAttribute(SDL_GL_CONTEXT_PROFILE_MASK, SDL_GL_CONTEXT_PROFILE_CORE);
    window_ = SDL_CreateWindow("mesh tests", 0, 0, 64, 64, SDL_WINDOW_OPENGL | SDL_WINDOW_HIDDEN);
    ASSERT_NE(window_, nullptr) << SDL_GetError();
    context_ = SDL_GL_CreateContext(window_);
    ASSERT_NE(context_, nullptr) << SDL_GetError();
  }
  static void TearDownTestSuite() {
    SDL_GL_DeleteContext(context_);
    SDL_DestroyWindow(window_);
    SDL_Quit();
  }

  static inline SDL_Window* window_ = nullptr;
  static inline SDL_GLContext context_ = nullptr;
};

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
      "Um hello\\? component list much\\?(.|\n)*The expression !dhdCurrMeshList.IsValid\\(\\) failed");

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
