// Reading a bitmap font description (`Assets/Fonts/<font>.fnt`) into plain data: line metrics, 256
// glyph records in line-height units with their kerning rows, and one quad per glyph. No GL here,
// so the format can be checked without a context; Font turns this into textures and buffers.
// Any thread. Lines that do not match their pattern leave their values unread, never an error.
#pragma once

#include <array>
#include <bitset>
#include <cstdio>
#include <string>

namespace grindle::gfx {

inline constexpr int kFontGlyphCount = 256;

struct GlyphVertex {
  float x, y, z;
  float u, v;
};
static_assert(sizeof(GlyphVertex) == 20);

using GlyphQuad = std::array<GlyphVertex, 4>;

// Every value is already divided by the line height, except `page` (as read).
struct GlyphRecord {
  float x = 0.0f, y = 0.0f, width = 0.0f, height = 0.0f;
  float xoffset = 0.0f, yoffset = 0.0f, xadvance = 0.0f;
  float page = 0.0f;
  std::array<float, kFontGlyphCount> kerning{};  // kerning[second] with this glyph first
};

struct FontFileData {
  float lineHeight = 0.0f, base = 0.0f, scaleW = 0.0f, scaleH = 0.0f;
  int pages = 0;
  std::string pageFile;  // the page line's token as it stands
  std::array<GlyphRecord, kFontGlyphCount> glyphs{};
  std::array<GlyphQuad, kFontGlyphCount> quads{};
  // Glyphs whose character line matched completely; text layout skips the others.
  std::bitset<kFontGlyphCount> defined;
};

// Reads the open file from its current position. `path` only names the file in messages about
// character or kerning lines whose codes lie outside 0-255 (those lines are skipped).
void ReadFontFile(std::FILE* file, const std::string& path, FontFileData& out);

// The quad of a glyph from its pixel rectangle: positions in line-height units, y down, and
// u0 = x / scaleH (the left edge over the page height, as the format has always required).
GlyphQuad MakeGlyphQuad(float x, float y, float width, float height, float lineHeight,
                        float scaleW, float scaleH);

}  // namespace grindle::gfx
