// A started physics system in a real root database with a real message handler, and helpers that
// lay objects out as level files do (Levels.<level>.GameObjects.<object> with Transform and Body
// groups of doubles and vec4 scales) and announce them the way the level manager and scripts do.
#pragma once

#include <gtest/gtest.h>

#include <optional>
#include <ostream>
#include <string>
#include <vector>

#include "Core/Database.h"
#include "Core/MathTypes.h"
#include "Core/MessageHandler.h"
#include "Core/WellKnownKeys.h"
#include "Physics/Physics/Physics.h"
#include "Physics/PhysicsLibraryInterface.h"
#include "SystemRig.h"

inline void PrintTo(const btVector3& v, std::ostream* os) {
  *os << "(" << v.x() << ", " << v.y() << ", " << v.z() << ")";
}

namespace grindle {

inline testing::AssertionResult Near(const btVector3& a, const btVector3& b,
                                     float tolerance = 1e-5f) {
  if ((a - b).length() <= tolerance) return testing::AssertionSuccess();
  return testing::AssertionFailure() << testing::PrintToString(a) << " is further than "
                                     << tolerance << " from " << testing::PrintToString(b);
}

struct BoxSetup {
  btVector3 position{0, 0, 0};
  // With the ShapeScale 0.5 every object is given: twice the half extents.
  btVector3 scale{1, 1, 1};
  btVector3 offset{0, 0, 0};
  double rotationY = 0.0;
  bool isStatic = false;
  std::optional<double> restitution{};
  std::optional<double> gravityFactor{};
};

struct Collision {
  std::string message;
  std::string first;
  std::string second;
  bool operator==(const Collision&) const = default;
};

inline constexpr float kFrameSeconds = 4.0f / 60.0f;
inline constexpr float kGravity = 15.0f;

class PhysicsTest : public testing::Test {
 protected:
  static constexpr const char* kLevel = "Arena";

  PhysicsTest() {
    InternWellKnownKeys();
    test::PublishHandler(root_, messages_);
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
    lifeCycle_ = test::StartSystem(system_, root_);
  }

  void TearDown() override { test::StopSystem(system_); }

  Database& Objects(const std::string& level = kLevel) {
    Database& levels = *root_.Find<Database>("Levels");
    DataHandle<Database> levelDb = levels.Find<Database>(level);
    if (!levelDb) levelDb = levels.Add<Database>(level);
    DataHandle<Database> objects = levelDb->Find<Database>("GameObjects");
    return objects ? *objects : *levelDb->Add<Database>("GameObjects");
  }

  Database& MakeObject(const std::string& name, const BoxSetup& box,
                       const std::string& level = kLevel) {
    Database& object = *Objects(level).Add<Database>(name);
    Database& transform = *object.Add<Database>("Transform");
    Database& body = *object.Add<Database>("Body");
    for (int i = 0; i < 3; ++i) {
      const std::string axis(1, "XYZ"[i]);
      transform.Add<double>("Position" + axis, box.position[i]);
      body.Add<double>("ShapeOffset" + axis, box.offset[i]);
    }
    transform.Add<double>("RotationY", box.rotationY);
    transform.Add<Vector4>("Scale", Vector4{box.scale.x(), box.scale.y(), box.scale.z(), 0});
    body.Add<Vector4>("ShapeScale", Vector4{0.5f, 0.5f, 0.5f, 0});
    body.Add<int>("Static", box.isStatic ? 1 : 0);
    if (box.restitution) body.Add<double>("Restitution", *box.restitution);
    if (box.gravityFactor) body.Add<double>("GravityFactor", *box.gravityFactor);
    return object;
  }

  // As a script's "SCR:CreateObject" announces a new object.
  void Announce(const std::string& name, const std::string& level = kLevel) {
    messages_.SendArgs("msgObjectCreated", Objects(level).Find<Database>(name), name, level);
    messages_.Deliver(MessageHandler::kDeliverAll);
  }

  Database& AddBody(const std::string& name, const BoxSetup& box) {
    Database& object = MakeObject(name, box);
    Announce(name);
    return object;
  }
  // Its top face at y = 0.5.
  void AddFloor() { AddBody("Floor", {.scale = {40, 1, 40}, .isStatic = true}); }

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
    EXPECT_NE(Record(name), nullptr) << name;
    return *Record(name)->Rigid();
  }
  btVector3 Centre(const std::string& name) {
    return Record(name)->pObject_->getWorldTransform().getOrigin();
  }
  Database& TransformOf(const std::string& name, const std::string& level = kLevel) {
    return *Objects(level).Find<Database>(name)->Find<Database>("Transform");
  }
  double& Field(const std::string& name, const char* key, const std::string& level = kLevel) {
    return *TransformOf(name, level).Find<double>(key);
  }
  btVector3 Position(const std::string& name) {
    return btVector3(Field(name, "PositionX"), Field(name, "PositionY"), Field(name, "PositionZ"));
  }
  DataHandle<Database> Handle(const std::string& name) { return Objects().Find<Database>(name); }
  DataHandle<BodyRecord*> BackPointer(const std::string& name, const std::string& level = kLevel) {
    return Objects(level).Find<Database>(name)->Find<Database>("Body")->Find<BodyRecord*>(
        "BodyGetBack");
  }

  // Declared first so that the system, which reads them until it is destroyed, goes before them.
  Database root_;
  MessageHandler messages_;
  PhysicsInterface system_;
  std::vector<Collision> collisions_;
  std::string lifeCycle_;
};

}  // namespace grindle
