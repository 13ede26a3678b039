#include "Physics/Physics/TransformSync.h"

#include <algorithm>
#include <cmath>

#include "Core/WellKnownKeys.h"
#include "Physics/Physics/DatabaseValues.h"

namespace grindle {

void PushToBody(BodyRecord& record, const Database& object) {
  const Database* transform = FindDatabase(object, KeyOf(WellKnown::Transform));
  if (transform == nullptr) return;
  btCollisionObject& body = *record.pObject_;
  const btVector3 current = body.getWorldTransform().getOrigin() - record.vOffset_;
  const btVector3 position(
      static_cast<float>(ReadReal(*transform, KeyOf(WellKnown::PositionX), current.x())),
      static_cast<float>(ReadReal(*transform, KeyOf(WellKnown::PositionY), current.y())),
      static_cast<float>(ReadReal(*transform, KeyOf(WellKnown::PositionZ), current.z())));
  const float yaw = static_cast<float>(ReadReal(*transform, KeyOf(WellKnown::RotationY), 0.0));
  const btTransform placed(btQuaternion(btVector3(0, 1, 0), yaw), position + record.vOffset_);
  body.setWorldTransform(placed);
  body.setInterpolationWorldTransform(placed);
}

void PullFromBody(const BodyRecord& record, Database& object) {
  Database* transform = FindDatabase(object, KeyOf(WellKnown::Transform));
  if (transform == nullptr) return;
  const btTransform& placed = record.pObject_->getWorldTransform();
  const btVector3 position = placed.getOrigin() - record.vOffset_;
  WriteReal(*transform, WellKnown::PositionX, position.x());
  WriteReal(*transform, WellKnown::PositionY, position.y());
  WriteReal(*transform, WellKnown::PositionZ, position.z());
  WriteRotation(*transform, placed.getBasis());
  WriteReal(*transform, WellKnown::RotationY, YawOf(placed.getRotation()));
}

double YawOf(const btQuaternion& q) {
  const double sine = 2.0 * (static_cast<double>(q.w()) * q.y() - static_cast<double>(q.z()) * q.x());
  // Rounding can carry a quarter turn just past 1, where asin has no value.
  return std::asin(std::clamp(sine, -1.0, 1.0));
}

}  // namespace grindle
