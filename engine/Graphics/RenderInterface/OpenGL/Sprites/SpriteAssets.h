// Fonts (Assets/Fonts/<name>.fnt) and sprite images (Assets/Sprites/<file>) by name, loaded on
// first use and shared by every sprite that names them. With a resource manager, writing a font
// file, its page or an image replaces it in place at the next frame. Main thread, GL context
// current. A font whose file is missing or an image that cannot be read is reported once and
// stands in as null (fonts) or the default texture (images); a font's missing page stops the
// program, as the font loader does.
#pragma once

#include <epoxy/gl.h>

#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "Graphics/RenderInterface/OpenGL/Sprites/Font.h"

namespace grindle {
class ResourceManager;
class MetaResource;
}  // namespace grindle

namespace grindle::gfx {

inline constexpr std::string_view kSpriteFolder = "Assets/Sprites/";

struct SpriteImage {
  GLuint texture = 0;
  int width = 0;
  int height = 0;
};

class SpriteAssets {
 public:
  SpriteAssets(GLuint defaultTexture, ResourceManager* resources);
  ~SpriteAssets();
  SpriteAssets(const SpriteAssets&) = delete;
  SpriteAssets& operator=(const SpriteAssets&) = delete;

  // Null when the font's file does not exist. The pointer is valid until the font is reloaded.
  const Font* FindFont(std::string_view name);
  const SpriteImage& FindImage(std::string_view fileName);
  GLuint DefaultTexture() const { return defaultTexture_; }
  // Prints the font's warning about characters it lacks, the first time only.
  void WarnMissingCharacters(std::string_view fontName);

 private:
  struct FontSlot {
    std::unique_ptr<Font> font;
    bool warnedMissing = false;
  };
  class Watch;

  void LoadImage(const std::string& fileName, SpriteImage& image);
  void LoadFont(const std::string& name, FontSlot& slot);
  void WatchFile(std::string path, void (SpriteAssets::*reload)(const std::string&),
                 std::string key);
  void ReloadFont(const std::string& name);
  void ReloadImage(const std::string& fileName);

  GLuint defaultTexture_;
  ResourceManager* resources_;
  std::unordered_map<std::string, FontSlot> fonts_;
  std::unordered_map<std::string, SpriteImage> images_;
  std::vector<std::unique_ptr<MetaResource>> watches_;
};

}  // namespace grindle::gfx
