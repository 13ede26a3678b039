// Cost of the physics system's frame (sync in, four fixed steps, sync out) with N boxes on a floor,
// and of one ray cast among them. Run from the release build: grindle_bench
// --benchmark_filter=Physics
#include <benchmark/benchmark.h>

#include <cmath>
#include <memory>
#include <string>
#include <vector>

#include "Core/Database.h"
#include "Core/MathTypes.h"
#include "Core/MemoryManager.h"
#include "Core/MessageHandler.h"
#include "Core/WellKnownKeys.h"
#include "Physics/PhysicsLibraryInterface.h"

namespace grindle {
namespace {

// A level "Bench" with a static floor and `count` unit boxes resting on it in a grid.
class BoxField {
 public:
  explicit BoxField(int count) {
    InternWellKnownKeys();
    root_.Add<Database>("Systems")->Add<MessageHandler*>("MessageHandler", &messages_);
    root_.Add<std::string>("CurrentLevel", "Bench");
    root_.Add<bool>("isGamePaused", false);
    Database& objects =
        *root_.Add<Database>("Levels")->Add<Database>("Bench")->Add<Database>("GameObjects");
    AddBox(objects, "Floor", 0, -0.5, 0, 180, true);
    const int side = static_cast<int>(std::ceil(std::sqrt(count)));
    for (int i = 0; i < count; ++i) {
      const std::string name = "Box" + std::to_string(i);
      AddBox(objects, name, (i % side) * 2.0 - side, 0.5, (i / side) * 2.0 - side, 1, false);
      handles_.push_back(objects.Find<Database>(name));
    }
    void* args[4] = {&root_, &CurrentMemoryRegistry(), nullptr, nullptr};
    system_ = std::make_unique<PhysicsInterface>();
    system_->synchronize(args, 4);
    system_->Load();
    system_->Start();
    messages_.SendArgs("msgLoadLevel", std::string("Bench"));
    messages_.Deliver(MessageHandler::kDeliverAll);
  }
  ~BoxField() {
    system_->Exit();
    system_->Unload();
    system_.reset();
  }

  void Frame() {
    messages_.Deliver(MessageHandler::kDeliverAll);
    system_->Update(1.0f / 60.0f);
  }
  void PushAll(double x) {
    for (const DataHandle<Database>& box : handles_) {
      messages_.SendArgs("msgSetBodyVelocityXZ", box, x, 0.0);
    }
  }
  RayCaster& Caster() { return *system_; }

 private:
  static void AddBox(Database& objects, const std::string& name, double x, double y, double z,
                     float size, bool isStatic) {
    Database& object = *objects.Add<Database>(name);
    Database& transform = *object.Add<Database>("Transform");
    transform.Add<double>("PositionX", x);
    transform.Add<double>("PositionY", y);
    transform.Add<double>("PositionZ", z);
    transform.Add<double>("RotationY", 0.0);
    transform.Add<Vector4>("Scale", Vector4{size, 1, size, 0});
    Database& body = *object.Add<Database>("Body");
    body.Add<Vector4>("ShapeScale", Vector4{0.5f, 0.5f, 0.5f, 0});
    body.Add<int>("Static", isStatic ? 1 : 0);
  }

  Database root_;
  MessageHandler messages_;
  std::unique_ptr<PhysicsInterface> system_;
  std::vector<DataHandle<Database>> handles_;
};

// Bodies at rest fall asleep: what is left is the database synchronisation and the broad phase.
void BM_PhysicsFrameSettled(benchmark::State& state) {
  BoxField field(static_cast<int>(state.range(0)));
  for (int i = 0; i < 90; ++i) field.Frame();
  for (auto _ : state) field.Frame();
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(BM_PhysicsFrameSettled)->Arg(100)->Arg(1000)->Unit(benchmark::kMicrosecond);

// Every box pushed by a script every frame, as players and projectiles are: all awake, all in
// contact with the floor. Includes delivering the N velocity messages.
void BM_PhysicsFrameAwake(benchmark::State& state) {
  BoxField field(static_cast<int>(state.range(0)));
  double direction = 1.0;
  for (auto _ : state) {
    field.PushAll(direction);
    direction = -direction;
    field.Frame();
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(BM_PhysicsFrameAwake)->Arg(100)->Arg(1000)->Unit(benchmark::kMicrosecond);

void BM_PhysicsRayCastAmongBoxes(benchmark::State& state) {
  BoxField field(1000);
  field.Frame();
  double x = -30.0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(field.Caster().Cast(x, 20.0, 0.0, 0.0, -9e6, 0.0));
    x = x > 30.0 ? -30.0 : x + 0.37;
  }
}
BENCHMARK(BM_PhysicsRayCastAmongBoxes);

}  // namespace
}  // namespace grindle
