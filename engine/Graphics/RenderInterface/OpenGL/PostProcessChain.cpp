#include "Graphics/RenderInterface/OpenGL/PostProcessChain.h"

#include <algorithm>
#include <cstdio>

#include "Graphics/RenderInterface/OpenGL/DepthPostEffects.h"

namespace grindle::gfx {

PostProcessChain::PostProcessChain(RenderDevice& device) {
  fixed_.push_back(std::make_unique<ImagePostEffect>(device, "GreyScale", QuadTech::GreyScaleTech));
  fixed_.push_back(std::make_unique<BloomPostEffect>(device));
  auto glow = std::make_unique<GlowPostEffect>(device);
  glow_ = glow.get();
  fixed_.push_back(std::move(glow));  // third, where the frame hands it the glow targets
  fixed_.push_back(std::make_unique<ImagePostEffect>(device, "Sepia", QuadTech::SepiaTech));
  fixed_.push_back(
      std::make_unique<ImagePostEffect>(device, "BlackAndWhite", QuadTech::BlackAndWhiteTech));
  fixed_.push_back(std::make_unique<ImagePostEffect>(device, "Hue", QuadTech::HueTech));
  fixed_.push_back(std::make_unique<ImagePostEffect>(device, "Sobel", QuadTech::SobelTech));
  fixed_.push_back(std::make_unique<ImagePostEffect>(device, "Outline", QuadTech::OutlineTech));
  fixed_.push_back(std::make_unique<BlurPostEffect>(device));
  fixed_.push_back(std::make_unique<DepthOfFieldPostEffect>(device, sceneDepth_));
  fixed_.push_back(std::make_unique<SsaoPostEffect>(device, sceneDepth_));
}

PostProcessChain::~PostProcessChain() = default;

void PostProcessChain::Resize(int width, int height) {
  for (auto& effect : fixed_) effect->Resize(width, height);
}

RenderTarget* PostProcessChain::ApplyGlow(RenderTarget* scene, RenderTarget* currentGlow,
                                          RenderTarget* previousGlow) {
  glow_->SetGlowTargets(currentGlow, previousGlow);
  return glow_->Apply(scene);
}

RenderTarget* PostProcessChain::ApplyOrdered(RenderTarget* image, GLuint sceneDepth) {
  sceneDepth_ = sceneDepth;
  for (IPostEffect* effect : ordered_) image = effect->Apply(image);
  return image;
}

void PostProcessChain::SetOrder(std::string_view names) {
  ordered_.clear();
  size_t start = 0;
  while (start < names.size()) {
    size_t comma = names.find(',', start);
    if (comma == std::string_view::npos) comma = names.size();
    const std::string_view name = names.substr(start, comma - start);
    start = comma + 1;
    if (name.empty()) continue;
    IPostEffect* match = nullptr;
    for (auto& effect : fixed_) {
      if (name == effect->Name()) match = effect.get();
    }
    // The glow runs before the list anyway, and an effect twice would read its own target.
    const bool listed = std::find(ordered_.begin(), ordered_.end(), match) != ordered_.end();
    if (match == nullptr || match == glow_ || listed) {
      std::printf(
          "Post effect \"%.*s\" is not one of the chain's effects or is listed twice; skipped\n",
          static_cast<int>(name.size()), name.data());
      continue;
    }
    ordered_.push_back(match);
  }
}

}  // namespace grindle::gfx
