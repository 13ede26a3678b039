// The bitmap font format read from hand-written files on disk: exact stored values, the quads'
// coordinates on a non-square page, kerning, the strict line patterns and the loader's two
// assertions; and text laid out from such a file: advances, kerning, both spellings of a line
// break, word wrap, alignment per line, and characters the font lacks.
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <memory>
#include <tuple>
#include <vector>

#include "Graphics/RenderInterface/OpenGL/Sprites/Font.h"
#include "Graphics/RenderInterface/OpenGL/Sprites/FontFile.h"
#include "Graphics/RenderInterface/OpenGL/Sprites/TextLayout.h"
#include "TestOutput.h"
#include "TempWorkDir.h"

namespace grindle::gfx {
namespace {

namespace fs = std::filesystem;

// A 256 x 512 page (not square), line height 32: 'A' and 'V' with one kerning pair, a space.
constexpr const char* kNonSquareFont =
    "common lineHeight=32 base=26 scaleW=256 scaleH=512 pages=1 packed=0\n"
    "page id=0 file=Small_0.png\n"
    "chars count=3\n"
    "char id=65   x=64     y=128     width=16     height=32     xoffset=1     yoffset=2    "
    "xadvance=18     page=0  chnl=15 \n"
    "char id=86   x=96     y=0     width=20     height=24     xoffset=-1     yoffset=4    "
    "xadvance=19     page=0  chnl=15 \n"
    "char id=32   x=0     y=0     width=0     height=0     xoffset=0     yoffset=26    "
    "xadvance=8     page=0  chnl=15 \n"
    "kernings count=1\n"
    "kerning first=65  second=86  amount=-2\n";

std::unique_ptr<FontFileData> ReadText(const std::string& text, std::string* printed = nullptr) {
  const fs::path path = ScratchPath("grindle_font_test", ".fnt");
  std::ofstream(path) << text;
  auto data = std::make_unique<FontFileData>();
  std::FILE* file = std::fopen(path.c_str(), "r");
  const std::string out = CaptureStdout([&] { ReadFontFile(file, "Fonts/Test.fnt", *data); });
  std::fclose(file);
  if (printed != nullptr) *printed = out;
  return data;
}

TEST(FontFileTest, StoresMetricsInLineHeightsAndQuadsWithTheLeftEdgeOverThePageHeight) {
  const auto font = ReadText(kNonSquareFont);
  EXPECT_EQ(std::tuple(font->lineHeight, font->base, font->scaleW, font->scaleH, font->pages,
                       font->pageFile),
            std::tuple(32.0f, 26.0f, 256.0f, 512.0f, 1, "Small_0.png"));

  const GlyphRecord& a = font->glyphs['A'];
  EXPECT_FLOAT_EQ(a.x, 2.0f);
  EXPECT_FLOAT_EQ(a.y, 4.0f);
  EXPECT_FLOAT_EQ(a.width, 0.5f);
  EXPECT_FLOAT_EQ(a.height, 1.0f);
  EXPECT_FLOAT_EQ(a.xoffset, 1.0f / 32.0f);
  EXPECT_FLOAT_EQ(a.yoffset, 2.0f / 32.0f);
  EXPECT_FLOAT_EQ(a.xadvance, 18.0f / 32.0f);
  EXPECT_FLOAT_EQ(font->glyphs['V'].xoffset, -1.0f / 32.0f);

  // u0 = 64 / 512 (the height) while u1 = (64 + 16) / 256 (the width).
  const GlyphQuad& q = font->quads['A'];
  const float u0 = 0.125f, u1 = 0.3125f, v0 = 0.25f, v1 = 0.3125f;
  const GlyphQuad expected = {{{0, 0, 0, u0, v0}, {0, 1, 0, u0, v1}, {0.5f, 1, 0, u1, v1},
                               {0.5f, 0, 0, u1, v0}}};
  for (size_t i = 0; i < 4; ++i) {
    EXPECT_FLOAT_EQ(q[i].x, expected[i].x) << i;
    EXPECT_FLOAT_EQ(q[i].y, expected[i].y) << i;
    EXPECT_EQ(q[i].z, 0.0f);
    EXPECT_FLOAT_EQ(q[i].u, expected[i].u) << i;
    EXPECT_FLOAT_EQ(q[i].v, expected[i].v) << i;
  }

  // -2 pixels at line height 32; pairs without a kerning line are 0, in either order.
  EXPECT_FLOAT_EQ(font->glyphs['A'].kerning['V'], -0.0625f);
  EXPECT_EQ(font->glyphs['V'].kerning['A'], 0.0f);
  EXPECT_EQ(font->glyphs['A'].kerning[' '], 0.0f);
  EXPECT_TRUE(font->defined['A'] && font->defined['V'] && font->defined[' ']);
  EXPECT_EQ(font->defined.count(), 3u);
}

TEST(FontFileTest, LinesOffThePatternLeaveTheRestUnread) {
  const std::string header = "info face=\"Sans\" size=32\n";
  const std::string packed = "common lineHeight=32 base=26 scaleW=256 scaleH=256 pages=1 packed=1\n"
                             "page id=0 file=P.png\nchars count=0\n";
  const std::string blanks =
      "common   lineHeight=10\tbase=8 scaleW=64 scaleH=64 pages=1 packed=0\n"
      "page id=0    file=\"Quoted.png\"\nchars count=1\n"
      "char id=66 x=1 y=2 width=3 height=4 xoffset=0 yoffset=0 xadvance=5 page=0 chnl=0\n"
      "kernings count=0\n";
  const struct {
    const char* name;
    std::string text;
    float lineHeight;
    const char* pageFile;
    size_t glyphs;
  } cases[] = {
      {"a header line first loads no metrics", header + kNonSquareFont, 0.0f, "", 0},
      {"packed=1 ends the reading after the common line", packed, 32.0f, "", 0},
      {"any run of blanks matches; the page token keeps its quotes", blanks, 10.0f,
       "\"Quoted.png\"", 1},
  };
  for (const auto& c : cases) {
    const auto font = ReadText(c.text);
    EXPECT_EQ(font->lineHeight, c.lineHeight) << c.name;
    EXPECT_EQ(font->pageFile, c.pageFile) << c.name;
    EXPECT_EQ(font->defined.count(), c.glyphs) << c.name;
  }
}

TEST(FontFileTest, CodesOutsideTheTableAreSkippedWithTheFileNamed) {
  std::string printed;
  const auto font = ReadText(
      "common lineHeight=16 base=12 scaleW=64 scaleH=64 pages=1 packed=0\n"
      "page id=0 file=P.png\nchars count=2\n"
      "char id=8364 x=0 y=0 width=8 height=8 xoffset=0 yoffset=0 xadvance=9 page=0 chnl=0\n"
      "char id=67 x=8 y=0 width=8 height=8 xoffset=0 yoffset=0 xadvance=9 page=0 chnl=0\n"
      "kernings count=1\nkerning first=67  second=300  amount=-1\n",
      &printed);
  EXPECT_TRUE(font->defined['C']);
  EXPECT_EQ(font->defined.count(), 1u);
  EXPECT_NE(printed.find("Fonts/Test.fnt: character 1 of the chars list has code 8364"),
            std::string::npos)
      << printed;
  EXPECT_NE(printed.find("Fonts/Test.fnt: kerning 1 pairs codes 67 and 300"), std::string::npos);
}

TEST(TextLayoutTest, AdvancesKerningBreaksWrappingAndAlignment) {
  // Line height 10: 'a' advances 0.5, 'b' 0.6 (drawn 0.1 right of its pen), ' ' 0.3, 'é' (233)
  // 0.5; the pair "ab" kerns by -0.1. Every glyph hangs 0.2 below its line's top.
  const auto font = ReadText(
      "common lineHeight=10 base=8 scaleW=64 scaleH=64 pages=1 packed=0\n"
      "page id=0 file=L.png\nchars count=4\n"
      "char id=97 x=0 y=0 width=4 height=6 xoffset=0 yoffset=2 xadvance=5 page=0 chnl=15\n"
      "char id=98 x=8 y=0 width=4 height=6 xoffset=1 yoffset=2 xadvance=6 page=0 chnl=15\n"
      "char id=32 x=0 y=0 width=0 height=0 xoffset=0 yoffset=2 xadvance=3 page=0 chnl=15\n"
      "char id=233 x=16 y=0 width=4 height=6 xoffset=0 yoffset=2 xadvance=5 page=0 chnl=15\n"
      "kernings count=1\nkerning first=97  second=98  amount=-1\n");
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

// The loader's two failures stop the program with their texts; neither needs a GL context,
// since both happen before anything is created.
TEST(FontFileDeathTest, AMissingFileOrPageStopsTheProgram) {
  const fs::path game = ScratchPath("grindle_font_death");
  fs::create_directories(game / "Assets/Fonts");
  std::ofstream(game / "Assets/Fonts/NoPage.fnt") << kNonSquareFont;
  const fs::path previous = fs::current_path();
  fs::current_path(game);
  EXPECT_DEATH(
      {
        StdoutToStderr();
        Font font("Absent");
      },
      "DETAILS: Failed to open font file Assets/Fonts/Absent.fnt(.|\n)*The expression !pFile failed");
  EXPECT_DEATH(
      {
        StdoutToStderr();
        Font font("NoPage");
      },
      "DETAILS: Failed to create font texture from file(.|\n)*The expression FAILED\\(result\\) failed");
  fs::current_path(previous);
}

}  // namespace
}  // namespace grindle::gfx
