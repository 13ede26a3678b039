// One frame in its fixed order: lights, shadows, the lit scene with fog, particles, debug lines,
// the glow pass, post-processing, the overlay, the letterboxed composite and presenting.
#include <stb_image_write.h>

#include <glm/ext/matrix_transform.hpp>
#include <vector>

#include "Core/Database.h"
#include "Core/MessageHandler.h"
#include "Core/WellKnownKeys.h"
#include "Graphics/Effects/EffectSlots.h"
#include "Graphics/Effects/InputLayouts.h"
#include "Graphics/RenderInterface/OpenGL/DatabaseValues.h"
#include "Graphics/RenderInterface/OpenGL/FullScreenQuad.h"
#include "Graphics/RenderInterface/OpenGL/LightManager.h"
#include "Graphics/RenderInterface/OpenGL/MeshPass.h"
#include "Graphics/RenderInterface/OpenGL/OpenGLInterface.h"
#include "Graphics/RenderInterface/OpenGL/PostProcessChain.h"
#include "Graphics/RenderInterface/OpenGL/RenderMath.h"
#include "Graphics/RenderInterface/OpenGL/RenderStates.h"

namespace grindle::gfx {

namespace {

void SetSceneLayout() {
  SetInputLayout(LayoutKind::kPosNormalTex);
  SetTopology(Topology::kTriangleList);
}

template <class EffectType, class Var>
void SetEyeAndFog(EffectType* effect, Var, const glm::vec3& eye) {
  if (effect == nullptr) return;
  effect->SetRaw(effect->Var(Var::gEyePosW), &eye[0], 12);
  effect->SetVector(effect->Var(Var::gFogColor), kFogColor);
  effect->SetFloat(effect->Var(Var::gFogStart), kFogStart);
  effect->SetFloat(effect->Var(Var::gFogRange), kFogRange);
}

bool DrawSceneOverMenu(const Database& root) {
  const DataHandle<Database> globals = root.Find<Database>(KeyOf(WellKnown::GlobalVariables));
  return globals && ReadDouble(*globals, KeyOf(WellKnown::DrawSceneOverMenu), 0.0) == 1.0;
}

}  // namespace

void OpenGLInterface::ScenePass(const glm::mat4& viewProj, float dt) {
  if (SceneShadersLoaded()) {
    BasicEffect* basic = Effects().basic.get();
    basic->SetMatrix(basic->Var(BasicVar::gWorld), glm::mat4(1.0f));
    SetEyeAndFog(basic, BasicVar{}, eyePosition_);
    SetEyeAndFog(Effects().normalMap.get(), SkinnedVar{}, eyePosition_);
    SetEyeAndFog(Effects().instanced.get(), InstancedVar{}, eyePosition_);
    ResetRenderStates();
    lights_->Apply(eyePosition_, viewProj);
    if (meshes_) meshes_->Draw(false, viewProj, *textures_);
    models_.Draw(0, viewProj);
  }
  particles_.Draw(viewProj, dt);
  SetSceneLayout();
  ResetRenderStates();
  if (debugDraw_ && meshes_ && SceneShadersLoaded()) {
    SetInputLayout(LayoutKind::kPosColor);
    SetTopology(Topology::kLineStrip);
    ResetRenderStates();
    meshes_->DrawDebugLines(viewProj);
  }
}

void OpenGLInterface::GlowPass(const glm::mat4& viewProj) {
  if (!SceneShadersLoaded()) return;
  ResetRenderStates();
  currentGlow_->Begin(false);
  if (meshes_) meshes_->Draw(true, viewProj, *textures_);
  models_.Draw(1, viewProj);
  currentGlow_->End();
}

void OpenGLInterface::OverlayPass(const glm::mat4& viewProj) {
  overlayTarget_.Begin(true);
  SetSceneLayout();
  ResetRenderStates(kBlendOverlay);
  messages_.SendArgs("Update3DSoundListener", static_cast<double>(eyePosition_.x),
                     static_cast<double>(eyePosition_.y), static_cast<double>(eyePosition_.z),
                     static_cast<double>(lookDirection_.x), static_cast<double>(lookDirection_.y),
                     static_cast<double>(lookDirection_.z));
  sprites_.Draw(viewProj, static_cast<float>(renderWidth_), static_cast<float>(renderHeight_));
  overlayTarget_.End();
}

void OpenGLInterface::Render(float dt) {
  if (minimized_) return;
  const glm::mat4 viewProj = projection_ * view_;
  SetSceneLayout();
  lights_->Update(eyePosition_);
  ResetRenderStates();
  models_.AdvanceAnimation(viewProj, dt);
  lights_->RenderShadowMaps(meshes_.get());

  context_.BindBackBuffer();
  context_.ClearBackBuffer();

  DrawQuadEffect* quad = Effects().drawQuad.get();
  if (quad != nullptr) quad->SetMatrix(quad->Var(QuadVar::gWorldViewProj), glm::mat4(1.0f));
  sceneTarget_.Begin(false);
  SetSceneLayout();
  ScenePass(viewProj, dt);
  sceneTarget_.End();

  GlowPass(viewProj);

  SetSceneLayout();
  quad_->Bind();
  finalImage_ = postProcessing_->ApplyGlow(&sceneTarget_, currentGlow_, previousGlow_);
  finalImage_ = postProcessing_->ApplyOrdered(finalImage_);

  OverlayPass(viewProj);
  FinalComposite();

  if (!context_.Present()) {
    minimized_ = true;
    messages_.Send("MinimizeWindow");
  }
}

void OpenGLInterface::DrawLayer(const RenderTarget& layer, const glm::mat4& world) {
  DrawQuadEffect* quad = Effects().drawQuad.get();
  if (quad == nullptr) return;
  quad->SetMatrix(quad->Var(QuadVar::gWorldViewProj), world);
  quad->SetTexture(quad->Var(QuadVar::gTexture), layer.ColorTexture());
  const TechniqueHandle technique = quad->Tech(QuadTech::DrawImageTech);
  for (uint32_t pass = 0; pass < quad->PassCount(technique); ++pass) {
    quad->ApplyPass(technique, pass);
    DrawIndexed(FullScreenQuad::kIndexCount, 0, 0);
  }
}

void OpenGLInterface::FinalComposite() {
  ResetRenderStates();
  SetSceneLayout();
  quad_->Bind();
  context_.BindBackBuffer();
  const glm::vec2 scale = LetterboxScale(clientWidth_, clientHeight_, renderWidth_, renderHeight_);
  const glm::mat4 letterbox = glm::scale(glm::mat4(1.0f), glm::vec3(scale, 1.0f));
  if (DrawSceneOverMenu(root_)) {
    DrawLayer(overlayTarget_, letterbox);
    // Picture in picture: half size, moved right and down (scale, then translate).
    const glm::mat4 inset =
        glm::translate(glm::mat4(1.0f), glm::vec3(0.1f * scale.x, -0.3f * scale.y, 0.0f)) *
        glm::scale(glm::mat4(1.0f), glm::vec3(0.5f * scale.x, 0.5f * scale.y, 1.0f));
    DrawLayer(*finalImage_, inset);
  } else {
    DrawLayer(*finalImage_, letterbox);
    DrawLayer(overlayTarget_, letterbox);
  }
  ResetRenderStates();
}

bool OpenGLInterface::WriteScreenshot(const std::string& fileName) const {
  const int width = context_.BackBufferWidth();
  const int height = context_.BackBufferHeight();
  if (width <= 0 || height <= 0) return false;
  std::vector<unsigned char> pixels(static_cast<size_t>(width) * static_cast<size_t>(height) * 4u);
  glPixelStorei(GL_PACK_ALIGNMENT, 1);
  // Row 0 of the back buffer is the top of the image, which is the order PNG rows go in.
  glBindFramebuffer(GL_READ_FRAMEBUFFER, context_.BackBufferFramebuffer());
  glReadBuffer(GL_COLOR_ATTACHMENT0);
  glReadPixels(0, 0, width, height, GL_RGBA, GL_UNSIGNED_BYTE, pixels.data());
  // The composite's alpha is not an image property; the file is opaque as the screen shows it.
  for (size_t i = 3; i < pixels.size(); i += 4) pixels[i] = 255;
  return stbi_write_png(fileName.c_str(), width, height, 4, pixels.data(), width * 4) != 0;
}

}  // namespace grindle::gfx
