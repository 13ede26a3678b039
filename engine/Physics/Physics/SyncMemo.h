// What one body's synchronisation saw and did last frame, so that a body at rest costs a few
// compares: putting a body where the database says is a function of the four bound values and the
// body's transform alone, and reading it back a function of the transform alone. When both inputs
// are bit for bit what they were, the outcome is what it was. Owned by a body record; cleared
// whenever the record is bound to other entries.
#pragma once

#include <btBulletDynamicsCommon.h>

namespace grindle {

struct SyncMemo {
  // Inputs of the last push that changed nothing: position x, y, z and yaw as read, and the
  // transform the body had.
  double pushedValues[4] = {};
  btTransform pushedFrom = btTransform::getIdentity();
  bool hasIdlePush = false;

  // The transform last read back and the yaw it gave: the yaw alone costs a square root and an
  // arc sine.
  btTransform pulledFrom = btTransform::getIdentity();
  double pulledYaw = 0.0;
  bool hasPull = false;
};

}  // namespace grindle
