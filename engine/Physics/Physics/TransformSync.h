// Keeps a body and its object's "Transform" in step around the world's steps: before, the body is
// put where the database says (position + shape offset, yaw "RotationY" only); after, the database
// takes the body's position, rotation matrix and yaw. Main thread only; static bodies are never
// synchronised. Slots found before the steps are used after them: nothing else runs in between.
#pragma once

#include "Core/Database.h"
#include "Physics/Physics/BodyRecord.h"

namespace grindle {

struct TransformSlots {
  Database* pTransform_ = nullptr;  // null: the object is gone, skip the body this frame
  DataHandle<double> dhPosition_[3];
  DataHandle<double> dhYaw_;
};

// Finds the entries a frame reads and writes, storing them as doubles where a file left another
// kind (the write-back stores doubles anyway).
void BindTransform(Database& transform, const BodyRecord& record, TransformSlots& slots);
void PushToBody(BodyRecord& record, const TransformSlots& slots);
void PullFromBody(const BodyRecord& record, const TransformSlots& slots);

// The yaw read back from an orientation. Through asin it always lies in -pi/2 .. pi/2: a body
// turned past a quarter turn reads back folded, which scripts have been written against.
double YawOf(const btQuaternion& orientation);

}  // namespace grindle
