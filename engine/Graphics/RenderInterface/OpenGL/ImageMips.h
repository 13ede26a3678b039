// Mip levels of RGBA8 images made on the CPU: each level is the one above drawn at half its size
// with bilinear filtering, every pixel sampled at its own centre (for even sizes, the average of a
// 2 x 2 block), as a GPU blit from level to level makes it. Used for images from files and
// generated ones, so uploading a texture compiles no driver shaders; render targets, drawn on the
// GPU every frame, build theirs there (TextureCopy). Pure functions; any thread.
#pragma once

#include <cstdint>
#include <vector>

namespace grindle::gfx {

struct ImageLevel {
  int width = 0;
  int height = 0;
  std::vector<uint8_t> rgba;  // rows top first, 4 bytes a pixel
};

// The level below `rgba` (width x height, both at least 1): max(1, size / 2) each way.
ImageLevel HalveImage(const uint8_t* rgba, int width, int height);

// 1 + floor(log2(max(width, height))): levels down to 1 x 1.
int MipLevelCount(int width, int height);

// Every level below the image, largest first, down to 1 x 1.
std::vector<ImageLevel> LevelsBelow(const uint8_t* rgba, int width, int height);

}  // namespace grindle::gfx
