// Keeps a body and its object's "Transform" in step around the world's steps: before, the body is
// put where the database says (position + shape offset, yaw "RotationY" only); after, the database
// takes the body's position, rotation matrix and yaw. Main thread only; static bodies are never
// synchronised.
#pragma once

#include "Core/Database.h"
#include "Physics/Physics/BodyRecord.h"

namespace grindle {

void PushToBody(BodyRecord& record, const Database& object);
void PullFromBody(const BodyRecord& record, Database& object);

// The yaw read back from an orientation. Through asin it always lies in -pi/2 .. pi/2: a body turned
// past a quarter turn reads back folded, which scripts have been written against.
double YawOf(const btQuaternion& orientation);

}  // namespace grindle
