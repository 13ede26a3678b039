// The entries of an object's "Transform" that a body reads and writes every frame, found once and
// kept: each handle is tracked by its entry, which clears it when it is removed or replaced (and
// so when its transform, object or level goes). Owned by a body record; main thread only.
// Invariant: a bound handle is on its entry's list for exactly as long as it is non-null here.
#pragma once

#include <glm/glm.hpp>

#include "Core/Database.h"

namespace grindle {

class TransformBinding {
 public:
  TransformBinding() = default;
  ~TransformBinding() { Unbind(); }
  TransformBinding(const TransformBinding&) = delete;
  TransformBinding& operator=(const TransformBinding&) = delete;

  // True while every entry bound last is still the one in the database.
  bool IsBound() const {
    return dhPosition_[0] && dhPosition_[1] && dhPosition_[2] && dhYaw_ && dhRotation_;
  }
  // Binds to `transform`, storing the position, "RotationY" and "Rotation" entries in the kinds a
  // frame writes (doubles, a matrix) where missing or stored as another kind. `position` fills a
  // missing position axis, `yaw` a missing yaw.
  void Bind(Database& transform, const double position[3], double yaw);
  void Unbind();

  DataHandle<double> dhPosition_[3];
  DataHandle<double> dhYaw_;
  DataHandle<glm::mat4> dhRotation_;
};

}  // namespace grindle
