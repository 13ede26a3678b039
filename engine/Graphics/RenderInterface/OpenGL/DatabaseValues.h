// Reading and writing the renderer's numbers in the meta database, where files store four-float
// values either as Vector4 or as glm::vec4 and numbers as doubles. Main thread (the database has no
// lock). Absent entries yield the fallback; nothing here creates entries except the Write* calls.
#pragma once

#include <cstdint>
#include <glm/vec4.hpp>
#include <optional>

namespace grindle {
class Database;
}

namespace grindle::gfx {

double ReadDouble(const Database& database, uint32_t key, double fallback);
// A number stored as double, float, int or bool (scripts write doubles, code the other kinds).
double ReadNumber(const Database& database, uint32_t key, double fallback);
std::optional<glm::vec4> ReadFour(const Database& database, uint32_t key);
// Sets components [first, first + count) of a four-float entry; returns false when there is none.
bool WriteFourComponents(Database& database, uint32_t key, int first, int count,
                         const float* values);
// Replaces or adds a double entry.
void WriteDouble(Database& database, uint32_t key, double value);

}  // namespace grindle::gfx
