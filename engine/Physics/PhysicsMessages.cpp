#include "Physics/PhysicsMessages.h"

#include <array>
#include <cstdio>
#include <memory>
#include <string>

#include "Core/WellKnownKeys.h"
#include "Physics/Physics/DatabaseValues.h"

namespace grindle {
namespace {

constexpr const char* kOwner = "Physics";

Database* ObjectArgument(MessageArgs args) {
  const DataHandle<Database>* handle = args.Get<DataHandle<Database>>(0);
  return handle != nullptr ? handle->Get() : nullptr;
}

const std::string* StringArgument(MessageArgs args, uint32_t index) {
  return args.Get<std::string>(index);
}

// Reals travel as doubles; a sender in C++ may pass a float or an int.
bool RealArgument(MessageArgs args, uint32_t index, float& out) {
  if (const double* value = args.Get<double>(index)) {
    out = static_cast<float>(*value);
  } else if (const float* single = args.Get<float>(index)) {
    out = *single;
  } else if (const int* whole = args.Get<int>(index)) {
    out = static_cast<float>(*whole);
  } else {
    return false;
  }
  return true;
}

template <size_t N>
bool RealArguments(MessageArgs args, const char* message, const char* expected,
                   std::array<float, N>& out) {
  for (size_t i = 0; i < N; ++i) {
    if (!RealArgument(args, static_cast<uint32_t>(i + 1), out[i])) {
      std::printf("Physics: %s expects (%s); ignored\n", message, expected);
      return false;
    }
  }
  return true;
}

// The destroyed object's name, whether or not a level handle comes before it.
const std::string* FirstString(MessageArgs args) {
  for (uint32_t i = 0; i < args.count; ++i) {
    if (const std::string* text = StringArgument(args, i)) return text;
  }
  return nullptr;
}

class Handlers {
 public:
  Handlers(Physics& physics, Database& root) : physics_(physics), root_(root) {}

  void ObjectCreated(MessageArgs args) {
    Database* object = ObjectArgument(args);
    if (object == nullptr) return;
    const std::string* name = StringArgument(args, 1);
    const std::string* level = StringArgument(args, 2);
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
    const std::string* level = StringArgument(args, 0);
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
    const std::string* name = StringArgument(args, 0);
    BodyRecord* record = name != nullptr ? physics_.RecordInCurrentLevel(*name) : nullptr;
    if (btRigidBody* body = record != nullptr ? record->Rigid() : nullptr) {
      body->setAngularVelocity(btVector3(0, 0, 0));
    }
  }

  // Also serves "msgAddImpulse": the velocity is replaced, never added to, which the game relies
  // on.
  void SetVelocity(MessageArgs args, const char* message) {
    btRigidBody* body = BodyOf(args);
    std::array<float, 3> v{};
    if (body == nullptr || !RealArguments(args, message, "object handle, x, y, z", v)) return;
    body->activate(true);
    body->setLinearVelocity(btVector3(v[0], v[1], v[2]));
  }

  void SetVelocityXZ(MessageArgs args) {
    btRigidBody* body = BodyOf(args);
    std::array<float, 2> v{};
    if (body == nullptr || !RealArguments(args, "msgSetBodyVelocityXZ", "object handle, x, z", v)) {
      return;
    }
    body->activate(true);
    body->setLinearVelocity(btVector3(v[0], body->getLinearVelocity().y(), v[1]));
  }

  void SetRotation(MessageArgs args) {
    Database* object = ObjectArgument(args);
    BodyRecord* record = object != nullptr ? physics_.RecordOf(*object) : nullptr;
    std::array<float, 4> v{};
    if (record == nullptr ||
        !RealArguments(args, "msgSetBodyRotation", "object handle, axis x, y, z, angle", v)) {
      return;
    }
    const btVector3 axis(v[0], v[1], v[2]);
    if (axis.length2() == 0) {
      std::printf("Physics: msgSetBodyRotation for '%s' has no axis; ignored\n",
                  record->sName_.c_str());
      return;
    }
    btTransform placed = record->pObject_->getWorldTransform();
    placed.setRotation(btQuaternion(axis.normalized(), v[3]));
    record->pObject_->setWorldTransform(placed);
    if (Database* transform = FindDatabase(*object, KeyOf(WellKnown::Transform))) {
      WriteReal(*transform, WellKnown::RotationY, v[3]);
    }
  }

 private:
  btRigidBody* BodyOf(MessageArgs args) const {
    const Database* object = ObjectArgument(args);
    BodyRecord* record = object != nullptr ? physics_.RecordOf(*object) : nullptr;
    return record != nullptr ? record->Rigid() : nullptr;
  }

  Physics& physics_;
  Database& root_;
};

struct Route {
  const char* name;
  void (*call)(Handlers&, MessageArgs);
};

constexpr Route kRoutes[] = {
    {"msgObjectCreated", [](Handlers& h, MessageArgs a) { h.ObjectCreated(a); }},
    {"msgObjectDestroyed", [](Handlers& h, MessageArgs a) { h.ObjectDestroyed(a); }},
    {"msgLoadLevel", [](Handlers& h, MessageArgs a) { h.LoadLevel(a); }},
    {"msgUnloadLevel", [](Handlers& h, MessageArgs) { h.UnloadLevel(); }},
    {"msgRemoveRotationalVelocity",
     [](Handlers& h, MessageArgs a) { h.RemoveRotationalVelocity(a); }},
    {"msgSetBodyVelocity",
     [](Handlers& h, MessageArgs a) { h.SetVelocity(a, "msgSetBodyVelocity"); }},
    {"msgSetBodyVelocityXZ", [](Handlers& h, MessageArgs a) { h.SetVelocityXZ(a); }},
    {"msgAddImpulse", [](Handlers& h, MessageArgs a) { h.SetVelocity(a, "msgAddImpulse"); }},
    {"msgSetBodyRotation", [](Handlers& h, MessageArgs a) { h.SetRotation(a); }},
};

}  // namespace

void ListenToPhysicsMessages(MessageHandler& messages, Physics& physics, Database& root) {
  // Shared by every listener; lives as long as the longest of them.
  const auto handlers = std::make_shared<Handlers>(physics, root);
  for (const Route& route : kRoutes) {
    messages.Listen(route.name, kOwner,
                    [handlers, call = route.call](MessageArgs args) { call(*handlers, args); });
  }
}

void StopListeningToPhysicsMessages(MessageHandler& messages) {
  for (const Route& route : kRoutes) messages.UnListen(route.name, kOwner);
}

}  // namespace grindle
