// Plain vector records stored in the database and read from typed XML. Any thread; no invariants
// beyond plain data. GLM types stand in where files name the platform maths types.
#pragma once

namespace grindle {

// Four floats; files give three of them (w stays 0).
struct Vector4 {
  float x = 0.0f;
  float y = 0.0f;
  float z = 0.0f;
  float w = 0.0f;
};

}  // namespace grindle
