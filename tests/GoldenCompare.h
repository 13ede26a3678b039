// Rendered frames as RGBA images, read from PNG files, and their comparison with reference images
// made on Mesa llvmpipe. Tolerance: the mean absolute channel difference stays under 2/255 and at
// most 1% of the pixels differ by more than 24/255 in some channel (room for rasteriser rounding,
// none for a changed scene). GRINDLE_UPDATE_GOLDEN=1 rewrites the references instead of comparing.
#pragma once

#include <gtest/gtest.h>
#include <stb_image.h>
#include <stb_image_write.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <glm/vec4.hpp>
#include <string>
#include <vector>

namespace grindle::gfx {

struct Image {
  int width = 0;
  int height = 0;
  std::vector<unsigned char> rgba;  // top row first
  glm::vec4 At(int x, int y) const {
    const unsigned char* p = &rgba[(static_cast<size_t>(y) * width + x) * 4u];
    return glm::vec4(p[0], p[1], p[2], p[3]) / 255.0f;
  }
};

// Empty (0 x 0) when the file cannot be read.
inline Image LoadPng(const std::string& path) {
  Image image;
  int channels = 0;
  unsigned char* pixels = stbi_load(path.c_str(), &image.width, &image.height, &channels, 4);
  if (pixels != nullptr) {
    image.rgba.assign(pixels, pixels + static_cast<size_t>(image.width) * image.height * 4u);
    stbi_image_free(pixels);
  }
  return image;
}

// Compares `image` with `directory`/`name`.png (or rewrites that file, see above).
inline void ExpectMatchesGoldenFile(const Image& image, const std::string& directory,
                                    const std::string& name) {
  constexpr double kMeanTolerance = 2.0 / 255.0;
  constexpr double kOutlierChannel = 24.0 / 255.0;
  constexpr double kOutlierFraction = 0.01;
  const std::string path = directory + "/" + name + ".png";
  if (std::getenv("GRINDLE_UPDATE_GOLDEN") != nullptr) {
    ASSERT_NE(stbi_write_png(path.c_str(), image.width, image.height, 4, image.rgba.data(),
                             image.width * 4),
              0);
    return;
  }
  const Image reference = LoadPng(path);
  ASSERT_EQ(reference.width, image.width) << "no reference image of this size: " << path;
  ASSERT_EQ(reference.height, image.height);
  double total = 0.0;
  double outliers = 0.0;
  for (size_t i = 0; i < image.rgba.size(); i += 4) {
    double worst = 0.0;
    for (size_t c = i; c < i + 3; ++c) {
      const double d = std::abs(image.rgba[c] - reference.rgba[c]) / 255.0;
      total += d;
      worst = std::max(worst, d);
    }
    if (worst > kOutlierChannel) ++outliers;
  }
  const double pixels = static_cast<double>(image.rgba.size() / 4);
  EXPECT_LT(total / (pixels * 3.0), kMeanTolerance) << name;
  EXPECT_LE(outliers / pixels, kOutlierFraction) << name;
}

}  // namespace grindle::gfx
