// The renderer's off-screen targets at the render resolution: the lit scene, the overlay (HUD and
// menus), two glow targets that swap every frame so the glow pass can read the previous frame's,
// and a spare. Also the overlay's clear colour and the composite of scene and overlay onto the
// letterboxed back buffer. Main thread, GL context current; the renderer owns one set.
#pragma once

#include <glm/vec2.hpp>
#include <glm/vec4.hpp>

#include "Graphics/RenderInterface/OpenGL/RenderTarget.h"

namespace grindle::gfx {

class RenderDevice;

class RenderTargets {
 public:
  RenderTargets() = default;
  RenderTargets(const RenderTargets&) = delete;
  RenderTargets& operator=(const RenderTargets&) = delete;

  // (Re)creates all five at the render resolution.
  void Create(int width, int height);
  void SwapGlow();

  RenderTarget& Scene() { return scene_; }
  const RenderTarget& Scene() const { return scene_; }
  RenderTarget& Overlay() { return overlay_; }
  RenderTarget* CurrentGlow() const { return currentGlow_; }
  RenderTarget* PreviousGlow() const { return previousGlow_; }
  const RenderTarget& GlowA() const { return glowA_; }

  // What the overlay clears to: transparent black until the menu flow sets it, so an overlay
  // nobody draws into leaves the scene visible.
  void SetAlternateClearColor(const glm::vec4& color) { alternateClearColor_ = color; }
  const glm::vec4& AlternateClearColor() const { return alternateClearColor_; }

  // Draws `image` and the overlay onto the bound back buffer, letterboxed from the render size to
  // the client size; with `sceneOverMenu` the overlay fills the frame and the image is a half-size
  // inset. The quad and its layout must be bound.
  void Composite(RenderDevice& device, const RenderTarget& image, bool sceneOverMenu,
                 glm::vec2 letterbox) const;

 private:
  RenderTarget scene_;
  RenderTarget overlay_;
  RenderTarget glowA_;
  RenderTarget glowB_;
  RenderTarget spare_;  // sized with the others; no pass draws into it, so it is never allocated
  RenderTarget* currentGlow_ = &glowA_;
  RenderTarget* previousGlow_ = &glowB_;
  glm::vec4 alternateClearColor_{0.0f};
};

}  // namespace grindle::gfx
