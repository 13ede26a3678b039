// Keeps a body and its object's "Transform" in step around the world's steps: before, the body is
// put where the database says (position + shape offset, yaw "RotationY" only); after, the database
// takes the body's position, rotation matrix and yaw. Main thread only; static bodies are never
// synchronised. A body works through its record's bound entries, found again only when the
// database has replaced or removed one of them.
#pragma once

#include "Core/Database.h"
#include "Physics/Physics/BodyRecord.h"
#include "Physics/Physics/PhysicsWorld.h"

namespace grindle {

// Binds the record to the entries of `transform`, storing them as doubles where a file left
// another kind (the write-back stores doubles anyway).
void BindTransform(Database& transform, BodyRecord& record);
// Both need a bound record.
void PushToBody(BodyRecord& record, PhysicsWorld& world);
void PullFromBody(BodyRecord& record);

// The yaw read back from an orientation. Through asin it always lies in -pi/2 .. pi/2: a body
// turned past a quarter turn reads back folded, which scripts have been written against.
double YawOf(const btQuaternion& orientation);

}  // namespace grindle
