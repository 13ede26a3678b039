#include "Graphics/RenderInterface/OpenGL/TextureStore.h"

#include <stb_image.h>

#include <cstdio>
#include <vector>

#include "Graphics/RenderInterface/OpenGL/ImageMips.h"

namespace grindle::gfx {

namespace {

// Shown instead of the default texture when even its file is missing: obviously not content.
GLuint CreateCheckerboard() {
  constexpr int kSize = 64;
  std::vector<unsigned char> pixels(kSize * kSize * 4);
  for (int y = 0; y < kSize; ++y) {
    for (int x = 0; x < kSize; ++x) {
      const bool dark = ((x / 8) + (y / 8)) % 2 == 0;
      unsigned char* p = &pixels[static_cast<size_t>((y * kSize + x) * 4)];
      p[0] = dark ? 90 : 160;
      p[1] = dark ? 90 : 160;
      p[2] = dark ? 96 : 168;
      p[3] = 255;
    }
  }
  return CreateTextureRGBA8(kSize, kSize, pixels.data());
}

}  // namespace

GLuint CreateTextureRGBA8(int width, int height, const unsigned char* pixels) {
  const int levels = MipLevelCount(width, height);
  GLuint texture = 0;
  glCreateTextures(GL_TEXTURE_2D, 1, &texture);
  glTextureStorage2D(texture, levels, GL_RGBA8, width, height);
  glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
  glTextureSubImage2D(texture, 0, 0, 0, width, height, GL_RGBA, GL_UNSIGNED_BYTE, pixels);
  int index = 0;
  for (const ImageLevel& level : LevelsBelow(pixels, width, height)) {
    glTextureSubImage2D(texture, ++index, 0, 0, level.width, level.height, GL_RGBA,
                        GL_UNSIGNED_BYTE, level.rgba.data());
  }
  glTextureParameteri(texture, GL_TEXTURE_MIN_FILTER, GL_LINEAR_MIPMAP_LINEAR);
  glTextureParameteri(texture, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
  glTextureParameteri(texture, GL_TEXTURE_WRAP_S, GL_REPEAT);
  glTextureParameteri(texture, GL_TEXTURE_WRAP_T, GL_REPEAT);
  return texture;
}

TextureStore::TextureStore(std::string defaultTextureName)
    : sDefaultName_(std::move(defaultTextureName)) {
  defaultTexture_ = Load(sDefaultName_, true);
  textures_[sDefaultName_] = defaultTexture_;
}

TextureStore::~TextureStore() {
  for (auto& [name, texture] : textures_) {
    if (texture != defaultTexture_) glDeleteTextures(1, &texture);
  }
  glDeleteTextures(1, &defaultTexture_);
}

GLuint LoadTextureFile(const std::string& path, const char** reason) {
  int width = 0, height = 0, channels = 0;
  unsigned char* pixels = stbi_load(path.c_str(), &width, &height, &channels, 4);
  if (pixels == nullptr) {
    if (reason != nullptr) *reason = stbi_failure_reason();
    return 0;
  }
  const GLuint texture = CreateTextureRGBA8(width, height, pixels);
  stbi_image_free(pixels);
  return texture;
}

GLuint TextureStore::Load(std::string_view name, bool isDefault) {
  const std::string path = std::string(kTextureFolder) + std::string(name);
  const char* reason = "";
  const GLuint texture = LoadTextureFile(path, &reason);
  if (texture == 0) {
    std::printf("Texture %s could not be loaded (%s); using %s instead\n", path.c_str(), reason,
                isDefault ? "a checkerboard" : sDefaultName_.c_str());
    return isDefault ? CreateCheckerboard() : defaultTexture_;
  }
  return texture;
}

GLuint TextureStore::Find(std::string_view name) {
  const auto found = textures_.find(std::string(name));
  if (found != textures_.end()) return found->second;
  // A failed name maps to the default from now on, so it warns once.
  const GLuint texture = Load(name, false);
  textures_.emplace(std::string(name), texture);
  return texture;
}

}  // namespace grindle::gfx
