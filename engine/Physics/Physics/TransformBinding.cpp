#include "Physics/Physics/TransformBinding.h"

#include "Core/WellKnownKeys.h"
#include "Physics/Physics/DatabaseValues.h"

namespace grindle {
namespace {

constexpr WellKnown kPositionKeys[3] = {WellKnown::PositionX, WellKnown::PositionY,
                                        WellKnown::PositionZ};

template <class T>
DataHandle<T> FindOrAdd(Database& transform, WellKnown name, const T& value) {
  DataHandle<T> entry = transform.Find<T>(KeyOf(name));
  if (!entry) entry = transform.Add<T>(kWellKnownKeyNames[static_cast<size_t>(name)], value);
  return entry;
}

DataHandle<double> BindReal(Database& transform, WellKnown name, double fallback) {
  // A value a file stored as float or int is kept, as a double.
  return FindOrAdd<double>(transform, name, ReadReal(transform, KeyOf(name), fallback));
}

}  // namespace

void TransformBinding::Bind(Database& transform, const double position[3], double yaw) {
  Unbind();
  for (int axis = 0; axis < 3; ++axis) {
    dhPosition_[axis] = BindReal(transform, kPositionKeys[axis], position[axis]);
  }
  dhYaw_ = BindReal(transform, WellKnown::RotationY, yaw);
  dhRotation_ = FindOrAdd<glm::mat4>(transform, WellKnown::Rotation, glm::mat4(1.0f));
  // Tracked where they are kept, not in the temporaries that found them.
  for (DataHandle<double>& axis : dhPosition_) axis.TrackEntry();
  dhYaw_.TrackEntry();
  dhRotation_.TrackEntry();
}

void TransformBinding::Unbind() {
  for (DataHandle<double>& axis : dhPosition_) axis.UntrackEntry();
  dhYaw_.UntrackEntry();
  dhRotation_.UntrackEntry();
  for (DataHandle<double>& axis : dhPosition_) axis = {};
  dhYaw_ = {};
  dhRotation_ = {};
}

}  // namespace grindle
