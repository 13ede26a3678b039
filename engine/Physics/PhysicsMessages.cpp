#include "Physics/PhysicsMessages.h"

#include <array>
#include <cstdio>
#include <memory>
#include <optional>
#include <string>

#include "Core/Messages/Catalogue.h"
#include "Core/Messages/RouteTable.h"
#include "Core/WellKnownKeys.h"
#include "Physics/Physics/DatabaseValues.h"

namespace grindle {
namespace {

// Numbers 1..N of a body request, narrowed to floats for the physics library.
template <size_t N>
bool RealArguments(MessageArgs args, std::string_view message, const char* expected,
                   std::array<float, N>& out) {
  for (size_t i = 0; i < N; ++i) {
    const std::optional<double> value = msg::Real::Read(args[static_cast<uint32_t>(i + 1)]);
    if (!value) {
      std::printf("Physics: %.*s expects (%s); ignored\n", static_cast<int>(message.size()),
                  message.data(), expected);
      return false;
    }
    out[i] = static_cast<float>(*value);
  }
  return true;
}

// The destroyed object's name, whether or not a level handle comes before it.
const std::string* FirstString(MessageArgs args) {
  for (uint32_t i = 0; i < args.count; ++i) {
    if (const std::string* text = msg::Text::Read(args[i])) return text;
  }
  return nullptr;
}

class Handlers {
 public:
  Handlers(Physics& physics, Database& root) : physics_(physics), root_(root) {}

  void ObjectCreated(MessageArgs args) {
    Database* object = msg::kObjectCreated.Read<0>(args).Get();
    if (object == nullptr) return;
    const std::string* name = msg::kObjectCreated.Read<1>(args);
    const std::string* level = msg::kObjectCreated.Read<2>(args);
    physics_.AddBody(*object, name != nullptr ? *name : object->Name(),
                     level != nullptr ? std::string_view(*level) : CurrentLevelName(root_));
  }

  void ObjectDestroyed(MessageArgs args) {
    const std::string* name = FirstString(args);
    if (name == nullptr) return;
    if (BodyRecord* record = physics_.RecordInCurrentLevel(*name)) {
      physics_.RemoveBody(record, true);
    }
  }

  void LoadLevel(MessageArgs args) {
    const std::string* level = msg::kMsgLoadLevel.Read<0>(args);
    if (level == nullptr) return;
    physics_.RemoveAllBodies();
    const Database* levels = FindDatabase(root_, KeyOf(WellKnown::Levels));
    const Database* levelDb =
        levels != nullptr ? FindDatabase(*levels, HashValue(*level)) : nullptr;
    const Database* objects =
        levelDb != nullptr ? FindDatabase(*levelDb, KeyOf(WellKnown::GameObjects)) : nullptr;
    if (objects == nullptr) return;
    for (const Database::Record& listed : objects->Records()) {
      MetaDatabaseEntry* live = objects->FindEntry(listed.name);
      // A replaced object leaves its name in the listing twice; only the live entry counts.
      if (live != listed.entry) continue;
      if (Database* object = FindDatabase(*objects, HashValue(listed.name))) {
        physics_.AddBody(*object, listed.name, *level);
      }
    }
  }

  void UnloadLevel() { physics_.RemoveAllBodies(); }

  void RemoveRotationalVelocity(MessageArgs args) {
    const std::string* name = msg::kRemoveRotationalVelocity.Read<0>(args);
    BodyRecord* record = name != nullptr ? physics_.RecordInCurrentLevel(*name) : nullptr;
    if (btRigidBody* body = record != nullptr ? record->Rigid() : nullptr) {
      body->setAngularVelocity(btVector3(0, 0, 0));
    }
  }

  // Also serves "msgAddImpulse": the velocity is replaced, never added to, which the game relies
  // on.
  void SetVelocity(MessageArgs args, std::string_view message) {
    btRigidBody* body = BodyOf(args);
    std::array<float, 3> v{};
    if (body == nullptr || !RealArguments(args, message, "object handle, x, y, z", v)) return;
    body->activate(true);
    body->setLinearVelocity(btVector3(v[0], v[1], v[2]));
  }

  void SetVelocityXZ(MessageArgs args) {
    btRigidBody* body = BodyOf(args);
    std::array<float, 2> v{};
    if (body == nullptr ||
        !RealArguments(args, msg::kSetBodyVelocityXZ.name, "object handle, x, z", v)) {
      return;
    }
    body->activate(true);
    body->setLinearVelocity(btVector3(v[0], body->getLinearVelocity().y(), v[1]));
  }

  void SetRotation(MessageArgs args) {
    Database* object = msg::kSetBodyRotation.Read<0>(args).Get();
    BodyRecord* record = object != nullptr ? physics_.RecordOf(*object) : nullptr;
    std::array<float, 4> v{};
    if (record == nullptr ||
        !RealArguments(args, msg::kSetBodyRotation.name, "object handle, axis x, y, z, angle", v)) {
      return;
    }
    const btVector3 axis(v[0], v[1], v[2]);
    if (axis.length2() == 0) {
      std::printf("Physics: %s for '%s' has no axis; ignored\n", msg::NameOf(msg::kSetBodyRotation),
                  record->sName_.c_str());
      return;
    }
    btTransform placed = record->pObject_->getWorldTransform();
    placed.setRotation(btQuaternion(axis.normalized(), v[3]));
    physics_.Teleport(*record, placed);
    if (Database* transform = FindDatabase(*object, KeyOf(WellKnown::Transform))) {
      WriteReal(*transform, WellKnown::RotationY, v[3]);
    }
  }

 private:
  btRigidBody* BodyOf(MessageArgs args) const {
    // Every body request carries its object first.
    const Database* object = msg::Object::Read(args[0]).Get();
    BodyRecord* record = object != nullptr ? physics_.RecordOf(*object) : nullptr;
    return record != nullptr ? record->Rigid() : nullptr;
  }

  Physics& physics_;
  Database& root_;
};

using msg::Route;

constexpr Route<Handlers> kRoutes[] = {
    {msg::kObjectCreated, [](Handlers& h, MessageArgs a) { h.ObjectCreated(a); }},
    {msg::kObjectDestroyed, [](Handlers& h, MessageArgs a) { h.ObjectDestroyed(a); }},
    {msg::kMsgLoadLevel, [](Handlers& h, MessageArgs a) { h.LoadLevel(a); }},
    {msg::kMsgUnloadLevel, [](Handlers& h, MessageArgs) { h.UnloadLevel(); }},
    {msg::kRemoveRotationalVelocity,
     [](Handlers& h, MessageArgs a) { h.RemoveRotationalVelocity(a); }},
    {msg::kSetBodyVelocity,
     [](Handlers& h, MessageArgs a) { h.SetVelocity(a, msg::kSetBodyVelocity.name); }},
    {msg::kSetBodyVelocityXZ, [](Handlers& h, MessageArgs a) { h.SetVelocityXZ(a); }},
    {msg::kAddImpulse, [](Handlers& h, MessageArgs a) { h.SetVelocity(a, msg::kAddImpulse.name); }},
    {msg::kSetBodyRotation, [](Handlers& h, MessageArgs a) { h.SetRotation(a); }},
};

constexpr msg::RouteTable<Handlers> kTable{"Physics", kRoutes};

}  // namespace

void ListenToPhysicsMessages(MessageHandler& messages, Physics& physics, Database& root) {
  kTable.Listen(messages, std::make_shared<Handlers>(physics, root));
}

void StopListeningToPhysicsMessages(MessageHandler& messages) { kTable.UnListen(messages); }

}  // namespace grindle
