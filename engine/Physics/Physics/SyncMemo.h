// What one body's synchronisation left behind, so that a body at rest costs a few compares: the
// body's transform at the last write-back and the values (position x, y, z and yaw) it wrote.
// Putting a body where the database says is a function of those four values and the body's
// transform alone, and writing back a function of the transform alone: when both are bit for bit
// what the last frame had, so is the outcome. Owned by a body record; cleared whenever the record
// is bound to other entries.
#pragma once

#include <btBulletDynamicsCommon.h>

namespace grindle {

struct SyncMemo {
  btTransform pulledFrom = btTransform::getIdentity();
  double pulledValues[4] = {};
  bool hasPull = false;
  // A push on exactly those values and that transform changed nothing.
  bool isPushIdle = false;
  // This frame's push found exactly those values and that transform: unless the steps move the
  // body, the database already holds what the write-back would write.
  bool isUntouched = false;
};

}  // namespace grindle
