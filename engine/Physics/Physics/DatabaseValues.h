// Reading and writing the database values physics uses, whatever kind a file or a script stored
// them as (files write int, float, double, vec4 or xmfloat4; scripts write doubles), and finding
// objects by level and name. Main thread only; the pointers returned are valid until the database
// is next changed.
#pragma once

#include <btBulletDynamicsCommon.h>

#include <glm/glm.hpp>

#include <cstdint>
#include <optional>
#include <string_view>

#include "Core/Database.h"
#include "Core/WellKnownKeys.h"

namespace grindle {

// A number stored as double, float, int or bool (Core's rule); `fallback` when absent or of
// another kind.
double ReadReal(const Database& db, uint32_t key, double fallback);
// True when a bool, int or number entry is non-zero.
bool ReadFlag(const Database& db, uint32_t key);
// The x, y, z of a Vector4 or glm::vec4/vec3 entry; nothing when absent or of another kind.
std::optional<btVector3> ReadVector3(const Database& db, uint32_t key);

// Whether values read are usable by the library: no NaN, no infinity.
bool IsFinite(const btVector3& v);
bool IsFinite(const btQuaternion& q);

// Stores a double under a well-known name, assigning in place when a double is already there.
void WriteReal(Database& db, WellKnown name, double value);
// Writes the upper-left 3x3 of the "Rotation" matrix (row-major, row vectors), creating the entry
// as an identity matrix when it is missing.
void WriteRotation(Database& db, const btMatrix3x3& rotation);
void WriteRotation(glm::mat4& matrix, const btMatrix3x3& rotation);

Database* FindDatabase(const Database& db, uint32_t key);
// `Levels.<level>.GameObjects.<object>`, or null.
Database* FindObject(const Database& root, uint32_t levelKey, uint32_t objectKey);

// The same lookup for many objects in a row: remembers the last level's `GameObjects`, so it must
// not outlive a change to the database (use one per pass over the bodies).
class LevelObjects {
 public:
  explicit LevelObjects(const Database& root) : root_(root) {}
  Database* Find(uint32_t levelKey, uint32_t objectKey);

 private:
  const Database& root_;
  uint32_t uLevelKey_ = 0;
  bool hasLevel_ = false;
  const Database* pObjects_ = nullptr;
};

// The root's `CurrentLevel` name, or empty.
std::string_view CurrentLevelName(const Database& root);

}  // namespace grindle
