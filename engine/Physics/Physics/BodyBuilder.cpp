#include "Physics/Physics/BodyBuilder.h"

#include <BulletCollision/CollisionDispatch/btGhostObject.h>

#include <cmath>
#include <cstdio>
#include <string>

#include "Core/WellKnownKeys.h"
#include "Physics/Physics/DatabaseValues.h"
#include "Physics/Physics/PhysicsWorld.h"

namespace grindle {
namespace {

constexpr std::string_view kPotato = "Potato";

struct BodyDescription {
  btVector3 position;  // the body centre: the transform position as read
  btVector3 offset;
  btQuaternion orientation;
  btVector3 halfExtents;
  bool isStatic;
  double gravityFactor;
  double restitution;
};

btVector3 ReadOffset(const Database& body) {
  return btVector3(static_cast<float>(ReadReal(body, KeyOf(WellKnown::ShapeOffsetX), 0.0)),
                   static_cast<float>(ReadReal(body, KeyOf(WellKnown::ShapeOffsetY), 0.0)),
                   static_cast<float>(ReadReal(body, KeyOf(WellKnown::ShapeOffsetZ), 0.0)));
}

// A scale of (1, 1, 1) when missing; when written as something other than a vector, the same, with
// a report naming the object and the key.
btVector3 ReadScale(const Database& group, WellKnown key, std::string_view object) {
  if (const std::optional<btVector3> scale = ReadVector3(group, KeyOf(key))) return *scale;
  if (group.FindEntry(KeyOf(key)) != nullptr) {
    PrintReport("Physics: object '" + std::string(object) +
                "': " + kWellKnownKeyNames[static_cast<size_t>(key)] +
                " must be a vec4 or an xmfloat4; 1 1 1 is used\n");
  }
  return btVector3(1, 1, 1);
}

// Yaw, then pitch, then roll, as the renderer's Euler angles read.
btQuaternion ReadOrientation(const Database& transform) {
  const auto angle = [&](WellKnown key) {
    return static_cast<float>(ReadReal(transform, KeyOf(key), 0.0));
  };
  const btQuaternion aboutX(btVector3(1, 0, 0), angle(WellKnown::RotationX));
  const btQuaternion aboutY(btVector3(0, 1, 0), angle(WellKnown::RotationY));
  const btQuaternion aboutZ(btVector3(0, 0, 1), angle(WellKnown::RotationZ));
  return aboutY * aboutX * aboutZ;
}

BodyDescription Describe(Database& transform, const Database& body, std::string_view name) {
  BodyDescription d;
  d.offset = ReadOffset(body);
  d.position = btVector3(static_cast<float>(ReadReal(transform, KeyOf(WellKnown::PositionX), 0.0)),
                         static_cast<float>(ReadReal(transform, KeyOf(WellKnown::PositionY), 0.0)),
                         static_cast<float>(ReadReal(transform, KeyOf(WellKnown::PositionZ), 0.0)));
  const btVector3 moved = d.position - d.offset;
  WriteReal(transform, WellKnown::PositionX, moved.x());
  WriteReal(transform, WellKnown::PositionY, moved.y());
  WriteReal(transform, WellKnown::PositionZ, moved.z());

  d.orientation = ReadOrientation(transform);
  WriteRotation(transform, btMatrix3x3(d.orientation));

  d.halfExtents =
      (ReadScale(transform, WellKnown::Scale, name) * ReadScale(body, WellKnown::ShapeScale, name))
          .absolute();
  d.isStatic = ReadFlag(body, KeyOf(WellKnown::Static));
  d.gravityFactor = ReadReal(body, KeyOf(WellKnown::GravityFactor), 1.0);
  if (body.FindEntry(KeyOf(WellKnown::Restitution)) != nullptr) {
    d.restitution = ReadReal(body, KeyOf(WellKnown::Restitution), 0.0);
  } else if (name == kPotato || d.isStatic) {
    // The potato bounces forever and floats until a script moves it.
    d.restitution = kDefaultBounce;
    d.gravityFactor = 0.0;
  } else {
    d.restitution = 0.0;
  }
  return d;
}

void ReportOutsideWorld(std::string_view name, const btVector3& position) {
  const float limit = kWorldSize / 2;
  if (std::fabs(position.x()) <= limit && std::fabs(position.y()) <= limit &&
      std::fabs(position.z()) <= limit) {
    return;
  }
  const std::string text = "Physics: body '" + std::string(name) +
                           "' starts outside the 200-unit world cube and will not collide there\n";
  PrintReport(text);
}

void MakePhantom(BodyRecord& record, const BodyDescription& d) {
  record.pPhantomShape_ = std::make_unique<btCompoundShape>();
  record.pPhantomShape_->addChildShape(btTransform(btQuaternion::getIdentity(), d.offset),
                                       record.pBox_.get());
  auto ghost = std::make_unique<btGhostObject>();
  ghost->setCollisionShape(record.pPhantomShape_.get());
  ghost->setCollisionFlags(ghost->getCollisionFlags() | btCollisionObject::CF_NO_CONTACT_RESPONSE);
  ghost->forceActivationState(DISABLE_DEACTIVATION);
  ghost->setWorldTransform(btTransform(d.orientation, d.position));
  record.pObject_ = std::move(ghost);
}

void MakeRigidBody(BodyRecord& record, const BodyDescription& d, bool spins,
                   const btVector3& gravity) {
  const float mass = d.isStatic ? 0.0f : 1.0f;
  btVector3 inertia(0, 0, 0);
  if (!d.isStatic) record.pBox_->calculateLocalInertia(mass, inertia);
  btRigidBody::btRigidBodyConstructionInfo info(mass, nullptr, record.pBox_.get(), inertia);
  info.m_startWorldTransform = btTransform(d.orientation, d.position);
  info.m_restitution = static_cast<float>(d.restitution);
  auto body = std::make_unique<btRigidBody>(info);

  body->setFlags(body->getFlags() | BT_DISABLE_WORLD_GRAVITY);
  body->setGravity(gravity * static_cast<float>(d.gravityFactor));
  // Ordinary objects never tip over or turn; potatoes and missiles turn about the vertical only.
  body->setAngularFactor(btVector3(0, spins ? 1.0f : 0.0f, 0));
  if (!d.isStatic) {
    // Fast game objects must not pass through thin walls between two steps.
    const btVector3 extents = record.pBox_->getHalfExtentsWithMargin();
    const float smallest = extents[extents.minAxis()];
    body->setCcdMotionThreshold(smallest);
    body->setCcdSweptSphereRadius(smallest * 0.5f);
  }
  record.pObject_ = std::move(body);
}

}  // namespace

bool IsPhantomName(std::string_view name) { return name.find("PowerUp") != std::string_view::npos; }

bool SpinsAboutVertical(std::string_view name) {
  return name == kPotato || name.find("Missile") != std::string_view::npos;
}

std::unique_ptr<BodyRecord> BuildBody(Database& object, std::string_view name,
                                      std::string_view level, const btVector3& gravity) {
  Database* body = FindDatabase(object, KeyOf(WellKnown::Body));
  if (body == nullptr) return nullptr;
  Database* transform = FindDatabase(object, KeyOf(WellKnown::Transform));
  if (transform == nullptr) {
    const std::string text = "Physics: object '" + std::string(name) + "' of level '" +
                             std::string(level) +
                             "' has a Body but no Transform; it gets no body\n";
    PrintReport(text);
    return nullptr;
  }

  const BodyDescription d = Describe(*transform, *body, name);
  if (!IsFinite(d.position) || !IsFinite(d.halfExtents) || !IsFinite(d.orientation)) {
    PrintReport("Physics: object '" + std::string(name) + "' of level '" + std::string(level) +
                "' has a position, scale or rotation that is not a finite number; it gets no "
                "body\n");
    return nullptr;
  }
  ReportOutsideWorld(name, d.position);

  auto record = std::make_unique<BodyRecord>();
  record->sName_ = std::string(name);
  record->uLevelKey_ = HashValue(level);
  record->uObjectKey_ = HashValue(name);
  record->vOffset_ = d.offset;
  record->isStatic_ = d.isStatic;
  record->pBox_ = std::make_unique<btBoxShape>(d.halfExtents);
  // A box thinner than the radius keeps the smaller margin the library chose for it.
  if (d.halfExtents[d.halfExtents.minAxis()] >= kConvexRadius) {
    record->pBox_->setMargin(kConvexRadius);
  }

  if (IsPhantomName(name)) {
    MakePhantom(*record, d);
  } else {
    MakeRigidBody(*record, d, SpinsAboutVertical(name), gravity);
  }
  return record;
}

}  // namespace grindle
