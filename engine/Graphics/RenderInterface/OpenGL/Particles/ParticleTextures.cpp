#include "Graphics/RenderInterface/OpenGL/Particles/ParticleTextures.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "Core/FixedRandom.h"
#include "Graphics/RenderInterface/OpenGL/ImageMips.h"

namespace grindle::gfx {

namespace {

constexpr uint32_t kParticleSeed = 20260101u;

float Smooth(float edge0, float edge1, float x) {
  const float t = std::clamp((x - edge0) / (edge1 - edge0), 0.0f, 1.0f);
  return t * t * (3.0f - 2.0f * t);
}

// Coverage of a layer at (x, y) in -1..1 (y down); colour stays white so the effect tints it.
float Coverage(ParticleLayer layer, float x, float y, float grain) {
  const float r = std::sqrt(x * x + y * y);
  switch (layer) {
    case ParticleLayer::kPuff:
      return (1.0f - Smooth(0.2f, 1.0f, r)) * (0.75f + 0.25f * grain);
    case ParticleLayer::kFlame: {
      // Wider at the bottom, a pointed tip at the top.
      const float width = 0.25f + 0.45f * Smooth(-1.0f, 0.6f, y);
      const float d = std::sqrt((x / width) * (x / width) + y * y);
      return 1.0f - Smooth(0.3f, 1.0f, d);
    }
    case ParticleLayer::kStreak:
      return (1.0f - Smooth(0.1f, 0.9f, std::abs(x))) * (1.0f - Smooth(0.5f, 1.0f, std::abs(y)));
    case ParticleLayer::kStar: {
      const float rays = std::max(1.0f - Smooth(0.0f, 0.12f, std::abs(x) * std::sqrt(r + 0.05f)),
                                  1.0f - Smooth(0.0f, 0.12f, std::abs(y) * std::sqrt(r + 0.05f)));
      const float core = 1.0f - Smooth(0.0f, 0.3f, r);
      return std::max(rays, core) * (1.0f - Smooth(0.7f, 1.0f, r));
    }
    case ParticleLayer::kFireball:
      return (1.0f - Smooth(0.0f, 1.0f, r)) * (0.85f + 0.15f * grain);
    case ParticleLayer::kCount:
      break;
  }
  return 0.0f;
}

// RGBA8 texels of one layer, top row first: white, the shape in alpha.
std::vector<uint8_t> ParticleLayerPixels(ParticleLayer layer) {
  constexpr int size = kParticleTextureSize;
  std::vector<uint8_t> pixels(static_cast<size_t>(size * size * 4));
  FixedRandom random(kParticleSeed);
  for (int row = 0; row < size; ++row) {
    for (int column = 0; column < size; ++column) {
      const float x = (static_cast<float>(column) + 0.5f) / size * 2.0f - 1.0f;
      const float y = (static_cast<float>(row) + 0.5f) / size * 2.0f - 1.0f;
      const float alpha = std::clamp(Coverage(layer, x, y, random.Next()), 0.0f, 1.0f);
      uint8_t* texel = &pixels[static_cast<size_t>((row * size + column) * 4)];
      texel[0] = texel[1] = texel[2] = 255;
      texel[3] = static_cast<uint8_t>(alpha * 255.0f + 0.5f);
    }
  }
  return pixels;
}

}  // namespace

ParticleTextures::ParticleTextures() {
  constexpr int size = kParticleTextureSize;
  constexpr auto layers = static_cast<int>(ParticleLayer::kCount);
  glCreateTextures(GL_TEXTURE_2D_ARRAY, 1, &textureArray_);
  glTextureStorage3D(textureArray_, MipLevelCount(size, size), GL_RGBA8, size, size, layers);
  // Levels made on the CPU: the driver's mipmap generation compiles shaders on first use.
  for (int layer = 0; layer < layers; ++layer) {
    const std::vector<uint8_t> pixels = ParticleLayerPixels(static_cast<ParticleLayer>(layer));
    glTextureSubImage3D(textureArray_, 0, 0, 0, layer, size, size, 1, GL_RGBA, GL_UNSIGNED_BYTE,
                        pixels.data());
    int index = 0;
    for (const ImageLevel& level : LevelsBelow(pixels.data(), size, size)) {
      glTextureSubImage3D(textureArray_, ++index, 0, 0, layer, level.width, level.height, 1,
                          GL_RGBA, GL_UNSIGNED_BYTE, level.rgba.data());
    }
  }
  glTextureParameteri(textureArray_, GL_TEXTURE_MIN_FILTER, GL_LINEAR_MIPMAP_LINEAR);
  glTextureParameteri(textureArray_, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
  glTextureParameteri(textureArray_, GL_TEXTURE_WRAP_S, GL_CLAMP_TO_EDGE);
  glTextureParameteri(textureArray_, GL_TEXTURE_WRAP_T, GL_CLAMP_TO_EDGE);

  std::vector<float> values(static_cast<size_t>(kRandomTextureSize) * 4u);
  FixedRandom random(kParticleSeed);
  for (float& value : values) value = random.Next() * 2.0f - 1.0f;
  glCreateTextures(GL_TEXTURE_1D, 1, &randomTexture_);
  glTextureStorage1D(randomTexture_, 1, GL_RGBA32F, kRandomTextureSize);
  glTextureSubImage1D(randomTexture_, 0, 0, kRandomTextureSize, GL_RGBA, GL_FLOAT, values.data());
  // Nearest: neighbouring particles must not average their random values towards zero.
  glTextureParameteri(randomTexture_, GL_TEXTURE_MIN_FILTER, GL_NEAREST);
  glTextureParameteri(randomTexture_, GL_TEXTURE_MAG_FILTER, GL_NEAREST);
  glTextureParameteri(randomTexture_, GL_TEXTURE_WRAP_S, GL_REPEAT);
}

ParticleTextures::~ParticleTextures() {
  glDeleteTextures(1, &textureArray_);
  glDeleteTextures(1, &randomTexture_);
}

}  // namespace grindle::gfx
