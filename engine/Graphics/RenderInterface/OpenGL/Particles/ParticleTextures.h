// The textures every particle effect samples: a texture array of sprite shapes (layer order is
// what the effect files' kLayer constants name) and a 1D texture of random values in -1..1. Both
// are computed here from formulas and a fixed-seed generator, so every run draws the same
// particles. Main thread, GL context current; owned by the particle manager.
#pragma once

#include <epoxy/gl.h>

#include <cstdint>

namespace grindle::gfx {

enum class ParticleLayer : uint32_t { kPuff, kFlame, kStreak, kStar, kFireball, kCount };

inline constexpr int kParticleTextureSize = 64;
inline constexpr int kRandomTextureSize = 1024;

class ParticleTextures {
 public:
  ParticleTextures();
  ~ParticleTextures();
  ParticleTextures(const ParticleTextures&) = delete;
  ParticleTextures& operator=(const ParticleTextures&) = delete;

  GLuint TextureArray() const { return textureArray_; }
  GLuint RandomTexture() const { return randomTexture_; }

 private:
  GLuint textureArray_ = 0;
  GLuint randomTexture_ = 0;
};

}  // namespace grindle::gfx
