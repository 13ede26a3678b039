// Shelf packing of glyph rectangles into the smallest power-of-two square page that holds them
// all. Square because the font format divides a glyph's left edge by the page height. Pure.
#pragma once

#include <vector>

namespace fontbake {

struct PackedRect {
  int width = 0, height = 0;  // in: the glyph's size
  int x = 0, y = 0;           // out: its top-left corner on the page
};

// Places every rectangle with `padding` pixels around it; returns the page side (0 if even
// 4096 pixels are not enough).
int PackSquare(std::vector<PackedRect>& rects, int padding);

}  // namespace fontbake
