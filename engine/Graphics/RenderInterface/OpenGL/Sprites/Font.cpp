#include "Graphics/RenderInterface/OpenGL/Sprites/Font.h"

#include <cstdint>
#include <cstdio>

#include "Core/Assert.h"
#include "Graphics/RenderInterface/OpenGL/TextureStore.h"

namespace grindle::gfx {

namespace {

constexpr std::array<uint16_t, 6> kGlyphIndices = {0, 1, 2, 0, 2, 3};

}  // namespace

std::string FontFilePath(std::string_view name) {
  return std::string(kFontFolder) + std::string(name) + ".fnt";
}

Font::Font(std::string_view name) : data_(std::make_unique<FontFileData>()) {
  const std::string path = FontFilePath(name);
  std::FILE* pFile = std::fopen(path.c_str(), "r");
  char details[512];
  std::snprintf(details, sizeof(details), "Failed to open font file %s", path.c_str());
  GRINDLE_ASSERT_TEXT(pFile == nullptr, "!pFile", details);
  ReadFontFile(pFile, path, *data_);
  std::fclose(pFile);

  pageTexture_ = LoadTextureFile(std::string(kFontFolder) + data_->pageFile);
  GRINDLE_ASSERT_TEXT(pageTexture_ == 0, "FAILED(result)", "Failed to create font texture from file");

  for (size_t id = 0; id < kFontGlyphCount; ++id) {
    if (!data_->defined[id]) continue;
    vertexBuffers_[id] = GpuBuffer(data_->quads[id].data(), sizeof(GlyphQuad));
    indexBuffers_[id] = GpuBuffer(kGlyphIndices.data(), sizeof(kGlyphIndices));
  }
}

Font::~Font() { glDeleteTextures(1, &pageTexture_); }

}  // namespace grindle::gfx
