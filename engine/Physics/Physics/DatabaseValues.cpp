#include "Physics/Physics/DatabaseValues.h"

#include <cmath>
#include <glm/glm.hpp>

#include "Core/DatabaseNumbers.h"
#include "Core/MathTypes.h"

namespace grindle {

double ReadReal(const Database& db, uint32_t key, double fallback) {
  return ReadNumber(db, key, fallback);
}

bool ReadFlag(const Database& db, uint32_t key) { return ReadNumber(db, key, 0.0) != 0.0; }

std::optional<btVector3> ReadVector3(const Database& db, uint32_t key) {
  if (const std::optional<glm::vec4> value = ReadFour(db, key)) {
    return btVector3(value->x, value->y, value->z);
  }
  if (const DataHandle<glm::vec3> value = db.Find<glm::vec3>(key)) {
    return btVector3(value->x, value->y, value->z);
  }
  return std::nullopt;
}

bool IsFinite(const btVector3& v) {
  return std::isfinite(v.x()) && std::isfinite(v.y()) && std::isfinite(v.z());
}

bool IsFinite(const btQuaternion& q) {
  return std::isfinite(q.x()) && std::isfinite(q.y()) && std::isfinite(q.z()) &&
         std::isfinite(q.w());
}

void WriteReal(Database& db, WellKnown name, double value) { WriteDouble(db, KeyOf(name), value); }

void WriteRotation(Database& db, const btMatrix3x3& rotation) {
  DataHandle<glm::mat4> matrix = db.Find<glm::mat4>(KeyOf(WellKnown::Rotation));
  if (!matrix) matrix = db.Add<glm::mat4>("Rotation", glm::mat4(1.0f));
  WriteRotation(*matrix, rotation);
}

void WriteRotation(glm::mat4& matrix, const btMatrix3x3& rotation) {
  // Row r of the stored matrix is what row vectors multiply, the transpose of Bullet's
  // column-vector matrix.
  for (int r = 0; r < 3; ++r) {
    for (int c = 0; c < 3; ++c) matrix[r][c] = rotation[c][r];
  }
}

Database* FindDatabase(const Database& db, uint32_t key) { return db.Find<Database>(key).Get(); }

Database* FindObject(const Database& root, uint32_t levelKey, uint32_t objectKey) {
  return LevelObjects(root).Find(levelKey, objectKey);
}

Database* LevelObjects::Find(uint32_t levelKey, uint32_t objectKey) {
  if (!hasLevel_ || levelKey != uLevelKey_) {
    const Database* levels = FindDatabase(root_, KeyOf(WellKnown::Levels));
    const Database* level = levels != nullptr ? FindDatabase(*levels, levelKey) : nullptr;
    pObjects_ = level != nullptr ? FindDatabase(*level, KeyOf(WellKnown::GameObjects)) : nullptr;
    uLevelKey_ = levelKey;
    hasLevel_ = true;
  }
  return pObjects_ != nullptr ? FindDatabase(*pObjects_, objectKey) : nullptr;
}

std::string_view CurrentLevelName(const Database& root) {
  const DataHandle<std::string> name = root.Find<std::string>(KeyOf(WellKnown::CurrentLevel));
  return name ? std::string_view(*name) : std::string_view();
}

}  // namespace grindle
