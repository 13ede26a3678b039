// Turns an object's "Transform" and "Body" groups into a body record with its library objects:
// the box (or power-up phantom), mass, restitution, gravity factor and rotation locks. Rewrites the
// transform position so that transform + shape offset is the body centre, and writes "Rotation".
// Main thread only. The record is not yet in any world or list.
#pragma once

#include <memory>
#include <string_view>

#include "Core/Database.h"
#include "Physics/Physics/BodyRecord.h"

namespace grindle {

inline constexpr float kConvexRadius = 0.05f;
inline constexpr float kDefaultBounce = 0.95f;

// Name rules the game's objects rely on.
bool IsPhantomName(std::string_view name);       // contains "PowerUp": a trigger volume
bool SpinsAboutVertical(std::string_view name);  // "Potato" or contains "Missile"

// Null when the object has no "Body" (nothing to build) or no "Transform" (reported).
std::unique_ptr<BodyRecord> BuildBody(Database& object, std::string_view name,
                                      std::string_view level, const btVector3& gravity);

}  // namespace grindle
