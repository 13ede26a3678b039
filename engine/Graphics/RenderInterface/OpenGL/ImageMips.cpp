#include "Graphics/RenderInterface/OpenGL/ImageMips.h"

#include <algorithm>
#include <cmath>

namespace grindle::gfx {

namespace {

// The two source texels a target pixel's centre falls between along one axis, and the weight of
// the second; edges clamp, as a clamp-to-edge sampler does.
struct Tap {
  int first = 0;
  int second = 0;
  float weight = 0.0f;
};

std::vector<Tap> Taps(int sourceSize, int targetSize) {
  std::vector<Tap> taps(static_cast<size_t>(targetSize));
  const float scale = static_cast<float>(sourceSize) / static_cast<float>(targetSize);
  for (int i = 0; i < targetSize; ++i) {
    const float position = (static_cast<float>(i) + 0.5f) * scale - 0.5f;
    const float below = std::floor(position);
    Tap& tap = taps[static_cast<size_t>(i)];
    tap.first = std::clamp(static_cast<int>(below), 0, sourceSize - 1);
    tap.second = std::clamp(static_cast<int>(below) + 1, 0, sourceSize - 1);
    tap.weight = position - below;
  }
  return taps;
}

}  // namespace

ImageLevel HalveImage(const uint8_t* rgba, int width, int height) {
  ImageLevel level;
  level.width = std::max(1, width / 2);
  level.height = std::max(1, height / 2);
  level.rgba.resize(static_cast<size_t>(level.width) * static_cast<size_t>(level.height) * 4u);
  const std::vector<Tap> columns = Taps(width, level.width);
  const std::vector<Tap> rows = Taps(height, level.height);
  const auto texel = [&](int x, int y, int channel) {
    return static_cast<float>(
        rgba[(static_cast<size_t>(y) * static_cast<size_t>(width) + static_cast<size_t>(x)) * 4u +
             static_cast<size_t>(channel)]);
  };
  uint8_t* out = level.rgba.data();
  for (const Tap& row : rows) {
    for (const Tap& column : columns) {
      for (int channel = 0; channel < 4; ++channel) {
        const float top = texel(column.first, row.first, channel) * (1.0f - column.weight) +
                          texel(column.second, row.first, channel) * column.weight;
        const float bottom = texel(column.first, row.second, channel) * (1.0f - column.weight) +
                             texel(column.second, row.second, channel) * column.weight;
        *out++ = static_cast<uint8_t>(top * (1.0f - row.weight) + bottom * row.weight + 0.5f);
      }
    }
  }
  return level;
}

int MipLevelCount(int width, int height) {
  int levels = 1;
  for (int size = std::max(width, height); size > 1; size /= 2) ++levels;
  return levels;
}

std::vector<ImageLevel> LevelsBelow(const uint8_t* rgba, int width, int height) {
  std::vector<ImageLevel> levels;
  for (int index = 1; index < MipLevelCount(width, height); ++index) {
    const ImageLevel* above = levels.empty() ? nullptr : &levels.back();
    levels.push_back(above ? HalveImage(above->rgba.data(), above->width, above->height)
                           : HalveImage(rgba, width, height));
  }
  return levels;
}

}  // namespace grindle::gfx
