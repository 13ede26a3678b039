#include "Core/DatabaseNumbers.h"

#include "Core/Database.h"
#include "Core/KeyInterning.h"
#include "Core/MathTypes.h"

namespace grindle {

double ReadDouble(const Database& database, uint32_t key, double fallback) {
  const DataHandle<double> value = database.Find<double>(key);
  return value.IsValid() ? *value : fallback;
}

std::optional<double> FindNumber(const Database& database, uint32_t key) {
  if (const DataHandle<double> value = database.Find<double>(key)) return *value;
  if (const DataHandle<float> value = database.Find<float>(key)) return *value;
  if (const DataHandle<int> value = database.Find<int>(key)) return *value;
  if (const DataHandle<bool> value = database.Find<bool>(key)) return *value ? 1.0 : 0.0;
  return std::nullopt;
}

std::optional<glm::vec4> ReadFour(const Database& database, uint32_t key) {
  if (const DataHandle<glm::vec4> value = database.Find<glm::vec4>(key)) return *value;
  if (const DataHandle<Vector4> value = database.Find<Vector4>(key)) {
    return glm::vec4(value->x, value->y, value->z, value->w);
  }
  return std::nullopt;
}

bool WriteFourComponents(Database& database, uint32_t key, int first, int count,
                         const float* values) {
  if (const DataHandle<glm::vec4> value = database.Find<glm::vec4>(key)) {
    for (int i = 0; i < count; ++i) (*value)[first + i] = values[i];
    return true;
  }
  if (const DataHandle<Vector4> value = database.Find<Vector4>(key)) {
    float* components[4] = {&value->x, &value->y, &value->z, &value->w};
    for (int i = 0; i < count; ++i) *components[first + i] = values[i];
    return true;
  }
  return false;
}

void WriteDouble(Database& database, uint32_t key, double value) {
  if (const DataHandle<double> existing = database.Find<double>(key)) {
    *existing = value;
    return;
  }
  database.Add<double>(ProcessKeys().NameOf(key), value);
}

}  // namespace grindle
