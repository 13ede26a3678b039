#include "Graphics/RenderInterface/OpenGL/Sprites/TextLayout.h"

#include <algorithm>

namespace grindle::gfx {

namespace {

constexpr uint32_t kNewline = '\n';
constexpr uint32_t kInvalid = 0xFFFD;

// One code point from UTF-8; a malformed byte is one invalid code point of its own.
uint32_t NextCodePoint(std::string_view text, size_t& i) {
  const auto byte = [&](size_t k) { return static_cast<unsigned char>(text[k]); };
  const unsigned char lead = byte(i);
  if (lead == '\\' && i + 1 < text.size() && text[i + 1] == 'n') {
    i += 2;
    return kNewline;
  }
  size_t length = 0;
  uint32_t code = 0;
  if (lead < 0x80) {
    ++i;
    return lead;
  } else if ((lead & 0xE0) == 0xC0) {
    length = 2;
    code = lead & 0x1Fu;
  } else if ((lead & 0xF0) == 0xE0) {
    length = 3;
    code = lead & 0x0Fu;
  } else if ((lead & 0xF8) == 0xF0) {
    length = 4;
    code = lead & 0x07u;
  } else {
    ++i;
    return kInvalid;
  }
  if (i + length > text.size()) {
    ++i;
    return kInvalid;
  }
  for (size_t k = 1; k < length; ++k) {
    if ((byte(i + k) & 0xC0) != 0x80) {
      ++i;
      return kInvalid;
    }
    code = (code << 6) | (byte(i + k) & 0x3Fu);
  }
  i += length;
  return code;
}

class LineBuilder {
 public:
  LineBuilder(const FontFileData& font, float maxWidth, TextBlock& out)
      : font_(font), maxWidth_(maxWidth), out_(out) {}

  void Add(uint32_t code) {
    if (code == kNewline) {
      EndLine();
      return;
    }
    if (code >= static_cast<uint32_t>(kFontGlyphCount) || !font_.defined[code]) {
      out_.skippedCharacters = true;
      return;
    }
    const auto id = static_cast<unsigned char>(code);
    const GlyphRecord& glyph = font_.glyphs[id];
    if (previous_ >= 0) pen_ += font_.glyphs[static_cast<size_t>(previous_)].kerning[id];
    previous_ = id;
    if (id == ' ') {
      inWord_ = false;
      pen_ += glyph.xadvance;
      return;
    }
    if (!inWord_) {
      inWord_ = true;
      wordStart_ = out_.glyphs.size();
      wordPen_ = pen_;
      rightBeforeWord_ = right_;
    }
    if (maxWidth_ > 0.0f && pen_ + glyph.xadvance > maxWidth_ && wordStart_ > lineStart_) {
      WrapWord();
    }
    out_.glyphs.push_back({id, pen_ + glyph.xoffset, static_cast<float>(line_) + glyph.yoffset});
    pen_ += glyph.xadvance;
    right_ = pen_;
  }

  void EndLine() {
    lineStarts_.push_back(lineStart_);
    lineWidths_.push_back(right_);
    ++line_;
    lineStart_ = out_.glyphs.size();
    pen_ = right_ = 0.0f;
    previous_ = -1;
    inWord_ = false;
  }

  void Align(HorizontalAlign align) {
    const float factor = align == HorizontalAlign::kLeft     ? 0.0f
                         : align == HorizontalAlign::kCenter ? 0.5f
                                                             : 1.0f;
    out_.width = lineWidths_.empty() ? 0.0f
                                     : *std::max_element(lineWidths_.begin(), lineWidths_.end());
    out_.height = static_cast<float>(line_);
    for (size_t l = 0; l < lineStarts_.size(); ++l) {
      const size_t end = l + 1 < lineStarts_.size() ? lineStarts_[l + 1] : out_.glyphs.size();
      const float shift = (out_.width - lineWidths_[l]) * factor;
      for (size_t g = lineStarts_[l]; g < end; ++g) out_.glyphs[g].x += shift;
    }
  }

 private:
  // The word being placed moves to a new line of its own, starting at the left edge.
  void WrapWord() {
    const size_t wordStart = wordStart_;
    const float shift = wordPen_;
    const float pen = pen_ - shift;
    const int previous = previous_;
    right_ = rightBeforeWord_;
    EndLine();
    lineStart_ = wordStart;
    for (size_t g = wordStart; g < out_.glyphs.size(); ++g) {
      out_.glyphs[g].x -= shift;
      out_.glyphs[g].y += 1.0f;
    }
    inWord_ = true;
    wordStart_ = wordStart;
    wordPen_ = rightBeforeWord_ = 0.0f;
    pen_ = right_ = pen;
    previous_ = previous;
  }

  const FontFileData& font_;
  float maxWidth_;
  TextBlock& out_;
  int line_ = 0;
  size_t lineStart_ = 0;
  float pen_ = 0.0f;
  float right_ = 0.0f;
  int previous_ = -1;
  bool inWord_ = false;
  size_t wordStart_ = 0;
  float wordPen_ = 0.0f;
  float rightBeforeWord_ = 0.0f;
  std::vector<size_t> lineStarts_;
  std::vector<float> lineWidths_;
};

}  // namespace

void LayOutText(const FontFileData& font, std::string_view text, float maxWidth,
                HorizontalAlign align, TextBlock& out) {
  out.glyphs.clear();
  out.skippedCharacters = false;
  LineBuilder builder(font, maxWidth, out);
  for (size_t i = 0; i < text.size();) builder.Add(NextCodePoint(text, i));
  builder.EndLine();
  builder.Align(align);
}

}  // namespace grindle::gfx
