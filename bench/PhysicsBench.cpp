// Cost of the physics system's frame (sync in, four fixed steps, sync out) with N boxes on a floor,
// at rest or pushed every frame, each next to the bare library doing the same to the same bodies,
// and of one ray cast among them. Run from the
// release build: grindle_bench
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
#include "Physics/Physics/BodyBuilder.h"
#include "Physics/Physics/Physics.h"
#include "Physics/Physics/PhysicsWorld.h"
#include "Physics/PhysicsLibraryInterface.h"

namespace grindle {
namespace {

std::string BoxName(int i) { return "Box" + std::to_string(i); }

void AddBox(Database& objects, const std::string& name, double x, double y, double z, float size,
            bool isStatic) {
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

// The objects of a level "Bench": a static floor, then `count` unit boxes resting on it in a grid.
Database& AddBoxLevel(Database& root, int count) {
  InternWellKnownKeys();
  root.Add<std::string>("CurrentLevel", "Bench");
  root.Add<bool>("isGamePaused", false);
  Database& objects =
      *root.Add<Database>("Levels")->Add<Database>("Bench")->Add<Database>("GameObjects");
  AddBox(objects, "Floor", 0, -0.5, 0, 180, true);
  const int side = static_cast<int>(std::ceil(std::sqrt(count)));
  for (int i = 0; i < count; ++i) {
    AddBox(objects, BoxName(i), (i % side) * 2.0 - side, 0.5, (i / side) * 2.0 - side, 1, false);
  }
  return objects;
}

// The box level run by the physics system, as the engine runs it each frame.
class BoxField {
 public:
  explicit BoxField(int count) {
    root_.Add<Database>("Systems")->Add<MessageHandler*>("MessageHandler", &messages_);
    Database& objects = AddBoxLevel(root_, count);
    for (int i = 0; i < count; ++i) handles_.push_back(objects.Find<Database>(BoxName(i)));
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
  int Awake() const {
    int awake = 0;
    for (const auto& record : system_->Simulation()->Records()) awake += record->pObject_->isActive();
    return awake;
  }

 private:
  Database root_;
  MessageHandler messages_;
  std::unique_ptr<PhysicsInterface> system_;
  std::vector<DataHandle<Database>> handles_;
};

// The same bodies, built by the same code into the same kind of world, stepped without the
// engine: no database reads or writes, no contact bookkeeping. The yardstick for what the engine
// adds to the library.
class BareBoxWorld {
 public:
  explicit BareBoxWorld(int count) {
    Database& objects = AddBoxLevel(root_, count);
    AddBody(objects, "Floor");
    for (int i = 0; i < count; ++i) AddBody(objects, BoxName(i));
  }
  ~BareBoxWorld() {
    for (const std::unique_ptr<BodyRecord>& record : records_) {
      world_.Dynamics().removeRigidBody(record->Rigid());
    }
  }

  void Frame() {
    for (int step = 0; step < kStepsPerFrame; ++step) world_.StepOnce();
  }
  int Awake() const {
    int awake = 0;
    for (const auto& record : records_) awake += record->pObject_->isActive();
    return awake;
  }
  // What "msgSetBodyVelocityXZ" asks of the library, straight on every box.
  void PushAll(double x) {
    for (size_t i = 1; i < records_.size(); ++i) {
      btRigidBody& body = *records_[i]->Rigid();
      body.activate(true);
      body.setLinearVelocity(btVector3(static_cast<float>(x), body.getLinearVelocity().y(), 0));
    }
  }

 private:
  void AddBody(Database& objects, const std::string& name) {
    records_.push_back(BuildBody(*objects.Find<Database>(name), name, "Bench", world_.Gravity()));
    btRigidBody* body = records_.back()->Rigid();
    world_.Dynamics().addRigidBody(body);
    if (!records_.back()->isStatic_) body->activate(true);
  }

  Database root_;
  PhysicsWorld world_;
  std::vector<std::unique_ptr<BodyRecord>> records_;
};

// Frames of `count` boxes that have come to rest (and fallen asleep) on the floor.
template <class Boxes>
void SettledFrames(benchmark::State& state) {
  Boxes boxes(static_cast<int>(state.range(0)));
  for (int i = 0; i < 90; ++i) boxes.Frame();
  for (auto _ : state) boxes.Frame();
  state.SetItemsProcessed(state.iterations() * state.range(0));
  state.counters["awake"] = boxes.Awake();
}

// What is left for the engine is the database synchronisation and the broad phase; the bare run
// beside it is the library alone on the same bodies.
void BM_PhysicsFrameSettled(benchmark::State& state) { SettledFrames<BoxField>(state); }
void BM_BareBulletFrameSettled(benchmark::State& state) { SettledFrames<BareBoxWorld>(state); }
BENCHMARK(BM_PhysicsFrameSettled)->Arg(100)->Arg(1000)->Arg(5000)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_BareBulletFrameSettled)->Arg(100)->Arg(1000)->Arg(5000)->Unit(benchmark::kMicrosecond);

// Every box pushed every frame, as players and projectiles are: all awake, all in contact with
// the floor. The engine run includes sending and delivering the N velocity messages; the bare run
// sets the same velocities on the bodies directly.
template <class Boxes>
void PushedFrames(benchmark::State& state) {
  Boxes boxes(static_cast<int>(state.range(0)));
  for (int i = 0; i < 30; ++i) boxes.Frame();
  double direction = 1.0;
  for (auto _ : state) {
    boxes.PushAll(direction);
    direction = -direction;
    boxes.Frame();
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

void BM_PhysicsFramePushed(benchmark::State& state) { PushedFrames<BoxField>(state); }
void BM_BareBulletFramePushed(benchmark::State& state) { PushedFrames<BareBoxWorld>(state); }
BENCHMARK(BM_PhysicsFramePushed)->Arg(100)->Arg(1000)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_BareBulletFramePushed)->Arg(100)->Arg(1000)->Unit(benchmark::kMicrosecond);

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
