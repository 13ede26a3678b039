// Golden-image tests of the renderer: the shared comparison (GoldenCompare.h) against the
// references in golden/, and a level rendered for a few frames.
#pragma once

#include "GoldenCompare.h"
#include "RendererFixture.h"

namespace grindle::gfx {

inline float Luma(const glm::vec4& c) { return 0.299f * c.r + 0.587f * c.g + 0.114f * c.b; }

class GoldenImageFixture : public RendererFixture {
 protected:
  void ExpectMatchesGolden(const Image& image, const std::string& name) {
    ExpectMatchesGoldenFile(image, GRINDLE_GOLDEN_DIR, name);
  }

  Image RenderLevel(const std::string& name, int frames = 2) {
    StartLevel(name);
    for (int i = 0; i < frames; ++i) Frame();
    return Capture();
  }
};

}  // namespace grindle::gfx
