// Text layout in a font's line-height units: advances and kerning, line breaks at "\n" (a real
// newline or the two characters backslash-n, as level files can only write the latter), greedy
// word wrap at a maximum width, and per-line alignment inside the block. Pure; any thread.
// Input is UTF-8; characters the font lacks (and any above 255) are skipped, never drawn.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "Graphics/RenderInterface/OpenGL/Sprites/FontFile.h"

namespace grindle::gfx {

enum class HorizontalAlign : uint8_t { kLeft, kCenter, kRight };
enum class VerticalAlign : uint8_t { kTop, kCenter, kBottom };

// The top-left corner of a glyph's quad relative to the block's top-left, y down.
struct PlacedGlyph {
  unsigned char id;
  float x;
  float y;
};

struct TextBlock {
  std::vector<PlacedGlyph> glyphs;
  float width = 0.0f;   // the widest line's advance
  float height = 0.0f;  // line count (each line is one line height)
  bool skippedCharacters = false;
};

// `maxWidth` <= 0 means no wrapping. A word wider than `maxWidth` keeps a line of its own.
void LayOutText(const FontFileData& font, std::string_view text, float maxWidth,
                HorizontalAlign align, TextBlock& out);

}  // namespace grindle::gfx
