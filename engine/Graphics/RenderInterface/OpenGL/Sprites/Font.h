// One loaded bitmap font: the file's data, the page texture, and one immutable vertex buffer
// (four 20-byte vertices) and index buffer (six 16-bit indices) per glyph, so drawing a character
// is a bind and a six-index draw. Main thread, GL context current. The constructor stops the
// program when the file cannot be opened or its page cannot be made into a texture.
#pragma once

#include <epoxy/gl.h>

#include <array>
#include <memory>
#include <string>
#include <string_view>

#include "Graphics/RenderInterface/OpenGL/GpuBuffer.h"
#include "Graphics/RenderInterface/OpenGL/Sprites/FontFile.h"

namespace grindle::gfx {

inline constexpr std::string_view kFontFolder = "Assets/Fonts/";

// Assets/Fonts/<name>.fnt
std::string FontFilePath(std::string_view name);

class Font {
 public:
  explicit Font(std::string_view name);
  ~Font();
  Font(const Font&) = delete;
  Font& operator=(const Font&) = delete;

  const FontFileData& Data() const { return *data_; }
  const GlyphRecord& Glyph(unsigned char id) const { return data_->glyphs[id]; }
  float Kerning(unsigned char first, unsigned char second) const {
    return data_->glyphs[first].kerning[second];
  }
  const GpuBuffer& VertexBuffer(unsigned char id) const { return vertexBuffers_[id]; }
  const GpuBuffer& IndexBuffer(unsigned char id) const { return indexBuffers_[id]; }
  GLuint PageTexture() const { return pageTexture_; }
  float LineHeight() const { return data_->lineHeight; }
  float Base() const { return data_->base; }

 private:
  std::unique_ptr<FontFileData> data_;
  GLuint pageTexture_ = 0;
  std::array<GpuBuffer, kFontGlyphCount> vertexBuffers_;
  std::array<GpuBuffer, kFontGlyphCount> indexBuffers_;
};

}  // namespace grindle::gfx
