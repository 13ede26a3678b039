// The post effects that read the scene's depth as well as the image: depth of field (sharp at the
// focus distance, blurred away from it) and screen-space ambient occlusion (creases and contacts
// darkened). The chain hands them the scene target's depth texture each frame. Main thread, GL
// context current; only PostProcessChain makes them.
#pragma once

#include "Graphics/RenderInterface/OpenGL/PostEffects.h"

namespace grindle::gfx {

// World units from the eye that stay sharp, and how far in front and behind the blur is complete.
inline constexpr float kDepthOfFieldFocus = 20.0f;
inline constexpr float kDepthOfFieldRange = 15.0f;

class DepthOfFieldPostEffect final : public IPostEffect {
 public:
  DepthOfFieldPostEffect(RenderDevice& device, const GLuint& sceneDepth)
      : device_(device), sceneDepth_(sceneDepth), blur_(device), blurAgain_(device) {}
  const char* Name() const override { return "DepthOfField"; }
  void Resize(int width, int height) override;
  RenderTarget* Apply(RenderTarget* input) override;

 private:
  RenderDevice& device_;
  const GLuint& sceneDepth_;
  // Blurred twice, so that what lies out of focus is clearly soft.
  BlurPostEffect blur_;
  BlurPostEffect blurAgain_;
  RenderTarget result_;
};

class SsaoPostEffect final : public IPostEffect {
 public:
  SsaoPostEffect(RenderDevice& device, const GLuint& sceneDepth);
  ~SsaoPostEffect() override;
  const char* Name() const override { return "SSAO"; }
  void Resize(int width, int height) override { CreateImageTarget(result_, width, height); }
  RenderTarget* Apply(RenderTarget* input) override;

 private:
  RenderDevice& device_;
  const GLuint& sceneDepth_;
  GLuint noise_ = 0;  // a tile of random directions that turns the samples pixel by pixel
  RenderTarget result_;
};

}  // namespace grindle::gfx
