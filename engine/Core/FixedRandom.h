// A small deterministic generator for generated content (textures, particle tables): the same
// sequence on every machine and compiler, unlike the standard library's distributions. Header
// only, so tools can use it without linking the engine. Not for anything that must be unpredictable.
#pragma once

#include <cstdint>

namespace grindle {

class FixedRandom {
 public:
  explicit FixedRandom(uint32_t seed) : state_(seed) {}

  // Uniform in [0, 1): a linear congruential step, top 24 bits.
  float Next() {
    state_ = state_ * 1664525u + 1013904223u;
    return static_cast<float>(state_ >> 8) / static_cast<float>(1u << 24);
  }

 private:
  uint32_t state_;
};

}  // namespace grindle
