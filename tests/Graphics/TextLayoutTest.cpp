// Text laid out from a hand-written font file: advances, kerning, both spellings of a line break,
// word wrap, alignment per line, and characters the font lacks.
#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <memory>
#include <vector>

#include "Graphics/RenderInterface/OpenGL/Sprites/FontFile.h"
#include "Graphics/RenderInterface/OpenGL/Sprites/TextLayout.h"

namespace grindle::gfx {
namespace {

// Line height 10: 'a' advances 0.5, 'b' 0.6 (drawn 0.1 right of its pen), ' ' 0.3, 'é' (233)
// 0.5; the pair "ab" kerns by -0.1. Every glyph hangs 0.2 below its line's top.
std::unique_ptr<FontFileData> LayoutFont() {
  const std::filesystem::path path =
      std::filesystem::path(testing::TempDir()) / "grindle_layout_test.fnt";
  std::ofstream(path)
      << "common lineHeight=10 base=8 scaleW=64 scaleH=64 pages=1 packed=0\n"
         "page id=0 file=L.png\nchars count=4\n"
         "char id=97 x=0 y=0 width=4 height=6 xoffset=0 yoffset=2 xadvance=5 page=0 chnl=15\n"
         "char id=98 x=8 y=0 width=4 height=6 xoffset=1 yoffset=2 xadvance=6 page=0 chnl=15\n"
         "char id=32 x=0 y=0 width=0 height=0 xoffset=0 yoffset=2 xadvance=3 page=0 chnl=15\n"
         "char id=233 x=16 y=0 width=4 height=6 xoffset=0 yoffset=2 xadvance=5 page=0 chnl=15\n"
         "kernings count=1\nkerning first=97  second=98  amount=-1\n";
  auto font = std::make_unique<FontFileData>();
  std::FILE* file = std::fopen(path.c_str(), "r");
  ReadFontFile(file, path.string(), *font);
  std::fclose(file);
  return font;
}

TEST(TextLayoutTest, AdvancesKerningBreaksWrappingAndAlignment) {
  const auto font = LayoutFont();
  using H = HorizontalAlign;
  const struct {
    const char* name;
    const char* text;
    float maxWidth;
    H align;
    std::vector<PlacedGlyph> glyphs;
    float width, height;
    bool skipped;
  } cases[] = {
      {"kerned pair", "ab", 0, H::kLeft, {{'a', 0, 0.2f}, {'b', 0.5f, 0.2f}}, 1.0f, 1, false},
      {"real newline", "a\nb", 0, H::kLeft, {{'a', 0, 0.2f}, {'b', 0.1f, 1.2f}}, 0.6f, 2, false},
      {"written newline", "a\\nb", 0, H::kLeft, {{'a', 0, 0.2f}, {'b', 0.1f, 1.2f}}, 0.6f, 2,
       false},
      {"right aligned lines", "a\nb", 0, H::kRight, {{'a', 0.1f, 0.2f}, {'b', 0.1f, 1.2f}}, 0.6f,
       2, false},
      {"centred lines", "a\nb", 0, H::kCenter, {{'a', 0.05f, 0.2f}, {'b', 0.1f, 1.2f}}, 0.6f, 2,
       false},
      {"the third word wraps",
       "ab ab ab",
       2.5f,
       H::kLeft,
       {{'a', 0, 0.2f},
        {'b', 0.5f, 0.2f},
        {'a', 1.3f, 0.2f},
        {'b', 1.8f, 0.2f},
        {'a', 0, 1.2f},
        {'b', 0.5f, 1.2f}},
       2.3f,
       2,
       false},
      {"a word wider than the line keeps it",
       "abab",
       0.5f,
       H::kLeft,
       {{'a', 0, 0.2f}, {'b', 0.5f, 0.2f}, {'a', 1.0f, 0.2f}, {'b', 1.5f, 0.2f}},
       2.0f,
       1,
       false},
      {"missing, beyond 255 and UTF-8 Latin-1", "aZ\xE2\x82\xAC\xC3\xA9", 0, H::kLeft,
       {{'a', 0, 0.2f}, {233, 0.5f, 0.2f}}, 1.0f, 1, true},
  };
  TextBlock block;
  for (const auto& c : cases) {
    LayOutText(*font, c.text, c.maxWidth, c.align, block);
    ASSERT_EQ(block.glyphs.size(), c.glyphs.size()) << c.name;
    for (size_t i = 0; i < c.glyphs.size(); ++i) {
      EXPECT_EQ(block.glyphs[i].id, c.glyphs[i].id) << c.name << " glyph " << i;
      EXPECT_NEAR(block.glyphs[i].x, c.glyphs[i].x, 1e-5f) << c.name << " glyph " << i;
      EXPECT_NEAR(block.glyphs[i].y, c.glyphs[i].y, 1e-5f) << c.name << " glyph " << i;
    }
    EXPECT_NEAR(block.width, c.width, 1e-5f) << c.name;
    EXPECT_EQ(block.height, c.height) << c.name;
    EXPECT_EQ(block.skippedCharacters, c.skipped) << c.name;
  }
}

}  // namespace
}  // namespace grindle::gfx
