// A started physics system in a real root database with a real message handler, and helpers that
// lay objects out as level files do (Levels.<level>.GameObjects.<object> with Transform and Body
// groups of doubles and vec4 scales) and announce them the way the level manager and scripts do.
#pragma once

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "Core/Database.h"
#include "Core/MathTypes.h"
#include "Core/MessageHandler.h"
#include "Core/WellKnownKeys.h"
#include "Physics/Physics/Physics.h"
#include "Physics/PhysicsLibraryInterface.h"
#include "TestOutput.h"

namespace grindle {

struct BoxSpec {
  btVector3 position{0, 0, 0};
  btVector3 scale{1, 1, 1};  // Scale, with ShapeScale 0.5: half extents = scale / 2
  btVector3 offset{0, 0, 0};
  double rotationY = 0.0;
  bool isStatic = false;
  std::optional<double> restitution;
  std::optional<double> gravityFactor;
};

struct Collision {
  std::string message;
  std::string first;
  std::string second;
  bool operator==(const Collision&) const = default;
};

class PhysicsTest : public testing::Test {
 protected:
  static constexpr const char* kLevel = "Arena";

  PhysicsTest() {
    InternWellKnownKeys();
    root_.Add<Database>("Systems")->Add<MessageHandler*>("MessageHandler", &messages_);
    root_.Add<std::string>("CurrentLevel", kLevel);
    root_.Add<bool>("isGamePaused", false);
    root_.Add<Database>("Levels");
    for (const char* name : {"CollisionBegin", "CollisionEnd"}) {
      messages_.Listen(name, "Test", [this, name](MessageArgs args) {
        collisions_.push_back({name, *args.Get<std::string>(0), *args.Get<std::string>(1)});
      });
    }
  }

  void SetUp() override {
    void* args[4] = {&root_, &CurrentMemoryRegistry(), nullptr, nullptr};
    lifeCycle_ = CaptureStdout([&] {
      system_.synchronize(args, 4);
      system_.Load();
      system_.Start();
    });
  }

  void TearDown() override {
    lifeCycle_ += CaptureStdout([&] {
      system_.Exit();
      system_.Unload();
    });
  }

  Database& Objects(const std::string& level = kLevel) {
    Database& levels = *root_.Find<Database>("Levels");
    DataHandle<Database> levelDb = levels.Find<Database>(level);
    if (!levelDb) levelDb = levels.Add<Database>(level);
    DataHandle<Database> objects = levelDb->Find<Database>("GameObjects");
    if (!objects) objects = levelDb->Add<Database>("GameObjects");
    return *objects;
  }

  Database& MakeObject(const std::string& name, const BoxSpec& spec,
                       const std::string& level = kLevel) {
    Database& object = *Objects(level).Add<Database>(name);
    Database& transform = *object.Add<Database>("Transform");
    transform.Add<double>("PositionX", spec.position.x());
    transform.Add<double>("PositionY", spec.position.y());
    transform.Add<double>("PositionZ", spec.position.z());
    transform.Add<double>("RotationX", 0.0);
    transform.Add<double>("RotationY", spec.rotationY);
    transform.Add<double>("RotationZ", 0.0);
    transform.Add<Vector4>("Scale", Vector4{spec.scale.x(), spec.scale.y(), spec.scale.z(), 0});
    Database& body = *object.Add<Database>("Body");
    body.Add<Vector4>("ShapeScale", Vector4{0.5f, 0.5f, 0.5f, 0});
    body.Add<double>("ShapeOffsetX", spec.offset.x());
    body.Add<double>("ShapeOffsetY", spec.offset.y());
    body.Add<double>("ShapeOffsetZ", spec.offset.z());
    body.Add<int>("Static", spec.isStatic ? 1 : 0);
    if (spec.restitution) body.Add<double>("Restitution", *spec.restitution);
    if (spec.gravityFactor) body.Add<double>("GravityFactor", *spec.gravityFactor);
    return object;
  }

  // As a script's "SCR:CreateObject" announces a new object.
  void Announce(const std::string& name, const std::string& level = kLevel) {
    messages_.SendArgs("msgObjectCreated", Objects(level).Find<Database>(name), name, level);
    messages_.Deliver(MessageHandler::kDeliverAll);
  }

  Database& AddBody(const std::string& name, const BoxSpec& spec) {
    Database& object = MakeObject(name, spec);
    Announce(name);
    return object;
  }

  void Frames(int count) {
    for (int i = 0; i < count; ++i) {
      messages_.Deliver(MessageHandler::kDeliverAll);
      system_.Update(1.0f / 60.0f);
    }
    messages_.Deliver(MessageHandler::kDeliverAll);
  }

  Physics& Sim() { return *system_.Simulation(); }
  BodyRecord* Record(const std::string& name) { return Sim().RecordInCurrentLevel(name); }
  btRigidBody& Body(const std::string& name) {
    BodyRecord* record = Record(name);
    EXPECT_NE(record, nullptr) << name;
    return *record->Rigid();
  }
  btVector3 Centre(const std::string& name) {
    return Record(name)->pObject_->getWorldTransform().getOrigin();
  }
  Database& TransformOf(const std::string& name, const std::string& level = kLevel) {
    return *Objects(level).Find<Database>(name)->Find<Database>("Transform");
  }
  double Read(const std::string& name, const char* key) {
    return *TransformOf(name).Find<double>(key);
  }
  DataHandle<Database> Handle(const std::string& name) { return Objects().Find<Database>(name); }
  void SetPaused(bool paused) { *root_.Find<bool>("isGamePaused") = paused; }

  // Declared first so that the system, which reads them until it is destroyed, goes before them.
  Database root_;
  MessageHandler messages_;
  PhysicsInterface system_;
  std::vector<Collision> collisions_;
  std::string lifeCycle_;
};

inline constexpr float kFrameSeconds = 4.0f / 60.0f;
inline constexpr float kGravity = 15.0f;

}  // namespace grindle
