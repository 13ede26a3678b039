// Draws the current level's `SpriteWorld` components (in the scene, optionally facing the camera)
// and then its `SpriteHUD` components (on screen) into the overlay target: images from
// Assets/Sprites/ and text in bitmap fonts, alpha-blended with each component's `Color`. Every
// frame reads the components afresh, so changes made by scripts or messages show at once.
// Main thread, GL context current; created by the renderer, which hands it each started level.
#pragma once

#include <glm/mat4x4.hpp>
#include <glm/vec2.hpp>
#include <string>

#include "Core/WellKnownKeys.h"
#include "Graphics/RenderInterface/OpenGL/GpuBuffer.h"
#include "Graphics/RenderInterface/OpenGL/Sprites/SpriteAssets.h"
#include "Graphics/RenderInterface/OpenGL/Sprites/SpriteSettings.h"
#include "Graphics/RenderInterface/OpenGL/Sprites/TextLayout.h"

namespace grindle {
class Database;
class ResourceManager;
}  // namespace grindle

namespace grindle::gfx {

class RenderDevice;
class SpriteEffect;

// HUD sizes are given in pixels of a 720-line screen and scale with the render height.
inline constexpr float kHudReferenceHeight = 720.0f;
// World sprites: one image or font pixel at PixelScale 1 is this many world units.
inline constexpr float kWorldUnitsPerPixel = 0.01f;

class SpriteManager {
 public:
  // `view` is the renderer's view matrix, read when billboards are drawn; `resources`, when not
  // null, watches the fonts and images for hot reload.
  SpriteManager(RenderDevice& device, const Database& root, const glm::mat4& view,
                ResourceManager* resources);

  void SetLevel(Database& level);
  void Draw(const glm::mat4& viewProj, float renderWidth, float renderHeight);

  SpriteAssets& Assets() { return assets_; }

 private:
  // Where a sprite is drawn: its anchor and the size of one pixel, in the pass's units.
  struct Placement {
    glm::vec2 anchor;
    float unitsPerPixel;
    bool isWorld;
  };

  void DrawComponents(const Database& objects, WellKnown kind, const glm::mat4& viewProj,
                      glm::vec2 renderSize);
  void DrawText(const SpriteSettings& sprite, const Placement& placement);
  void DrawImage(const SpriteSettings& sprite, const SpriteImage& image, glm::vec2 size,
                 const Placement& placement);
  glm::mat4 WorldMatrix(const Database& object, const SpriteSettings& sprite) const;
  // The sprite effect when it is loaded, else null.
  SpriteEffect* SpriteFx() const;

  RenderDevice& device_;
  const Database& root_;
  const glm::mat4& view_;
  std::string sLevelName_;
  SpriteAssets assets_;
  GpuBuffer unitQuadVertices_;
  GpuBuffer unitQuadIndices_;
  TextBlock block_;  // reused so that laying text out allocates nothing once warm
  std::string numberText_;  // a numeric `Message` as drawn
};

}  // namespace grindle::gfx
