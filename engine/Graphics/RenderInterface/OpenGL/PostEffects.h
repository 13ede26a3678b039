// The concrete post effects of the chain, each a few full-screen passes of the draw-quad effect.
// Main thread, GL context current; only PostProcessChain makes them.
#pragma once

#include "Graphics/Effects/EffectWrappers.h"
#include "Graphics/RenderInterface/OpenGL/PostProcessChain.h"

namespace grindle::gfx {

class RenderDevice;

// Sizes a post effect's own target: colour only, since image passes neither test nor read depth.
// The image an effect hands on may be read smaller (by a blur at half size, or by the letterboxed
// composite) and keeps its mip chain; a step inside an effect that is read only at its own size or
// larger (the blurs' halves, the bright parts, the glow mix) needs none.
inline void CreateImageTarget(RenderTarget& target, int width, int height) {
  target.Create(width, height, {.depth = false});
}
inline void CreateStepTarget(RenderTarget& target, int width, int height) {
  target.Create(width, height, {.mipChain = false, .depth = false});
}

// Draws `source` (and `second` as gTexture2 when given) into `target` with one technique; the
// full-screen quad must be bound.
void DrawImagePass(RenderDevice& device, QuadTech technique, RenderTarget& target, GLuint source,
                   GLuint second = 0);

// One technique over the whole image (grey scale, sepia, black and white, hue, Sobel, outline).
class ImagePostEffect final : public IPostEffect {
 public:
  ImagePostEffect(RenderDevice& device, const char* name, QuadTech technique)
      : device_(device), name_(name), technique_(technique) {}
  const char* Name() const override { return name_; }
  void Resize(int width, int height) override { CreateImageTarget(target_, width, height); }
  RenderTarget* Apply(RenderTarget* input) override;

 private:
  RenderDevice& device_;
  const char* name_;
  QuadTech technique_;
  RenderTarget target_;
};

// A separable blur at half resolution: horizontal then vertical.
class BlurPostEffect final : public IPostEffect {
 public:
  explicit BlurPostEffect(RenderDevice& device) : device_(device) {}
  const char* Name() const override { return "Blur"; }
  void Resize(int width, int height) override;
  RenderTarget* Apply(RenderTarget* input) override;
  RenderTarget* Blur(GLuint source);

 private:
  RenderDevice& device_;
  RenderTarget horizontal_;
  RenderTarget vertical_;
};

// Bright parts blurred and added back.
class BloomPostEffect final : public IPostEffect {
 public:
  explicit BloomPostEffect(RenderDevice& device) : device_(device), blur_(device) {}
  const char* Name() const override { return "Bloom"; }
  void Resize(int width, int height) override;
  RenderTarget* Apply(RenderTarget* input) override;

 private:
  RenderDevice& device_;
  RenderTarget bright_;
  BlurPostEffect blur_;
  RenderTarget result_;
};

// The glow: this frame's glow target blurred, mixed with the previous frame's for a short trail,
// and added to the scene.
class GlowPostEffect final : public IPostEffect {
 public:
  explicit GlowPostEffect(RenderDevice& device) : device_(device), blur_(device) {}
  const char* Name() const override { return "Glow"; }
  void Resize(int width, int height) override;
  RenderTarget* Apply(RenderTarget* input) override;
  void SetGlowTargets(RenderTarget* current, RenderTarget* previous) {
    current_ = current;
    previous_ = previous;
  }

 private:
  RenderDevice& device_;
  RenderTarget* current_ = nullptr;
  RenderTarget* previous_ = nullptr;
  RenderTarget mixed_;
  BlurPostEffect blur_;
  RenderTarget result_;
};

}  // namespace grindle::gfx
