#include "Graphics/RenderInterface/OpenGL/Sprites/SpriteAssets.h"

#include <cstdio>
#include <filesystem>

#include "Core/MetaResource.h"
#include "Core/ResourceManager.h"
#include "Graphics/RenderInterface/OpenGL/TextureStore.h"

namespace grindle::gfx {

// A watched file; writing it reloads the asset it belongs to.
class SpriteAssets::Watch final : public MetaResource {
 public:
  Watch(std::string path, SpriteAssets& owner, void (SpriteAssets::*reload)(const std::string&),
        std::string key)
      : MetaResource(std::move(path)), owner_(owner), reload_(reload), key_(std::move(key)) {}
  void Reload() override { (owner_.*reload_)(key_); }

 private:
  SpriteAssets& owner_;
  void (SpriteAssets::*reload_)(const std::string&);
  std::string key_;
};

SpriteAssets::SpriteAssets(GLuint defaultTexture, ResourceManager* resources)
    : defaultTexture_(defaultTexture), resources_(resources) {}

SpriteAssets::~SpriteAssets() {
  for (auto& watch : watches_) resources_->Unregister(watch.get());
  for (auto& [name, image] : images_) {
    if (image.texture != defaultTexture_) glDeleteTextures(1, &image.texture);
  }
}

void SpriteAssets::WatchFile(std::string path, void (SpriteAssets::*reload)(const std::string&),
                             std::string key) {
  if (resources_ == nullptr) return;
  for (const auto& watch : watches_) {
    if (watch->Name() == path) return;
  }
  watches_.push_back(std::make_unique<Watch>(std::move(path), *this, reload, std::move(key)));
  resources_->Register(watches_.back().get());
}

void SpriteAssets::LoadFont(const std::string& name, FontSlot& slot) {
  const std::string path = FontFilePath(name);
  // Watched even while missing, so that saving the font makes it appear.
  WatchFile(path, &SpriteAssets::ReloadFont, name);
  if (!std::filesystem::is_regular_file(path)) {
    std::printf("Font %s not found: its text is shown as a default-texture box\n", path.c_str());
    slot.font.reset();
    return;
  }
  slot.font = std::make_unique<Font>(name);
  WatchFile(std::string(kFontFolder) + slot.font->Data().pageFile, &SpriteAssets::ReloadFont,
            name);
}

const Font* SpriteAssets::FindFont(std::string_view name) {
  const auto found = fonts_.find(std::string(name));
  if (found != fonts_.end()) return found->second.font.get();
  FontSlot& slot = fonts_[std::string(name)];
  LoadFont(std::string(name), slot);
  return slot.font.get();
}

void SpriteAssets::ReloadFont(const std::string& name) {
  FontSlot& slot = fonts_[name];
  slot.warnedMissing = false;
  LoadFont(name, slot);
}

void SpriteAssets::WarnMissingCharacters(std::string_view fontName) {
  FontSlot& slot = fonts_[std::string(fontName)];
  if (slot.warnedMissing) return;
  slot.warnedMissing = true;
  std::printf("Font %s lacks characters used in a message; they are skipped\n",
              FontFilePath(fontName).c_str());
}

void SpriteAssets::LoadImage(const std::string& fileName, SpriteImage& image) {
  const std::string path = std::string(kSpriteFolder) + fileName;
  if (image.texture != 0 && image.texture != defaultTexture_) glDeleteTextures(1, &image.texture);
  const char* reason = "";
  image.texture = LoadTextureFile(path, &reason);
  if (image.texture == 0) {
    std::printf("Sprite image %s could not be loaded (%s); showing the default texture\n",
                path.c_str(), reason);
    image = {defaultTexture_, 64, 64};
  } else {
    glGetTextureLevelParameteriv(image.texture, 0, GL_TEXTURE_WIDTH, &image.width);
    glGetTextureLevelParameteriv(image.texture, 0, GL_TEXTURE_HEIGHT, &image.height);
  }
  WatchFile(path, &SpriteAssets::ReloadImage, fileName);
}

const SpriteImage& SpriteAssets::FindImage(std::string_view fileName) {
  const auto found = images_.find(std::string(fileName));
  if (found != images_.end()) return found->second;
  SpriteImage& image = images_[std::string(fileName)];
  LoadImage(std::string(fileName), image);
  return image;
}

void SpriteAssets::ReloadImage(const std::string& fileName) {
  LoadImage(fileName, images_[fileName]);
}

}  // namespace grindle::gfx
