#include "Graphics/RenderInterface/OpenGL/PostEffects.h"

#include "Graphics/RenderInterface/OpenGL/RenderDevice.h"
#include "Graphics/RenderInterface/OpenGL/RenderStates.h"

namespace grindle::gfx {

namespace {

// Strength of last frame's glow in this frame's, which leaves a short trail behind moving glows.
constexpr float kPreviousGlowWeight = 0.5f;

int Half(int size) { return size > 1 ? size / 2 : 1; }

}  // namespace

void DrawImagePass(RenderDevice& device, QuadTech technique, RenderTarget& target, GLuint source,
                   GLuint second) {
  DrawQuadEffect* quad = device.Effects().drawQuad.get();
  if (quad == nullptr) return;
  target.Begin();
  ResetRenderStates();
  SetDepthStencilState(kDepthDisabled);
  quad->SetTexture(quad->Var(QuadVar::gTexture), source);
  quad->SetTexture(quad->Var(QuadVar::gTexture2), second);
  const TechniqueHandle handle = quad->Tech(technique);
  for (uint32_t pass = 0; pass < quad->PassCount(handle); ++pass) {
    quad->ApplyPass(handle, pass);
    device.Assembler().DrawIndexed(FullScreenQuad::kIndexCount, 0, 0);
  }
  target.End(device.Copier());
}

RenderTarget* ImagePostEffect::Apply(RenderTarget* input) {
  DrawImagePass(device_, technique_, target_, input->ColorTexture());
  return &target_;
}

void BlurPostEffect::Resize(int width, int height) {
  CreateStepTarget(horizontal_, Half(width), Half(height));
  CreateStepTarget(vertical_, Half(width), Half(height));
}

RenderTarget* BlurPostEffect::Blur(GLuint source) {
  DrawImagePass(device_, QuadTech::BlurHorizontalTech, horizontal_, source);
  DrawImagePass(device_, QuadTech::BlurVerticalTech, vertical_, horizontal_.ColorTexture());
  return &vertical_;
}

RenderTarget* BlurPostEffect::Apply(RenderTarget* input) { return Blur(input->ColorTexture()); }

void BloomPostEffect::Resize(int width, int height) {
  CreateStepTarget(bright_, Half(width), Half(height));
  blur_.Resize(Half(width) * 2, Half(height) * 2);
  CreateImageTarget(result_, width, height);
}

RenderTarget* BloomPostEffect::Apply(RenderTarget* input) {
  DrawImagePass(device_, QuadTech::BloomTech, bright_, input->ColorTexture());
  const RenderTarget* blurred = blur_.Blur(bright_.ColorTexture());
  if (DrawQuadEffect* quad = device_.Effects().drawQuad.get())
    quad->SetFloat(quad->Var(QuadVar::gBlendFactor), 1.0f);
  DrawImagePass(device_, QuadTech::AddTech, result_, input->ColorTexture(),
                blurred->ColorTexture());
  return &result_;
}

void GlowPostEffect::Resize(int width, int height) {
  CreateStepTarget(mixed_, Half(width), Half(height));
  blur_.Resize(width, height);
  CreateImageTarget(result_, width, height);
}

RenderTarget* GlowPostEffect::Apply(RenderTarget* input) {
  DrawQuadEffect* quad = device_.Effects().drawQuad.get();
  if (quad == nullptr || current_ == nullptr || previous_ == nullptr) return input;
  // Glow targets nothing has drawn into yet (frames before the scene shaders load) are black, and
  // so is their blurred mix: the glow then reads no texture, which samples as black too.
  GLuint glow = 0;
  if (current_->IsAllocated() || previous_->IsAllocated()) {
    quad->SetFloat(quad->Var(QuadVar::gBlendFactor), kPreviousGlowWeight);
    DrawImagePass(device_, QuadTech::AddTech, mixed_, current_->ColorTexture(),
                  previous_->ColorTexture());
    glow = blur_.Blur(mixed_.ColorTexture())->ColorTexture();
  }
  quad->SetTexture(quad->Var(QuadVar::gGlowTexture), glow);
  DrawImagePass(device_, QuadTech::GlowTech, result_, input->ColorTexture());
  return &result_;
}

}  // namespace grindle::gfx
