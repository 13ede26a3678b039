#include "GlyphPacking.h"

#include <algorithm>
#include <numeric>

namespace fontbake {

namespace {

bool TryPack(std::vector<PackedRect>& rects, const std::vector<size_t>& order, int side,
             int padding) {
  int x = padding, y = padding, shelf = 0;
  for (size_t index : order) {
    PackedRect& r = rects[index];
    if (x + r.width + padding > side) {
      x = padding;
      y += shelf + padding;
      shelf = 0;
    }
    if (r.width + 2 * padding > side || y + r.height + padding > side) return false;
    r.x = x;
    r.y = y;
    x += r.width + padding;
    shelf = std::max(shelf, r.height);
  }
  return true;
}

}  // namespace

int PackSquare(std::vector<PackedRect>& rects, int padding) {
  // Tallest first keeps the shelves full; ties keep their input order so output is stable.
  std::vector<size_t> order(rects.size());
  std::iota(order.begin(), order.end(), size_t{0});
  std::stable_sort(order.begin(), order.end(),
                   [&](size_t a, size_t b) { return rects[a].height > rects[b].height; });
  for (int side = 64; side <= 4096; side *= 2) {
    if (TryPack(rects, order, side, padding)) return side;
  }
  return 0;
}

}  // namespace fontbake
