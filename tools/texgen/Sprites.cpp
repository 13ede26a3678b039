#include "Sprites.h"

#include <stb_image_write.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <functional>
#include <vector>

namespace {

struct Rgba {
  float r, g, b, a;
};

// Source-over for straight (not premultiplied) colours.
Rgba Over(const Rgba& top, const Rgba& below) {
  const float a = top.a + below.a * (1.0f - top.a);
  if (a <= 0.0f) return {0, 0, 0, 0};
  const auto mix = [&](float t, float b) { return (t * top.a + b * below.a * (1.0f - top.a)) / a; };
  return {mix(top.r, below.r), mix(top.g, below.g), mix(top.b, below.b), a};
}

// Coverage of a shape from its signed distance in pixels (negative inside), one pixel of ramp.
float Cover(float distance) { return std::clamp(0.5f - distance, 0.0f, 1.0f); }

Rgba Paint(Rgba colour, float distance) {
  colour.a *= Cover(distance);
  return colour;
}

float Circle(float x, float y, float cx, float cy, float radius) {
  return std::hypot(x - cx, y - cy) - radius;
}

float Ellipse(float x, float y, float cx, float cy, float rx, float ry) {
  // Scaled circle distance: exact enough for smooth edges on these gentle ellipses.
  const float k = std::hypot((x - cx) / rx, (y - cy) / ry);
  return (k - 1.0f) * std::min(rx, ry);
}

float RoundedBox(float x, float y, float cx, float cy, float hw, float hh, float radius) {
  const float qx = std::abs(x - cx) - hw + radius;
  const float qy = std::abs(y - cy) - hh + radius;
  return std::hypot(std::max(qx, 0.0f), std::max(qy, 0.0f)) + std::min(std::max(qx, qy), 0.0f) -
         radius;
}

float Segment(float x, float y, float ax, float ay, float bx, float by, float halfWidth) {
  const float px = x - ax, py = y - ay, dx = bx - ax, dy = by - ay;
  const float t = std::clamp((px * dx + py * dy) / (dx * dx + dy * dy), 0.0f, 1.0f);
  return std::hypot(px - dx * t, py - dy * t) - halfWidth;
}

bool Write(const std::filesystem::path& path, int width, int height,
           const std::function<Rgba(float, float)>& pixel) {
  std::vector<unsigned char> data(static_cast<size_t>(width * height * 4));
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) {
      const Rgba c = pixel(static_cast<float>(x) + 0.5f, static_cast<float>(y) + 0.5f);
      unsigned char* p = &data[static_cast<size_t>((y * width + x) * 4)];
      const float channels[4] = {c.r, c.g, c.b, c.a};
      for (int i = 0; i < 4; ++i) {
        p[i] = static_cast<unsigned char>(std::clamp(channels[i], 0.0f, 1.0f) * 255.0f + 0.5f);
      }
    }
  }
  const std::string name = path.string();
  const bool ok = stbi_write_png(name.c_str(), width, height, 4, data.data(), width * 4) != 0;
  std::printf("%s %s\n", ok ? "wrote" : "FAILED", name.c_str());
  return ok;
}

const Rgba kClear{0, 0, 0, 0};
const Rgba kOutline{0.1f, 0.07f, 0.05f, 1};

}  // namespace

bool WriteSprites(const std::filesystem::path& gameDir) {
  const std::filesystem::path folder = gameDir / "Assets" / "Sprites";
  std::filesystem::create_directories(folder);
  bool ok = true;

  // The potato: a lumpy brown oval with an outline and a few eyes.
  ok &= Write(folder / "Potato.png", 128, 128, [](float x, float y) {
    const float lump = 3.0f * std::sin(std::atan2(y - 64, x - 64) * 5.0f);
    const float body = Ellipse(x, y, 64, 66, 52 + lump, 38 + lump);
    Rgba c = Paint(kOutline, body - 4.0f);
    c = Over(Paint({0.78f, 0.56f, 0.3f, 1}, body), c);
    for (const auto& [ex, ey] : {std::pair{42.0f, 58.0f}, {70.0f, 80.0f}, {86.0f, 52.0f}})
      c = Over(Paint({0.5f, 0.33f, 0.15f, 1}, Circle(x, y, ex, ey, 4.0f)), c);
    return c;
  });
  // Speed: a yellow badge with a double chevron pointing right.
  ok &= Write(folder / "Speed.png", 128, 128, [](float x, float y) {
    const float badge = Circle(x, y, 64, 64, 58);
    Rgba c = Over(Paint({0.98f, 0.78f, 0.1f, 1}, badge), Paint(kOutline, badge - 4.0f));
    for (const float dx : {-14.0f, 14.0f}) {
      const float arm = std::min(Segment(x, y, 44 + dx, 38, 70 + dx, 64, 7),
                                 Segment(x, y, 70 + dx, 64, 44 + dx, 90, 7));
      c = Over(Paint({0.55f, 0.2f, 0.05f, 1}, arm), c);
    }
    return c;
  });
  // Shield: a blue shield, round above and pointed below, with a light rim.
  ok &= Write(folder / "Shield.png", 128, 128, [](float x, float y) {
    // A rounded cap over the lens where two large circles overlap, which ends in a point.
    const float cap = RoundedBox(x, y, 64, 40, 42, 24, 10);
    const float lens = std::max({Circle(x, y, 136, 40, 114), Circle(x, y, -8, 40, 114), 40 - y});
    const float shield = std::min(cap, lens);
    Rgba c = Paint({0.85f, 0.92f, 1, 1}, shield);
    return Over(Paint({0.15f, 0.4f, 0.85f, 1}, shield + 6.0f), c);
  });
  // Fuse: a round black bomb with a fuse and an orange spark.
  ok &= Write(folder / "Fuse.png", 128, 128, [](float x, float y) {
    const float bomb = Circle(x, y, 58, 74, 42);
    Rgba c = Paint({0.15f, 0.15f, 0.18f, 1}, bomb);
    c = Over(Paint({0.45f, 0.45f, 0.5f, 1}, Circle(x, y, 44, 60, 9)), c);
    c = Over(Paint({0.6f, 0.45f, 0.25f, 1}, Segment(x, y, 80, 40, 98, 22, 4)), c);
    return Over(Paint({1, 0.55f, 0.1f, 1}, Circle(x, y, 102, 18, 10)), c);
  });
  // Panel: a rounded translucent slate for menus, with a brighter rim.
  ok &= Write(folder / "Panel.png", 256, 128, [](float x, float y) {
    const float panel = RoundedBox(x, y, 128, 64, 124, 60, 20);
    const Rgba rim = Paint({0.55f, 0.7f, 0.95f, 0.9f}, panel);
    return Over(Paint({0.08f, 0.12f, 0.22f, 0.78f}, panel + 4.0f), Over(rim, kClear));
  });
  return ok;
}
