// CPU time of the mesh pass: every listed mesh component's entries read and its draw issued, for
// 1,000 and 10,000 objects in one level, on a hidden window of whatever OpenGL the machine offers
// (SDL's offscreen driver when nothing else is set). The window is tiny so that rasterising stays
// small beside the pass's own work; glFinish bounds the driver's queue once per pass. The key
// table holds 7,001 names, so one level cannot name 10,000 objects: larger counts are drawn as
// several scenes of at most 5,000 objects, each pass drawing all of them.
#include <benchmark/benchmark.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#include "Core/Database.h"
#include "Core/MathTypes.h"
#include "Core/MessageHandler.h"
#include "Core/WellKnownKeys.h"
#include "Graphics/MeshCompHandler.h"
#include "BenchDevice.h"

namespace grindle::gfx {
namespace {

// A level of `count` objects: boxes, spheres and cylinders, a third textured, a tenth glowing.
struct MeshScene {
  MeshScene(int count, RenderDevice& device) : meshes(root, device) {
    Database& level = *root.Add<Database>("Levels")->Add<Database>("Bench");
    root.Add<std::string>("CurrentLevel", "Bench");
    Database& objects = *level.Add<Database>("GameObjects");
    const char* files[] = {"Box.mesh", "Sphere.mesh", "Cylinder.mesh"};
    for (int i = 0; i < count; ++i) {
      Database& object = *objects.Add<Database>("Object" + std::to_string(i));
      Database& transform = *object.Add<Database>("Transform");
      transform.Add<double>("PositionX", i % 100);
      transform.Add<double>("PositionY", 0.0);
      transform.Add<double>("PositionZ", i / 100);
      transform.Add<glm::mat4>("Rotation", glm::mat4(1.0f));
      transform.Add<Vector4>("Scale", {1.0f, 1.0f, 1.0f, 0.0f});
      Database& material = *object.Add<Database>("Material");
      material.Add<glm::vec4>("Ambient", glm::vec4(0.2f));
      material.Add<glm::vec4>("Diffuse", glm::vec4(0.8f));
      material.Add<glm::vec4>("Specular", glm::vec4(0.5f));
      Database& mesh = *object.Add<Database>("Mesh");
      mesh.Add<std::string>("Filename", files[i % 3]);
      mesh.Add<double>("HasTexture", i % 3 == 0 ? 1.0 : 0.0);
      mesh.Add<std::string>("TextureName", "Asphalt.jpg");
      if (i % 10 == 0) {
        Database& glow = *object.Add<Database>("Glow");
        glow.Add<double>("r", 1.0);
        glow.Add<double>("g", 0.5);
        glow.Add<double>("b", 0.0);
      }
    }
    meshes.BuildLevelLists(level);
  }

  Database root;
  MeshCompHandler meshes;
};

constexpr int kObjectsPerScene = 5000;

void RunPass(benchmark::State& state, bool glowPass) {
  RenderDevice* device = Device();
  if (device == nullptr) {
    state.SkipWithError("no OpenGL 4.5 context or scene effects");
    return;
  }
  std::vector<std::unique_ptr<MeshScene>> scenes;
  for (int64_t left = state.range(0); left > 0; left -= kObjectsPerScene) {
    scenes.push_back(std::make_unique<MeshScene>(
        static_cast<int>(std::min<int64_t>(left, kObjectsPerScene)), *device));
  }
  const glm::mat4 viewProj(1.0f);
  for (auto _ : state) {
    for (auto& scene : scenes) scene->meshes.Draw(glowPass, viewProj, device->Textures());
    glFinish();
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

void BM_MeshPassLit(benchmark::State& state) { RunPass(state, false); }
void BM_MeshPassGlow(benchmark::State& state) { RunPass(state, true); }
BENCHMARK(BM_MeshPassLit)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_MeshPassGlow)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace grindle::gfx
