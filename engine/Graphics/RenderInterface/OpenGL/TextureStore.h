// Textures by file name, loaded on first use from Assets/Textures/ (images top row first, so v = 0
// is the top as the texture coordinates assume) with full mip chains. Main thread, GL context
// current. A file that cannot be read falls back to the default texture, with one warning per name;
// the default itself is a checkerboard generated in memory when its file is missing.
#pragma once

#include <epoxy/gl.h>

#include <string>
#include <string_view>
#include <unordered_map>

namespace grindle::gfx {

inline constexpr std::string_view kTextureFolder = "Assets/Textures/";

class TextureStore {
 public:
  explicit TextureStore(std::string defaultTextureName);
  ~TextureStore();
  TextureStore(const TextureStore&) = delete;
  TextureStore& operator=(const TextureStore&) = delete;

  // The GL texture for `name`, loading it now if needed; never 0.
  GLuint Find(std::string_view name);
  GLuint DefaultTexture() const { return defaultTexture_; }

 private:
  GLuint Load(std::string_view name, bool isDefault);

  std::string sDefaultName_;
  GLuint defaultTexture_ = 0;
  std::unordered_map<std::string, GLuint> textures_;
};

// Creates a 2D texture with a full mip chain (ImageMips) from RGBA8 pixels, first row at v = 0.
GLuint CreateTextureRGBA8(int width, int height, const unsigned char* pixels);
// Loads an image file (path relative to the working directory) as above; 0 when it cannot be
// read, with the reason in `reason` when given.
GLuint LoadTextureFile(const std::string& path, const char** reason = nullptr);

}  // namespace grindle::gfx
