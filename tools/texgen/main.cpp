// grindle_texgen GAME_DIR: writes the demo textures into GAME_DIR/Assets/Textures and the sprite
// images into GAME_DIR/Assets/Sprites. Every image is computed from fixed formulas and a
// fixed-seed generator, so reruns reproduce the same files.
#include <stb_image_write.h>

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "Core/FixedRandom.h"
#include "Sprites.h"
#include "ToolUsage.h"

namespace {

struct Rgb {
  float r, g, b;
};


std::vector<unsigned char> Render(int size, const std::function<Rgb(int, int)>& pixel) {
  std::vector<unsigned char> data(static_cast<size_t>(size * size * 3));
  for (int y = 0; y < size; ++y) {
    for (int x = 0; x < size; ++x) {
      const Rgb c = pixel(x, y);
      unsigned char* p = &data[static_cast<size_t>((y * size + x) * 3)];
      p[0] = static_cast<unsigned char>(std::fmin(std::fmax(c.r, 0.0f), 1.0f) * 255.0f + 0.5f);
      p[1] = static_cast<unsigned char>(std::fmin(std::fmax(c.g, 0.0f), 1.0f) * 255.0f + 0.5f);
      p[2] = static_cast<unsigned char>(std::fmin(std::fmax(c.b, 0.0f), 1.0f) * 255.0f + 0.5f);
    }
  }
  return data;
}

bool Write(const std::filesystem::path& path, int size, const std::vector<unsigned char>& data) {
  const std::string name = path.string();
  const bool ok = path.extension() == ".jpg"
                      ? stbi_write_jpg(name.c_str(), size, size, 3, data.data(), 90) != 0
                      : stbi_write_png(name.c_str(), size, size, 3, data.data(), size * 3) != 0;
  std::printf("%s %s\n", ok ? "wrote" : "FAILED", name.c_str());
  return ok;
}

}  // namespace

int main(int argc, char** argv) {
  if (const auto stop = grindle::tools::CheckArguments(argc, argv, 1, "grindle_texgen GAME_DIR")) {
    return *stop;
  }
  const std::filesystem::path folder = std::filesystem::path(argv[1]) / "Assets" / "Textures";
  std::filesystem::create_directories(folder);
  constexpr float kTwoPi = 6.2831853f;
  bool ok = true;

  // Asphalt: grey grain with a few darker speckles; the default texture.
  grindle::FixedRandom grain(12345u);
  ok &= Write(folder / "Asphalt.jpg", 256, Render(256, [&](int, int) {
                const float n = grain.Next();
                const float v = 0.32f + 0.12f * n - (n > 0.97f ? 0.15f : 0.0f);
                return Rgb{v, v, v * 1.04f};
              }));
  // Floor tiles: light and dark squares with grout lines.
  ok &= Write(folder / "FloorTiles.png", 128, Render(128, [](int x, int y) {
                const bool grout = x % 32 < 2 || y % 32 < 2;
                const bool dark = ((x / 32) + (y / 32)) % 2 == 0;
                const float v = grout ? 0.25f : (dark ? 0.55f : 0.8f);
                return Rgb{v, v * 0.95f, v * 0.85f};
              }));
  // Crate: planks with a frame, for the boxes.
  ok &= Write(folder / "Crate.png", 128, Render(128, [](int x, int y) {
                const bool frame = x < 10 || x >= 118 || y < 10 || y >= 118 || std::abs(x - y) < 6;
                const float plank = 0.05f * std::sin(static_cast<float>(y) * 0.4f);
                return frame ? Rgb{0.45f, 0.28f, 0.12f} : Rgb{0.72f + plank, 0.52f + plank, 0.3f};
              }));
  // Bumps: a tangent-space normal map of round studs.
  ok &= Write(folder / "BumpsNormal.png", 128, Render(128, [&](int x, int y) {
                const float u = static_cast<float>(x) / 128.0f * kTwoPi * 4.0f;
                const float v = static_cast<float>(y) / 128.0f * kTwoPi * 4.0f;
                const float dx = 0.6f * std::cos(u) * std::sin(v);
                const float dy = 0.6f * std::sin(u) * std::cos(v);
                const float len = std::sqrt(dx * dx + dy * dy + 1.0f);
                return Rgb{0.5f - 0.5f * dx / len, 0.5f - 0.5f * dy / len, 0.5f + 0.5f / len};
              }));
  // Stripes: a specular mask, shiny bands between matte ones.
  ok &= Write(folder / "StripesSpecular.png", 128, Render(128, [](int x, int) {
                const float v = (x / 16) % 2 == 0 ? 1.0f : 0.1f;
                return Rgb{v, v, v};
              }));
  ok &= WriteSprites(argv[1]);
  return ok ? 0 : 1;
}
