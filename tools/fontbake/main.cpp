// grindle_fontbake FONT.ttf PIXELS OUT.fnt [--chars RANGE]: renders the characters of RANGE
// (default 32-126; for example "32-126,160-255") at PIXELS pixels (ascender to descender) into one
// square page OUT_0.png beside OUT.fnt, white with the coverage in alpha, and writes OUT.fnt in the
// engine's bitmap font format with the font's kerning pairs. Output is deterministic.
#include <stb_image_write.h>
#include <stb_truetype.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "GlyphPacking.h"

namespace {

constexpr int kPadding = 2;

struct BakedGlyph {
  int code = 0;
  std::vector<unsigned char> coverage;
  int xoffset = 0, yoffset = 0, xadvance = 0;
};

// "A-B,C,D-E" with codes 0-255; false on anything else.
bool ParseRange(const std::string& text, std::vector<int>& codes) {
  size_t start = 0;
  while (start <= text.size()) {
    const size_t end = std::min(text.find(',', start), text.size());
    const std::string part = text.substr(start, end - start);
    char* rest = nullptr;
    const long first = std::strtol(part.c_str(), &rest, 10);
    long last = first;
    if (rest == part.c_str()) return false;
    if (*rest == '-') last = std::strtol(rest + 1, &rest, 10);
    if (*rest != '\0' || first < 0 || last > 255 || first > last) return false;
    for (long c = first; c <= last; ++c) codes.push_back(static_cast<int>(c));
    start = end + 1;
  }
  return !codes.empty();
}

constexpr const char* kUsage = "grindle_fontbake FONT.ttf PIXELS OUT.fnt [--chars RANGE]";

// The content tools' convention (see ToolUsage.h) plus the one option this tool takes. Fills the
// three positional arguments and the range; returns the exit status to stop with, if any.
std::optional<int> ReadArguments(int argc, char** argv, std::vector<const char*>& positional,
                                 std::vector<int>& codes) {
  for (int i = 1; i < argc; ++i) {
    const std::string_view arg = argv[i];
    if (arg == "--help" || arg == "-h") {
      std::printf("usage: %s\n", kUsage);
      return 0;
    }
  }
  for (int i = 1; i < argc; ++i) {
    const std::string_view arg = argv[i];
    if (arg == "--chars" && i + 1 < argc) {
      if (!ParseRange(argv[++i], codes)) {
        std::fprintf(stderr, "grindle_fontbake: --chars expects ranges like 32-126,160-255\n");
        return 2;
      }
    } else if (arg.starts_with('-')) {
      std::fprintf(stderr, "unknown option %s\nusage: %s\n", argv[i], kUsage);
      return 2;
    } else {
      positional.push_back(argv[i]);
    }
  }
  if (positional.size() != 3) {
    std::fprintf(stderr, "usage: %s\n", kUsage);
    return 2;
  }
  if (codes.empty()) ParseRange("32-126", codes);
  return std::nullopt;
}

}  // namespace

int main(int argc, char** argv) {
  std::vector<const char*> args;
  std::vector<int> codes;
  if (const auto stop = ReadArguments(argc, argv, args, codes)) return *stop;
  const char* fontPath = args[0];
  const char* pixelsText = args[1];
  const char* outPath = args[2];
  const int pixels = std::atoi(pixelsText);
  if (pixels < 4 || pixels > 512) {
    std::fprintf(stderr, "grindle_fontbake: PIXELS must be 4-512, not %s\n", pixelsText);
    return 2;
  }
  std::ifstream in(fontPath, std::ios::binary);
  const std::vector<unsigned char> ttf((std::istreambuf_iterator<char>(in)),
                                       std::istreambuf_iterator<char>());
  stbtt_fontinfo font;
  if (ttf.empty() || !stbtt_InitFont(&font, ttf.data(), stbtt_GetFontOffsetForIndex(ttf.data(), 0))) {
    std::fprintf(stderr, "grindle_fontbake: %s is not a readable TrueType font\n", fontPath);
    return 1;
  }
  const float scale = stbtt_ScaleForPixelHeight(&font, static_cast<float>(pixels));
  int ascent = 0, descent = 0, lineGap = 0;
  stbtt_GetFontVMetrics(&font, &ascent, &descent, &lineGap);
  const int base = static_cast<int>(std::lround(ascent * scale));
  const int lineHeight = static_cast<int>(std::lround((ascent - descent + lineGap) * scale));

  std::vector<BakedGlyph> glyphs;
  std::vector<fontbake::PackedRect> rects;
  for (int code : codes) {
    if (stbtt_FindGlyphIndex(&font, code) == 0) continue;  // the font lacks it
    BakedGlyph glyph;
    glyph.code = code;
    int advance = 0, bearing = 0, x0 = 0, y0 = 0, x1 = 0, y1 = 0;
    stbtt_GetCodepointHMetrics(&font, code, &advance, &bearing);
    stbtt_GetCodepointBitmapBox(&font, code, scale, scale, &x0, &y0, &x1, &y1);
    fontbake::PackedRect rect;
    rect.width = x1 - x0;
    rect.height = y1 - y0;
    glyph.coverage.resize(static_cast<size_t>(rect.width * rect.height));
    if (!glyph.coverage.empty()) {
      stbtt_MakeCodepointBitmap(&font, glyph.coverage.data(), rect.width, rect.height, rect.width,
                                scale, scale, code);
    }
    glyph.xoffset = x0;
    glyph.yoffset = base + y0;
    glyph.xadvance = static_cast<int>(std::lround(advance * scale));
    glyphs.push_back(std::move(glyph));
    rects.push_back(rect);
  }
  const int side = fontbake::PackSquare(rects, kPadding);
  if (side == 0) {
    std::fprintf(stderr, "grindle_fontbake: the glyphs do not fit a 4096-pixel page\n");
    return 1;
  }

  std::vector<unsigned char> page(static_cast<size_t>(side * side * 4), 0);
  for (size_t i = 0; i < page.size(); i += 4) page[i] = page[i + 1] = page[i + 2] = 255;
  for (size_t g = 0; g < glyphs.size(); ++g) {
    const fontbake::PackedRect& r = rects[g];
    for (int y = 0; y < r.height; ++y) {
      for (int x = 0; x < r.width; ++x) {
        page[static_cast<size_t>(((r.y + y) * side + r.x + x) * 4 + 3)] =
            glyphs[g].coverage[static_cast<size_t>(y * r.width + x)];
      }
    }
  }
  const std::filesystem::path out(outPath);
  const std::string pageName = out.stem().string() + "_0.png";
  const std::string pagePath = (out.parent_path() / pageName).string();
  if (!stbi_write_png(pagePath.c_str(), side, side, 4, page.data(), side * 4)) {
    std::fprintf(stderr, "grindle_fontbake: cannot write %s\n", pagePath.c_str());
    return 1;
  }

  std::FILE* fnt = std::fopen(outPath, "w");
  if (fnt == nullptr) {
    std::fprintf(stderr, "grindle_fontbake: cannot write %s\n", outPath);
    return 1;
  }
  std::fprintf(fnt, "common lineHeight=%d base=%d scaleW=%d scaleH=%d pages=1 packed=0\n",
               lineHeight, base, side, side);
  std::fprintf(fnt, "page id=0 file=%s\n", pageName.c_str());
  std::fprintf(fnt, "chars count=%zu\n", glyphs.size());
  for (size_t g = 0; g < glyphs.size(); ++g) {
    const BakedGlyph& b = glyphs[g];
    std::fprintf(fnt,
                 "char id=%d   x=%d     y=%d     width=%d     height=%d     xoffset=%d     "
                 "yoffset=%d    xadvance=%d     page=0  chnl=15 \n",
                 b.code, rects[g].x, rects[g].y, rects[g].width, rects[g].height, b.xoffset,
                 b.yoffset, b.xadvance);
  }
  std::vector<std::string> kernings;
  for (const BakedGlyph& first : glyphs) {
    for (const BakedGlyph& second : glyphs) {
      const int amount = static_cast<int>(
          std::lround(stbtt_GetCodepointKernAdvance(&font, first.code, second.code) * scale));
      if (amount == 0) continue;
      char line[96];
      std::snprintf(line, sizeof(line), "kerning first=%d  second=%d  amount=%d\n", first.code,
                    second.code, amount);
      kernings.emplace_back(line);
    }
  }
  std::fprintf(fnt, "kernings count=%zu\n", kernings.size());
  for (const std::string& line : kernings) std::fputs(line.c_str(), fnt);
  const bool written = std::fclose(fnt) == 0;
  std::printf("%s: %zu glyphs on a %dx%d page, %zu kerning pairs\n", outPath, glyphs.size(), side,
              side, kernings.size());
  return written ? 0 : 1;
}
