// The model manager in a real renderer: the hand-written models drawn (static instanced, skinned at
// two clip times) against golden images, the animation state scripts see in the database, broken
// files, and a model file rewritten while it is drawn. Runs in a working folder of its own that
// holds the shipped shaders and textures and a copy of the test models.
#include <sys/stat.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <thread>

#include "Core/ResourceManager.h"
#include "Core/ThreadManager.h"
#include "Eventually.h"
#include "GoldenImage.h"
#include "ImportScenes.h"
#include "ProcessRun.h"
#include "TempWorkDir.h"
#include "Graphics/RenderInterface/OpenGL/Models/ModelManager.h"

namespace grindle::gfx {
namespace {

namespace fs = std::filesystem;

class ModelRenderTest : public GoldenImageFixture {
 protected:
  static void SetUpTestSuite() {
    GoldenImageFixture::SetUpTestSuite();
    sFolder_ = ScratchPath("grindle_models");
    fs::remove_all(sFolder_);
    fs::create_directories(sFolder_ / "Assets");
    fs::create_directory_symlink(fs::path(GRINDLE_GAME_DIR) / "shaders", sFolder_ / "shaders");
    fs::create_directory_symlink(fs::path(GRINDLE_GAME_DIR) / "Assets" / "Textures",
                                 sFolder_ / "Assets" / "Textures");
    fs::copy(GRINDLE_TEST_MODELS, sFolder_ / "Assets" / "Models", fs::copy_options::recursive);
    fs::current_path(sFolder_);
  }
  static void TearDownTestSuite() {
    fs::current_path(GRINDLE_GAME_DIR);
    fs::remove_all(sFolder_);
    GoldenImageFixture::TearDownTestSuite();
  }

  static Database& AddModelObject(Database& level, const std::string& name, const char* component,
                                  const std::string& model, const glm::vec3& position,
                                  const glm::vec4& diffuse) {
    Database& object = AddMeshObject(level, name, "Box.mesh", position, {1, 1, 1}, diffuse);
    object.Remove("Mesh");
    object.Add<Database>(component)->Add<std::string>("Name", model);
    return object;
  }

  // Where a world point lands in the captured 320 x 180 frame.
  static glm::ivec2 PixelOf(const glm::vec3& world) {
    const glm::vec4 clip = Renderer().Projection() * Renderer().View() * glm::vec4(world, 1.0f);
    const glm::vec2 ndc = glm::vec2(clip) / clip.w;
    return {static_cast<int>((ndc.x + 1.0f) * 0.5f * kWidth),
            static_cast<int>((1.0f - ndc.y) * 0.5f * kHeight)};
  }
  static glm::vec4 ColourAt(const Image& image, const glm::vec3& world) {
    const glm::ivec2 p = PixelOf(world);
    return image.At(p.x, p.y);
  }

  static inline fs::path sFolder_;
};

TEST_F(ModelRenderTest, StaticModelsShareOneBatchPerColourAndTakeTheirMaterial) {
  Database& level = AddLevel("StaticModels");
  AddCamera(level, {0, 5, -9}, {0, -0.45f, 1});
  AddMeshObject(level, "Floor", "Grid.mesh", {0, 0, 0}, {30, 1, 30}, {0.6f, 0.6f, 0.6f, 1});
  AddModelObject(level, "Left", "ModelStatic", "Pyramid", {-3, 0, 0}, {1, 1, 1, 1});
  AddModelObject(level, "Middle", "ModelStatic", "Pyramid", {0, 0, 0}, {1, 1, 1, 1});
  AddModelObject(level, "Right", "ModelStatic", "Pyramid", {3, 0, 0}, {1, 0.2f, 0.2f, 1});
  StartLevel("StaticModels");
  Frame();
  Frame();
  const Image image = Capture();
  // Two colour batches of the one shared model, two subsets each.
  EXPECT_EQ(Renderer().Models()->LastLitDrawCalls(), 4u);
  EXPECT_EQ(Renderer().Models()->Store().Count(), 1u);
  EXPECT_EQ(level.Find<Database>("ComponentLists")->Find<Database>("StaticModels")->EntryCount(),
            3u);
  // The tinted pyramid keeps red and loses green against its white twin.
  const glm::vec4 white = ColourAt(image, {0, 0.8f, -0.4f});
  const glm::vec4 red = ColourAt(image, {3, 0.8f, -0.4f});
  EXPECT_GT(Luma(white), 0.15f);
  EXPECT_LT(red.g, white.g * 0.6f);
  EXPECT_GT(red.r, red.g * 2.0f);
  ExpectMatchesGolden(image, "model_static");

  // Writing a component's Name swaps the model from the next frame on: a third batch appears.
  fs::copy_file(sFolder_ / "Assets" / "Models" / "Static" / "Pyramid.mdl",
                sFolder_ / "Assets" / "Models" / "Static" / "Spike.mdl");
  *level.Find<Database>("GameObjects")->Find<Database>("Middle")->Find<Database>("ModelStatic")
       ->Find<std::string>("Name") = "Spike";
  Frame();
  EXPECT_EQ(Renderer().Models()->Store().Count(), 2u);
  EXPECT_EQ(Renderer().Models()->LastLitDrawCalls(), 6u);
}

TEST_F(ModelRenderTest, SkinnedBarBendsWithItsClip) {
  Database& level = AddLevel("SkinnedModel");
  AddCamera(level, {0, 1.5f, -6}, {0, 0, 1});
  AddMeshObject(level, "Floor", "Grid.mesh", {0, 0, 0}, {30, 1, 30}, {0.6f, 0.6f, 0.6f, 1});
  Database& bar =
      AddModelObject(level, "Bar", "ModelSkinned", "Bar", {0, 0, 0}, {1, 0.8f, 0.3f, 1});
  Database& skin = *bar.Find<Database>("ModelSkinned");
  skin.Add<std::string>("AnimationName", "Bend");
  StartLevel("SkinnedModel");
  const auto frameAt = [&](double time) {
    skin.Add<double>("TimeMarker", time);
    Frame();
    EXPECT_DOUBLE_EQ(*skin.Find<double>("TimeMarker"), time);
    return Capture();
  };
  const Image upright = frameAt(0.0);
  const Image bent = frameAt(2.0);
  // The upper half swings from straight up to pointing along -x; the lower half stays.
  const glm::vec3 top(0, 1.8f, -0.3f), tip(-0.8f, 1.0f, -0.3f), foot(0, 0.3f, -0.3f);
  // The bar is the only orange thing: the floor is white, the sky black.
  const auto onBar = [](const glm::vec4& c) { return c.r > 0.25f && c.b < 0.6f * c.r; };
  EXPECT_TRUE(onBar(ColourAt(upright, top)));
  EXPECT_FALSE(onBar(ColourAt(bent, top)));
  EXPECT_FALSE(onBar(ColourAt(upright, tip)));
  EXPECT_TRUE(onBar(ColourAt(bent, tip)));
  EXPECT_TRUE(onBar(ColourAt(upright, foot)));
  EXPECT_TRUE(onBar(ColourAt(bent, foot)));
  ExpectMatchesGolden(upright, "model_skinned_0");
  ExpectMatchesGolden(bent, "model_skinned_2");
}

TEST_F(ModelRenderTest, ScriptsSeeAndSteerTheClip) {
  Database& level = AddLevel("Clips");
  AddCamera(level, {0, 1.5f, -6}, {0, 0, 1});
  Database& bar = AddModelObject(level, "Bar", "ModelSkinned", "Bar", {0, 0, 0}, {1, 1, 1, 1});
  Database& skin = *bar.Find<Database>("ModelSkinned");
  skin.Add<std::string>("AnimationName", "Bend");
  StartLevel("Clips");
  // The first frame shows the clip's start, each later one is a frame's time further.
  for (int i = 0; i < 3; ++i) Frame();
  EXPECT_NEAR(*skin.Find<double>("TimeMarker"), 2.0 / 60.0, 1e-6);
  // The final matrices, by bone name, are what the shader skins with.
  const auto finals = skin.Find<Database>("FinalTransformations");
  ASSERT_TRUE(finals);
  ASSERT_TRUE(finals->Find<glm::mat4>("Root"));
  ASSERT_TRUE(finals->Find<glm::mat4>("Upper"));

  // A new clip name restarts at the clip's start; pausing holds the time.
  *skin.Find<std::string>("AnimationName") = "Rest";
  Frame();
  EXPECT_DOUBLE_EQ(*skin.Find<double>("TimeMarker"), 0.5);
  *root_.Find<bool>("isGamePaused") = true;
  Frame();
  EXPECT_DOUBLE_EQ(*skin.Find<double>("TimeMarker"), 0.5);
  *root_.Find<bool>("isGamePaused") = false;

  // A clip the model lacks draws the bind pose, and says so once.
  *skin.Find<std::string>("AnimationName") = "Dance";
  const std::string said = CaptureStdout([&] {
    Frame();
    Frame();
  });
  EXPECT_EQ(said,
            "Model Assets/Models/Skinned/Bar.smdl has no animation clip \"Dance\"; drawn in "
            "its bind pose\n");
  EXPECT_EQ(*finals->Find<glm::mat4>("Upper"), glm::mat4(1.0f));
}

TEST_F(ModelRenderTest, BrokenAndRewrittenFiles) {
  const fs::path folder = sFolder_ / "Assets" / "Models" / "Static";
  const std::string pyramid = ReadFile(folder / "Pyramid.mdl");
  const auto write = [&](const char* name, const std::string& text) {
    std::ofstream(folder / name) << text;
  };
  std::string badIndex = pyramid;
  badIndex.replace(badIndex.find("Indices: 0 1 2"), 14, "Indices: 0 1 9");
  write("BadIndex.mdl", badIndex);
  write("Short.mdl", pyramid.substr(0, pyramid.find("Face2")));
  write("Hot.mdl", pyramid);

  Database& level = AddLevel("Broken");
  AddCamera(level, {0, 5, -9}, {0, -0.45f, 1});
  AddModelObject(level, "BadIndex", "ModelStatic", "BadIndex", {-3, 0, 0}, {1, 1, 1, 1});
  AddModelObject(level, "Short", "ModelStatic", "Short", {0, 0, 0}, {1, 1, 1, 1});
  AddModelObject(level, "Hot", "ModelStatic", "Hot", {3, 0, 0}, {1, 1, 1, 1});
  const std::string said = CaptureStdout([&] {
    StartLevel("Broken");
    Frame();
  });
  EXPECT_NE(said.find("Model Assets/Models/Static/BadIndex.mdl:37: index 9 is beyond the 5 "
                      "vertices; subset 1 not drawn\n"),
            std::string::npos)
      << said;
  EXPECT_NE(
      said.find("Model Assets/Models/Static/Short.mdl:32: the file ends where it should hold"),
      std::string::npos)
      << said;
  // The bad pyramid keeps its sides (one subset), the short one draws nothing, Hot both subsets.
  EXPECT_EQ(Renderer().Models()->LastLitDrawCalls(), 3u);

  // Rewriting a model replaces it on the object; a rewrite that cannot be drawn keeps the old one.
  const glm::vec3 side(3, 0.8f, -0.4f);
  Frame();
  const float beforeLuma = Luma(ColourAt(Capture(), side));
  std::string dark = pyramid;
  dark.replace(dark.find("Diffuse: 1 1 1 1"), 16, "Diffuse: 0 0 0 1");
  dark.replace(dark.find("Ambient: 0.5 0.5 0.5 1"), 22, "Ambient: 0 0 0 1");
  write("Hot.mdl", dark);
  EXPECT_TRUE(Renderer().Models()->Reload("Assets/Models/Static/Hot.mdl"));
  Frame();
  EXPECT_LT(Luma(ColourAt(Capture(), side)), beforeLuma - 0.1f);
  write("Hot.mdl", pyramid.substr(0, 40));
  bool replaced = true;
  const std::string refused = CaptureStdout(
      [&] { replaced = Renderer().Models()->Reload("Assets/Models/Static/Hot.mdl"); });
  EXPECT_FALSE(replaced);
  EXPECT_NE(refused.find("Model Assets/Models/Static/Hot.mdl: the rewritten file cannot be drawn; "
                         "the old model stays\n"),
            std::string::npos)
      << refused;
}

// The whole hot-reload path: the directory watcher sees the rewrite, the resource manager's frame
// update reloads the file, and the model (same address, so every object holding it) changes.
TEST_F(ModelRenderTest, AModelFileWrittenWhileWatchedIsReloaded) {
  const fs::path file = sFolder_ / "Assets" / "Models" / "Static" / "Watched.mdl";
  fs::copy_file(sFolder_ / "Assets" / "Models" / "Static" / "Pyramid.mdl", file,
                fs::copy_options::overwrite_existing);
  ThreadManager threads(2, 10);
  ResourceManager resources(threads, messages_, sFolder_.string());
  ModelStore store(&resources);
  const GpuModel& model = store.Get(ModelKind::kStatic, "Watched");
  EXPECT_EQ(model.generation, 0u);
  EXPECT_EQ(model.materials[1].diffuse, glm::vec4(0.2f, 0.4f, 0.9f, 1));
  std::this_thread::sleep_for(std::chrono::milliseconds(100));
  std::string text = ReadFile(file);
  text.replace(text.find("Diffuse: 0.2 0.4 0.9 1"), 22, "Diffuse: 0.9 0.1 0.1 1");
  std::ofstream(file) << text;
  const std::string said = CaptureStdout([&] {
    Eventually([&] {
      resources.Update();
      return model.generation != 0;
    });
  });
  EXPECT_EQ(model.generation, 1u) << said;
  EXPECT_EQ(model.materials[1].diffuse, glm::vec4(0.9f, 0.1f, 0.1f, 1));
}

// What grindle_import makes of an OBJ and a glTF scene is drawn: the cube in its file colour, the
// bar bent by its imported clip.
TEST_F(ModelRenderTest, ImportedModelsAreDrawn) {
  const fs::path sources = sFolder_ / "sources";
  fs::create_directories(sources);
  std::ofstream(sources / "cube.obj") << kCubeObj;
  std::ofstream(sources / "cube.mtl") << kCubeMtl;
  std::ofstream(sources / "bar.gltf") << BarGltf();
  const auto import = [&](const char* source, const fs::path& output) {
    const ProcessResult run = RunProcess(std::string("'") + GRINDLE_IMPORT + "' '" +
                                         (sources / source).string() + "' '" + output.string() +
                                         "' 2>&1");
    EXPECT_EQ(run.status, 0) << run.output;
  };
  import("cube.obj", sFolder_ / "Assets" / "Models" / "Static" / "ImportedCube.mdl");
  import("bar.gltf", sFolder_ / "Assets" / "Models" / "Skinned" / "ImportedBar.smdl");

  Database& level = AddLevel("Imported");
  AddCamera(level, {0, 1.5f, -6}, {0, 0, 1});
  AddModelObject(level, "Cube", "ModelStatic", "ImportedCube", {1.5f, 0.5f, 0}, {1, 1, 1, 1});
  Database& bar =
      AddModelObject(level, "Bar", "ModelSkinned", "ImportedBar", {-1, 0, 0}, {1, 1, 1, 1});
  Database& skin = *bar.Find<Database>("ModelSkinned");
  skin.Add<std::string>("AnimationName", "Bend");
  // A marker the level file holds is where the clip starts.
  skin.Add<double>("TimeMarker", 1.0);
  StartLevel("Imported");
  Frame();
  const Image image = Capture();
  // The cube's file colour is orange-red (0.8, 0.25, 0.1) over the crate texture: red well above
  // blue.
  const glm::vec4 cube = ColourAt(image, {1.5f, 0.5f, -0.5f});
  EXPECT_GT(cube.r, cube.b + 0.1f);
  // Bent at the end of "Bend": the upper half lies along -x from the pivot at (-1, 1).
  const auto onBar = [](const glm::vec4& c) { return Luma(c) > 0.15f; };
  EXPECT_TRUE(onBar(ColourAt(image, {-1.8f, 1.0f, -0.3f})));
  EXPECT_FALSE(onBar(ColourAt(image, {-1.0f, 1.8f, -0.3f})));
}

}  // namespace
}  // namespace grindle::gfx
