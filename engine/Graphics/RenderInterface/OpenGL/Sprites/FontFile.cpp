#include "Graphics/RenderInterface/OpenGL/Sprites/FontFile.h"

namespace grindle::gfx {

namespace {

bool IsCharacterCode(int code) { return code >= 0 && code < kFontGlyphCount; }

}  // namespace

GlyphQuad MakeGlyphQuad(float x, float y, float width, float height, float lineHeight,
                        float scaleW, float scaleH) {
  const float s = 1.0f / lineHeight;
  const float w = width * s;
  const float h = height * s;
  // Kept: the left edge is divided by the page height. Only square pages (what the baker makes)
  // give the usual coordinates; fonts from elsewhere rely on exactly this rule.
  const float u0 = x / scaleH;
  const float u1 = (x + width) / scaleW;
  const float v0 = y / scaleH;
  const float v1 = (y + height) / scaleH;
  return {{{0.0f, 0.0f, 0.0f, u0, v0},
           {0.0f, h, 0.0f, u0, v1},
           {w, h, 0.0f, u1, v1},
           {w, 0.0f, 0.0f, u1, v0}}};
}

void ReadFontFile(std::FILE* file, const std::string& path, FontFileData& out) {
  // Each pattern is matched where the previous one stopped; a line that does not match leaves
  // the stream where it was, so everything after a foreign line stays unread.
  std::fscanf(file, "common lineHeight=%f base=%f scaleW=%f scaleH=%f pages=%i packed=0\n",
              &out.lineHeight, &out.base, &out.scaleW, &out.scaleH, &out.pages);
  char pageFile[256] = {};
  std::fscanf(file, "page id=0 file=%255s\n", pageFile);
  out.pageFile = pageFile;

  int count = 0;
  std::fscanf(file, "chars count=%i\n", &count);
  for (GlyphRecord& glyph : out.glyphs) glyph.kerning.fill(0.0f);
  const float s = 1.0f / out.lineHeight;
  for (int i = 0; i < count; ++i) {
    int id = 0;
    float x = 0, y = 0, width = 0, height = 0, xoffset = 0, yoffset = 0, xadvance = 0, page = 0;
    float channel = 0;
    const int matched = std::fscanf(
        file,
        "char id=%i   x=%f     y=%f     width=%f     height=%f     xoffset=%f     yoffset=%f    "
        "xadvance=%f     page=%f  chnl=%f \n",
        &id, &x, &y, &width, &height, &xoffset, &yoffset, &xadvance, &page, &channel);
    // A line that matched nothing left the stream where it was: no later line can match either.
    if (matched <= 0) break;
    if (!IsCharacterCode(id)) {
      std::printf("%s: character %d of the chars list has code %d; only 0-255 are kept\n",
                  path.c_str(), i + 1, id);
      continue;
    }
    GlyphRecord& glyph = out.glyphs[static_cast<size_t>(id)];
    glyph.x = x * s;
    glyph.y = y * s;
    glyph.width = width * s;
    glyph.height = height * s;
    glyph.xoffset = xoffset * s;
    glyph.yoffset = yoffset * s;
    glyph.xadvance = xadvance * s;
    glyph.page = page;
    out.quads[static_cast<size_t>(id)] =
        MakeGlyphQuad(x, y, width, height, out.lineHeight, out.scaleW, out.scaleH);
    out.defined[static_cast<size_t>(id)] = matched == 10;
  }

  count = 0;
  std::fscanf(file, "kernings count=%i\n", &count);
  for (int i = 0; i < count; ++i) {
    int first = 0, second = 0;
    float amount = 0;
    if (std::fscanf(file, "kerning first=%i  second=%i  amount=%f\n", &first, &second,
                    &amount) <= 0) {
      break;
    }
    if (!IsCharacterCode(first) || !IsCharacterCode(second)) {
      std::printf("%s: kerning %d pairs codes %d and %d; only 0-255 are kept\n", path.c_str(),
                  i + 1, first, second);
      continue;
    }
    out.glyphs[static_cast<size_t>(first)].kerning[static_cast<size_t>(second)] = amount * s;
  }
}

}  // namespace grindle::gfx
