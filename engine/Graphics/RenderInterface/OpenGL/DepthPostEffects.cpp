#include "Graphics/RenderInterface/OpenGL/DepthPostEffects.h"

#include <cstdint>
#include <vector>

#include "Graphics/RenderInterface/OpenGL/RenderDevice.h"
#include "Graphics/RenderInterface/OpenGL/RenderMath.h"

namespace grindle::gfx {

namespace {

constexpr int kNoiseSize = 4;

// The depth buffer value of a point `distance` units in front of the eye (depth 0..1 projection).
float DepthAt(float distance) {
  return kFarPlane / (kFarPlane - kNearPlane) * (1.0f - kNearPlane / distance);
}

}  // namespace

void DepthOfFieldPostEffect::Resize(int width, int height) {
  blur_.Resize(width, height);
  blurAgain_.Resize(width, height);
  CreateImageTarget(result_, width, height);
}

RenderTarget* DepthOfFieldPostEffect::Apply(RenderTarget* input) {
  DrawQuadEffect* quad = device_.Effects().drawQuad.get();
  if (quad == nullptr) return input;
  const RenderTarget* blurred = blurAgain_.Blur(blur_.Blur(input->ColorTexture())->ColorTexture());
  const float focus = DepthAt(kDepthOfFieldFocus);
  quad->SetFloat(quad->Var(QuadVar::gDist), focus);
  quad->SetFloat(quad->Var(QuadVar::gRange),
                 DepthAt(kDepthOfFieldFocus + kDepthOfFieldRange) - focus);
  quad->SetTexture(quad->Var(QuadVar::gGlowTexture), sceneDepth_);
  DrawImagePass(device_, QuadTech::DOFTech, result_, input->ColorTexture(),
                blurred->ColorTexture());
  return &result_;
}

SsaoPostEffect::SsaoPostEffect(RenderDevice& device, const GLuint& sceneDepth)
    : device_(device), sceneDepth_(sceneDepth) {
  // Fixed-seed values, so the occlusion pattern is the same on every run.
  std::vector<uint8_t> texels(kNoiseSize * kNoiseSize * 4);
  uint32_t state = 7u;
  for (uint8_t& texel : texels) {
    state = state * 1664525u + 1013904223u;
    texel = static_cast<uint8_t>(state >> 24);
  }
  glCreateTextures(GL_TEXTURE_2D, 1, &noise_);
  glTextureStorage2D(noise_, 1, GL_RGBA8, kNoiseSize, kNoiseSize);
  glTextureSubImage2D(noise_, 0, 0, 0, kNoiseSize, kNoiseSize, GL_RGBA, GL_UNSIGNED_BYTE,
                      texels.data());
  glTextureParameteri(noise_, GL_TEXTURE_MIN_FILTER, GL_NEAREST);
  glTextureParameteri(noise_, GL_TEXTURE_MAG_FILTER, GL_NEAREST);
  glTextureParameteri(noise_, GL_TEXTURE_WRAP_S, GL_REPEAT);
  glTextureParameteri(noise_, GL_TEXTURE_WRAP_T, GL_REPEAT);
}

SsaoPostEffect::~SsaoPostEffect() { glDeleteTextures(1, &noise_); }

RenderTarget* SsaoPostEffect::Apply(RenderTarget* input) {
  DrawQuadEffect* quad = device_.Effects().drawQuad.get();
  if (quad == nullptr) return input;
  quad->SetTexture(quad->Var(QuadVar::gRandomTexture), noise_);
  DrawImagePass(device_, QuadTech::SSAOTech, result_, input->ColorTexture(), sceneDepth_);
  return &result_;
}

}  // namespace grindle::gfx
