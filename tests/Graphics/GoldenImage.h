// Comparing rendered frames with the reference images in golden/ (made on Mesa llvmpipe).
// Tolerance: the mean absolute channel difference stays under 2/255 and at most 1% of the pixels
// differ by more than 24/255 in some channel (room for rasteriser rounding, none for a changed
// scene). GRINDLE_UPDATE_GOLDEN=1 rewrites the references instead of comparing.
#pragma once

#include <stb_image_write.h>

#include <cmath>

#include "RendererFixture.h"

namespace grindle::gfx {

inline float Luma(const glm::vec4& c) { return 0.299f * c.r + 0.587f * c.g + 0.114f * c.b; }

class GoldenImageFixture : public RendererFixture {
 protected:
  static constexpr double kMeanTolerance = 2.0 / 255.0;
  static constexpr double kOutlierChannel = 24.0 / 255.0;
  static constexpr double kOutlierFraction = 0.01;

  void ExpectMatchesGolden(const Image& image, const std::string& name) {
    const std::string path = std::string(GRINDLE_GOLDEN_DIR) + "/" + name + ".png";
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

  Image RenderLevel(const std::string& name, int frames = 2) {
    StartLevel(name);
    for (int i = 0; i < frames; ++i) Frame();
    return Capture();
  }
};

}  // namespace grindle::gfx
