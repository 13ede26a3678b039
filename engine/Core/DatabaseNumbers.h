// Reading and writing numbers and four-float values in a database whatever kind the writer chose:
// level files store int, float or double and Vector4 or glm::vec4, scripts store doubles, code
// stores bools. Systems read their components through these rather than each testing kinds on its
// own. Main thread (the database has no lock); only the Write* calls create entries.
#pragma once

#include <cstdint>
#include <glm/vec4.hpp>
#include <optional>

namespace grindle {

class Database;

// A double entry; `fallback` for any other kind, so a value of the wrong kind reads as absent.
double ReadDouble(const Database& database, uint32_t key, double fallback);
// A number stored as double, float, int or bool (true is 1); nothing when absent or of another
// kind.
std::optional<double> FindNumber(const Database& database, uint32_t key);
inline double ReadNumber(const Database& database, uint32_t key, double fallback) {
  return FindNumber(database, key).value_or(fallback);
}
// A Vector4 or glm::vec4 entry; nothing when absent or of another kind.
std::optional<glm::vec4> ReadFour(const Database& database, uint32_t key);
// Sets components [first, first + count) of a four-float entry; returns false when there is none.
bool WriteFourComponents(Database& database, uint32_t key, int first, int count,
                         const float* values);
// Assigns in place when a double is there (handles to it stay valid), else adds one under the
// key's interned name.
void WriteDouble(Database& database, uint32_t key, double value);

}  // namespace grindle
