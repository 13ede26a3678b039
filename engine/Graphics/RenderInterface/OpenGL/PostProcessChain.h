// The post-processing chain: the post effects built from the draw-quad effect's techniques, each
// with its own targets at the render resolution. A fixed list holds every effect (the glow effect
// third, fed the two glow targets each frame); the ordered list is what the frame runs after the
// glow, chosen by names from the fixed list (by the level file's `PostProcessing` or a message).
// Main thread, GL context current; the full-screen quad and the position-normal-texture layout must
// be bound when Apply runs.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "Graphics/RenderInterface/OpenGL/RenderTarget.h"

namespace grindle::gfx {

class IPostEffect {
 public:
  virtual ~IPostEffect() = default;
  virtual const char* Name() const = 0;
  virtual void Resize(int width, int height) = 0;
  // Draws from `input` into the effect's own target and returns that target.
  virtual RenderTarget* Apply(RenderTarget* input) = 0;
};

// The level entry (a string) naming the level's ordered list, as SetOrder takes it.
inline constexpr std::string_view kPostProcessingEntry = "PostProcessing";

class GlowPostEffect;
class RenderDevice;

class PostProcessChain {
 public:
  explicit PostProcessChain(RenderDevice& device);
  ~PostProcessChain();

  void Resize(int width, int height);
  // The glow pass of the frame: the scene with this frame's glow and the fading previous one.
  RenderTarget* ApplyGlow(RenderTarget* scene, RenderTarget* currentGlow,
                          RenderTarget* previousGlow);
  // Every effect of the ordered list in turn; `sceneDepth` is the scene's depth texture, which
  // depth of field and SSAO read.
  RenderTarget* ApplyOrdered(RenderTarget* image, GLuint sceneDepth);

  // Sets the ordered list from comma-separated effect names ("Bloom,Sepia"); names the fixed list
  // lacks are reported and skipped. An empty text empties the list.
  void SetOrder(std::string_view names);

 private:
  std::vector<std::unique_ptr<IPostEffect>> fixed_;
  std::vector<IPostEffect*> ordered_;
  GlowPostEffect* glow_ = nullptr;
  GLuint sceneDepth_ = 0;
};

}  // namespace grindle::gfx
