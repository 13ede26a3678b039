#include <BulletCollision/CollisionDispatch/btCollisionWorld.h>

#include <cmath>

#include "Physics/Physics/Physics.h"

namespace grindle {
namespace {

constexpr float kRayLength = 200.0f;

// Phantoms are trigger volumes: rays pass through them.
struct SolidClosestHit final : btCollisionWorld::ClosestRayResultCallback {
  SolidClosestHit(const btVector3& from, const btVector3& to)
      : ClosestRayResultCallback(from, to) {}
  bool needsCollision(btBroadphaseProxy* proxy) const override {
    const auto* object = static_cast<const btCollisionObject*>(proxy->m_clientObject);
    if (object->getInternalType() == btCollisionObject::CO_GHOST_OBJECT) return false;
    return ClosestRayResultCallback::needsCollision(proxy);
  }
};

}  // namespace

RayHit Physics::CastRay(const btVector3& origin, const btVector3& direction) const {
  RayHit hit;
  const btScalar length = direction.length();
  // A zero direction stays zero: a ray of no length hits nothing.
  if (!pWorld_ || length == 0 || !std::isfinite(length)) return hit;
  const btVector3 to = origin + direction / length * kRayLength;
  SolidClosestHit closest(origin, to);
  pWorld_->Dynamics().rayTest(origin, to, closest);
  if (!closest.hasHit()) return hit;
  hit.distance = static_cast<double>(closest.m_closestHitFraction) * kRayLength;
  hit.name = NameOf(closest.m_collisionObject);
  return hit;
}

}  // namespace grindle
