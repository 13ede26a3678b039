// CPU time of HUD text: 2,000 glyphs a frame in the Hud font (40 text objects of 50 characters),
// laid out alone and then laid out and drawn by the sprite manager, one six-index draw per glyph.
// glFinish bounds the driver's queue once a frame.
#include <benchmark/benchmark.h>
#include <epoxy/gl.h>

#include <memory>
#include <string>

#include "BenchDevice.h"
#include "Core/Database.h"
#include "Graphics/RenderInterface/OpenGL/Sprites/Font.h"
#include "Graphics/RenderInterface/OpenGL/Sprites/SpriteManager.h"
#include "Graphics/RenderInterface/OpenGL/Sprites/TextLayout.h"

namespace grindle::gfx {
namespace {

constexpr int kLines = 40;
constexpr int kLineLength = 50;

// 50 visible characters (every one a drawn glyph), different on every line.
std::string LineOfText(int line) {
  std::string text;
  for (int i = 0; i < kLineLength; ++i) text += static_cast<char>('A' + (line * 7 + i) % 58);
  return text;
}

void BM_HudTextLayout2000Glyphs(benchmark::State& state) {
  RenderDevice* device = Device();
  if (device == nullptr) return state.SkipWithError("no OpenGL 4.5 window");
  const Font font("Hud");
  std::string text;
  for (int line = 0; line < kLines; ++line) text += LineOfText(line) + "\n";
  TextBlock block;
  for (auto _ : state) {
    LayOutText(font.Data(), text, 0.0f, HorizontalAlign::kCenter, block);
    benchmark::DoNotOptimize(block.glyphs.data());
  }
  state.counters["glyphs"] = static_cast<double>(block.glyphs.size());
}
BENCHMARK(BM_HudTextLayout2000Glyphs)->Unit(benchmark::kMicrosecond);

void BM_HudTextDraw2000Glyphs(benchmark::State& state) {
  RenderDevice* device = Device();
  if (device == nullptr) return state.SkipWithError("no OpenGL 4.5 window");
  Database root;
  Database& level = *root.Add<Database>("Levels")->Add<Database>("Hud");
  Database& objects = *level.Add<Database>("GameObjects");
  for (int line = 0; line < kLines; ++line) {
    Database& sprite = *objects.Add<Database>("Line" + std::to_string(line))->Add<Database>(
        "SpriteHUD");
    sprite.Add<double>("IsText", 1.0);
    sprite.Add<std::string>("Font", "Hud");
    sprite.Add<std::string>("Message", LineOfText(line));
    sprite.Add<glm::vec4>("Color", glm::vec4(1.0f));
    sprite.Add<double>("PixelScale", 0.5);
    sprite.Add<double>("ScreenPositionY", line / static_cast<double>(kLines));
  }
  const glm::mat4 view(1.0f);
  SpriteManager sprites(*device, root, view, nullptr);
  sprites.SetLevel(level);
  sprites.Draw(view, 1280.0f, 720.0f);  // fonts loaded, buffers made
  glFinish();
  for (auto _ : state) {
    sprites.Draw(view, 1280.0f, 720.0f);
    glFinish();
  }
  state.counters["glyphs/s"] = benchmark::Counter(
      static_cast<double>(state.iterations()) * kLines * kLineLength, benchmark::Counter::kIsRate);
}
BENCHMARK(BM_HudTextDraw2000Glyphs)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace grindle::gfx
