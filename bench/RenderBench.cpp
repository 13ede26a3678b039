// Whole frames of the renderer (Update and Render, finished with glFinish) on a hidden window of
// whatever OpenGL the machine offers (SDL's offscreen driver, Mesa's llvmpipe, when nothing else is
// set): the Showcase level at 1280 x 720, a level of 5,000 lit boxes (the key table's 7,001 names
// cap one level below 10,000 objects), skinned characters and instanced props. Frames per second
// are reported as a counter. The model manager's own CPU work per frame (posing, write-back and
// batching) is timed apart from the GPU work.
#include <SDL.h>
#include <benchmark/benchmark.h>
#include <epoxy/gl.h>
#include <unistd.h>

#include <chrono>
#include <cmath>
#include <cstdlib>
#include <glm/mat4x4.hpp>
#include <glm/vec4.hpp>
#include <memory>
#include <string>

#include "Core/Database.h"
#include "Core/MathTypes.h"
#include "Core/MemoryManager.h"
#include "Core/MessageHandler.h"
#include "Core/WellKnownKeys.h"
#include "Core/xmlParser.h"
#include "Graphics/GraphicsLibraryInterface.h"
#include "Graphics/RenderInterface/OpenGL/Models/ModelManager.h"
#include "Graphics/RenderInterface/OpenGL/OpenGLInterface.h"
#include "Graphics/RenderInterface/OpenGL/Particles/ParticleManager.h"

namespace grindle {
namespace {

class RendererRun {
 public:
  RendererRun(int width, int height) {
    setenv("SDL_VIDEODRIVER", "offscreen", 0);
    if (chdir(GRINDLE_GAME_DIR) != 0 || SDL_InitSubSystem(SDL_INIT_VIDEO) != 0) return;
    InternWellKnownKeys();
    window_ = SDL_CreateWindow("render bench", 0, 0, width, height,
                               SDL_WINDOW_OPENGL | SDL_WINDOW_HIDDEN);
    if (window_ == nullptr) return;
    root_.Add<Database>("Systems")->Add<MessageHandler*>("MessageHandler", &messages_);
    root_.Add<SDL_Window*>("MainWindowHandle", window_);
    root_.Add<double>("WindowWidth", width);
    root_.Add<double>("WindowHeight", height);
    root_.Add<Database>("Levels");
    root_.Add<bool>("isGamePaused", false);
    void* args[kSynchronizeArgCount] = {&root_, &CurrentMemoryRegistry(), nullptr, nullptr};
    ISystem& system = graphics_;
    system.synchronize(args, kSynchronizeArgCount);
    system.Load();
    system.Start();
    messages_.Send("FullScreenMSG");
    messages_.Send("LoadShaders");
    messages_.Deliver(MessageHandler::kDeliverAll);
  }
  ~RendererRun() {
    ISystem& system = graphics_;
    system.Exit();
    system.Unload();
    if (window_ != nullptr) SDL_DestroyWindow(window_);
  }

  bool IsReady() const { return window_ != nullptr; }
  Database& Root() { return root_; }

  void StartLevel(const std::string& name) {
    root_.Add<std::string>("CurrentLevel", name);
    const DataHandle<Database> objects =
        root_.Find<Database>("Levels")->Find<Database>(name)->Find<Database>("GameObjects");
    for (const Database::Record& record : objects->Records()) {
      messages_.SendArgs("msgLevelObjectCreated", objects->Find<Database>(record.name), record.name,
                         name);
    }
    messages_.SendArgs("LevelInitializeComplete", name);
    messages_.Deliver(MessageHandler::kDeliverAll);
  }

  void Frame() {
    messages_.Deliver(MessageHandler::kDeliverAll);
    graphics_.Update(1.0f / 60.0f);
    glFinish();
  }

 private:
  Database root_;
  MessageHandler messages_;
  GraphicsInterface graphics_;
  SDL_Window* window_ = nullptr;
};

void RunFrames(benchmark::State& state, RendererRun& run) {
  for (int i = 0; i < 3; ++i) run.Frame();  // shadow maps, mips and caches warm
  for (auto _ : state) run.Frame();
  state.counters["fps"] =
      benchmark::Counter(static_cast<double>(state.iterations()), benchmark::Counter::kIsRate);
}

void BM_ShowcaseFrame1280x720(benchmark::State& state) {
  RendererRun run(1280, 720);
  if (!run.IsReady()) return state.SkipWithError("no OpenGL 4.5 window");
  ParseFile("Assets/Levels/Showcase.xml",
            *run.Root().Find<Database>("Levels")->Add<Database>("Showcase"));
  run.StartLevel("Showcase");
  RunFrames(state, run);
}
BENCHMARK(BM_ShowcaseFrame1280x720)->Unit(benchmark::kMillisecond)->UseRealTime();

void BM_FiveThousandBoxesFrame1280x720(benchmark::State& state) {
  RendererRun run(1280, 720);
  if (!run.IsReady()) return state.SkipWithError("no OpenGL 4.5 window");
  Database& level = *run.Root().Find<Database>("Levels")->Add<Database>("Boxes");
  level.Add<Database>("ComponentLists")->Add<Database>("Meshes");
  Database& objects = *level.Add<Database>("GameObjects");
  Database& camera = *objects.Add<Database>("MainCamera")->Add<Database>("Camera");
  const double eye[6] = {0, 60, -90, 0, -0.6, 1};
  const char* keys[6] = {"PositionX", "PositionY", "PositionZ", "viewX", "viewY", "viewZ"};
  for (int i = 0; i < 6; ++i) camera.Add<double>(keys[i], eye[i]);
  constexpr int kSide = 71;  // 71 x 71 = 5,041 boxes on a grid
  for (int i = 0; i < 5000; ++i) {
    Database& box = *objects.Add<Database>("Box" + std::to_string(i));
    Database& mesh = *box.Add<Database>("Mesh");
    mesh.Add<std::string>("Filename", "Box.mesh");
    mesh.Add<double>("HasTexture", 0.0);
    Database& transform = *box.Add<Database>("Transform");
    transform.Add<double>("PositionX", (i % kSide - kSide / 2) * 2.0);
    transform.Add<double>("PositionY", 0.5);
    transform.Add<double>("PositionZ", (i / kSide - kSide / 2) * 2.0);
    transform.Add<glm::mat4>("Rotation", glm::mat4(1.0f));
    transform.Add<Vector4>("Scale", {1, 1, 1, 0});
    Database& material = *box.Add<Database>("Material");
    material.Add<glm::vec4>("Ambient", glm::vec4(0.2f));
    material.Add<glm::vec4>("Diffuse", glm::vec4(0.6f, 0.5f, 0.4f, 1.0f));
    material.Add<glm::vec4>("Specular", glm::vec4(0.2f, 0.2f, 0.2f, 16.0f));
  }
  run.StartLevel("Boxes");
  RunFrames(state, run);
}
BENCHMARK(BM_FiveThousandBoxesFrame1280x720)->Unit(benchmark::kMillisecond)->UseRealTime();

// A level of `count` model objects on a square grid, two units apart, seen from above at arena
// distance: the generated character running, or the generated props in four kinds.
Database& ModelLevel(RendererRun& run, const std::string& name, int count, bool skinned) {
  Database& level = *run.Root().Find<Database>("Levels")->Add<Database>(name);
  Database& objects = *level.Add<Database>("GameObjects");
  Database& camera = *objects.Add<Database>("MainCamera")->Add<Database>("Camera");
  const int side = static_cast<int>(std::ceil(std::sqrt(static_cast<double>(count))));
  const double eye[6] = {0, side * 1.6, -side * 1.8, 0, -0.7, 1};
  const char* keys[6] = {"PositionX", "PositionY", "PositionZ", "viewX", "viewY", "viewZ"};
  for (int i = 0; i < 6; ++i) camera.Add<double>(keys[i], eye[i]);
  const char* props[4] = {"Crate", "Barrel", "Pillar", "Potato"};
  for (int i = 0; i < count; ++i) {
    Database& object = *objects.Add<Database>("Model" + std::to_string(i));
    Database& transform = *object.Add<Database>("Transform");
    transform.Add<double>("PositionX", (i % side - side / 2) * 2.0);
    transform.Add<double>("PositionY", 1.0);
    transform.Add<double>("PositionZ", (i / side - side / 2) * 2.0);
    transform.Add<glm::mat4>("Rotation", glm::mat4(1.0f));
    transform.Add<Vector4>("Scale", {0.8f, 0.8f, 0.8f, 0});
    Database& material = *object.Add<Database>("Material");
    material.Add<glm::vec4>("Ambient", glm::vec4(0.4f));
    material.Add<glm::vec4>("Diffuse",
                            glm::vec4(0.2f + 0.2f * static_cast<float>(i % 4), 0.5f, 0.6f, 1));
    material.Add<glm::vec4>("Specular", glm::vec4(0.2f, 0.2f, 0.2f, 16.0f));
    if (skinned) {
      Database& model = *object.Add<Database>("ModelSkinned");
      model.Add<std::string>("Name", "Character");
      model.Add<std::string>("AnimationName", i % 2 == 0 ? "Run" : "Idle");
    } else {
      object.Add<Database>("ModelStatic")->Add<std::string>("Name", props[i % 4]);
    }
  }
  run.StartLevel(name);
  return level;
}

void BM_SkinnedCharactersFrame1280x720(benchmark::State& state) {
  RendererRun run(1280, 720);
  if (!run.IsReady()) return state.SkipWithError("no OpenGL 4.5 window");
  ModelLevel(run, "Characters", static_cast<int>(state.range(0)), true);
  RunFrames(state, run);
}
BENCHMARK(BM_SkinnedCharactersFrame1280x720)
    ->Arg(100)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();

void BM_InstancedPropsFrame1280x720(benchmark::State& state) {
  RendererRun run(1280, 720);
  if (!run.IsReady()) return state.SkipWithError("no OpenGL 4.5 window");
  ModelLevel(run, "Props", static_cast<int>(state.range(0)), false);
  RunFrames(state, run);
}
BENCHMARK(BM_InstancedPropsFrame1280x720)
    ->Arg(1000)
    ->Arg(5000)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();

// What the model manager costs the CPU each frame before any draw: posing every skinned model and
// writing its `TimeMarker` and `FinalTransformations`, reading every transform and building the
// instance batches (uploaded once for the shadow and lit passes).
void BM_ModelManagerCpu(benchmark::State& state, bool skinned) {
  RendererRun run(320, 180);
  if (!run.IsReady()) return state.SkipWithError("no OpenGL 4.5 window");
  ModelLevel(run, skinned ? "CpuCharacters" : "CpuProps", static_cast<int>(state.range(0)),
             skinned);
  gfx::ModelManager& models = *gfx::CurrentRenderer()->Models();
  for (auto _ : state) models.AdvanceAnimation(glm::mat4(1.0f), 1.0f / 60.0f);
}
BENCHMARK_CAPTURE(BM_ModelManagerCpu, SkinnedCharacters, true)
    ->Arg(100)
    ->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(BM_ModelManagerCpu, StaticProps, false)
    ->Arg(1000)
    ->Arg(5000)
    ->Unit(benchmark::kMicrosecond);

// `count` particle systems in a row in front of the camera, cycling through the continuous kinds
// and the large explosion (which the loop restarts every second, so it is always bursting).
void ParticleLevel(RendererRun& run, int count) {
  Database& level = *run.Root().Find<Database>("Levels")->Add<Database>("Particles");
  level.Add<Database>("ComponentLists")->Add<Database>("Meshes");
  Database& objects = *level.Add<Database>("GameObjects");
  Database& camera = *objects.Add<Database>("MainCamera")->Add<Database>("Camera");
  const double eye[6] = {0, 6, -25, 0, -0.2, 1};
  const char* names[] = {"PositionX", "PositionY", "PositionZ", "viewX", "viewY", "viewZ"};
  for (int i = 0; i < 6; ++i) camera.Add<double>(names[i], eye[i]);
  const char* kinds[] = {"Fire", "Dust", "Blink", "Explosion"};
  for (int i = 0; i < count; ++i) {
    Database& object = *objects.Add<Database>("Emitter" + std::to_string(i));
    Database& transform = *object.Add<Database>("Transform");
    transform.Add<double>("PositionX", (i % 10) * 3.0 - 13.5);
    transform.Add<double>("PositionY", 0.0);
    transform.Add<double>("PositionZ", (i / 10) * 6.0);
    object.Add<Database>("ParticleSystem")->Add<std::string>("Type", kinds[i % 4]);
  }
  run.StartLevel("Particles");
}

void RestartExplosions(int frame, int count) {
  if (frame % 60 != 0) return;
  for (int i = 3; i < count; i += 4)
    gfx::CurrentRenderer()->Particles().Restart("Emitter" + std::to_string(i));
}

// Whole frames with the particle systems, finished on the GPU.
void BM_ParticleSystemsFrame1280x720(benchmark::State& state) {
  RendererRun run(1280, 720);
  if (!run.IsReady()) return state.SkipWithError("no OpenGL 4.5 window");
  const int count = static_cast<int>(state.range(0));
  ParticleLevel(run, count);
  int frame = 0;
  for (int i = 0; i < 60; ++i) run.Frame();  // continuous kinds reach their steady state
  for (auto _ : state) {
    RestartExplosions(++frame, count);
    run.Frame();
  }
  state.counters["fps"] =
      benchmark::Counter(static_cast<double>(state.iterations()), benchmark::Counter::kIsRate);
}
BENCHMARK(BM_ParticleSystemsFrame1280x720)
    ->Arg(0)
    ->Arg(20)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();

// What the particle manager's Draw costs the CPU (placing, uniforms, two passes and two draws per
// system), timed without the GPU work it queues, which is finished outside the timing.
void BM_ParticleManagerCpu(benchmark::State& state) {
  RendererRun run(320, 180);
  if (!run.IsReady()) return state.SkipWithError("no OpenGL 4.5 window");
  const int count = static_cast<int>(state.range(0));
  ParticleLevel(run, count);
  for (int i = 0; i < 60; ++i) run.Frame();
  gfx::ParticleManager& particles = gfx::CurrentRenderer()->Particles();
  int frame = 0;
  for (auto _ : state) {
    RestartExplosions(++frame, count);
    const auto start = std::chrono::steady_clock::now();
    particles.Draw(glm::mat4(1.0f), 1.0f / 60.0f);
    const auto end = std::chrono::steady_clock::now();
    glFinish();
    state.SetIterationTime(std::chrono::duration<double>(end - start).count());
  }
}
BENCHMARK(BM_ParticleManagerCpu)->Arg(20)->Unit(benchmark::kMicrosecond)->UseManualTime();

}  // namespace
}  // namespace grindle
