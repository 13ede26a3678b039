#include "Physics/Physics/TransformSync.h"

#include <algorithm>
#include <cmath>
#include <cstring>

#include "Physics/Physics/DatabaseValues.h"

namespace grindle {
namespace {

// Below these, a difference between the database and the body is the rounding of the last
// write-back, not a move.
constexpr float kMoveTolerance = 1e-4f;
constexpr float kTurnTolerance = 1e-6f;

}  // namespace

void BindTransform(Database& transform, BodyRecord& record) {
  const btVector3 current = record.pObject_->getWorldTransform().getOrigin() - record.vOffset_;
  const double position[3] = {current.x(), current.y(), current.z()};
  record.binding_.Bind(transform, position, 0.0);
  record.memo_ = SyncMemo{};
}

namespace {

bool SameBits(const double a[4], const double b[4]) { return std::memcmp(a, b, 4 * sizeof(double)) == 0; }

bool SameBits(const btTransform& a, const btTransform& b) {
  return std::memcmp(&a, &b, sizeof(btTransform)) == 0;
}

}  // namespace

void PushToBody(BodyRecord& record, PhysicsWorld& world) {
  const TransformBinding& bound = record.binding_;
  SyncMemo& memo = record.memo_;
  const double values[4] = {*bound.dhPosition_[0], *bound.dhPosition_[1], *bound.dhPosition_[2],
                            *bound.dhYaw_};
  btCollisionObject& body = *record.pObject_;
  const btTransform& now = body.getWorldTransform();
  const bool asPulled =
      memo.hasPull && SameBits(values, memo.pulledValues) && SameBits(now, memo.pulledFrom);
  memo.isUntouched = asPulled && memo.isPushIdle;
  if (memo.isUntouched) return;
  const btVector3 position(static_cast<float>(values[0]), static_cast<float>(values[1]),
                           static_cast<float>(values[2]));
  const btQuaternion yaw(btVector3(0, 1, 0), static_cast<float>(values[3]));
  // A script that wrote a NaN or an infinity does not get to break the world: the body stays, and
  // the write-back replaces the bad values.
  if (!IsFinite(position) || !IsFinite(yaw)) return;
  const btTransform placed(yaw, position + record.vOffset_);
  const bool moved =
      (now.getOrigin() - placed.getOrigin()).length2() > kMoveTolerance * kMoveTolerance ||
      std::fabs(now.getRotation().dot(placed.getRotation())) < 1.0f - kTurnTolerance;
  memo.isPushIdle = asPulled && !moved && placed == now;
  // A sleeping body that a script moves must wake, or it would hang where it was put.
  if (moved) body.activate();
  if (placed == now) return;
  world.Teleport(body, placed);
  body.setInterpolationWorldTransform(placed);
}

void PullFromBody(BodyRecord& record) {
  const TransformBinding& bound = record.binding_;
  SyncMemo& memo = record.memo_;
  const btTransform& placed = record.pObject_->getWorldTransform();
  const bool moved = !memo.hasPull || !SameBits(placed, memo.pulledFrom);
  // Only this system writes the rotation matrix in place (a script that sets "Rotation" replaces
  // the entry, which rebinds the record), so an untouched body's entries already hold all of it.
  if (memo.isUntouched && !moved) return;
  if (moved) {
    const btVector3 position = placed.getOrigin() - record.vOffset_;
    memo.pulledFrom = placed;
    memo.pulledValues[0] = position.x();
    memo.pulledValues[1] = position.y();
    memo.pulledValues[2] = position.z();
    memo.pulledValues[3] = YawOf(placed.getRotation());
    memo.hasPull = true;
    memo.isPushIdle = false;
  }
  for (int axis = 0; axis < 3; ++axis) *bound.dhPosition_[axis] = memo.pulledValues[axis];
  *bound.dhYaw_ = memo.pulledValues[3];
  WriteRotation(*bound.dhRotation_, placed.getBasis());
}

double YawOf(const btQuaternion& q) {
  const double sine =
      2.0 * (static_cast<double>(q.w()) * q.y() - static_cast<double>(q.z()) * q.x());
  // Rounding can carry a quarter turn just past 1, where asin has no value.
  return std::asin(std::clamp(sine, -1.0, 1.0));
}

}  // namespace grindle
