// One frame in its fixed order: lights, shadows, the lit scene with fog, particles, debug lines,
// the glow pass, post-processing, the overlay, the letterboxed composite and presenting.
#include "Core/Database.h"
#include "Core/MessageHandler.h"
#include "Core/Messages/Catalogue.h"
#include "Core/WellKnownKeys.h"
#include "Core/DatabaseNumbers.h"
#include "Graphics/RenderInterface/OpenGL/LightManager.h"
#include "Graphics/RenderInterface/OpenGL/MeshPass.h"
#include "Graphics/RenderInterface/OpenGL/Models/ModelManager.h"
#include "Graphics/RenderInterface/OpenGL/OpenGLInterface.h"
#include "Graphics/RenderInterface/OpenGL/PostProcessChain.h"
#include "Graphics/RenderInterface/OpenGL/RenderMath.h"
#include "Graphics/RenderInterface/OpenGL/RenderStates.h"
#include "Graphics/RenderInterface/OpenGL/Sprites/SpriteManager.h"

namespace grindle::gfx {

namespace {

void SetSceneLayout(InputAssembler& assembler) {
  assembler.SetInputLayout(LayoutKind::kPosNormalTex);
  assembler.SetTopology(Topology::kTriangleList);
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
  InputAssembler& assembler = device_.Assembler();
  const glm::vec3& eye = frame_.EyePosition();
  if (device_.SceneShadersLoaded()) {
    EffectSlots& effects = device_.Effects();
    BasicEffect* basic = effects.basic.get();
    basic->SetMatrix(basic->Var(BasicVar::gWorld), glm::mat4(1.0f));
    SetEyeAndFog(basic, BasicVar{}, eye);
    SetEyeAndFog(effects.normalMap.get(), SkinnedVar{}, eye);
    SetEyeAndFog(effects.instanced.get(), InstancedVar{}, eye);
    ResetRenderStates();
    lights_->Apply(eye, viewProj);
    meshes_->Draw(false, viewProj, device_.Textures());
    models_->Draw(0, viewProj, device_.Textures());
  }
  particles_.Draw(viewProj, dt);
  SetSceneLayout(assembler);
  ResetRenderStates();
  if (debugDraw_ && device_.SceneShadersLoaded()) {
    assembler.SetInputLayout(LayoutKind::kPosColor);
    assembler.SetTopology(Topology::kLineStrip);
    ResetRenderStates();
    meshes_->DrawDebugLines(viewProj);
  }
}

void OpenGLInterface::GlowPass(const glm::mat4& viewProj) {
  if (!device_.SceneShadersLoaded()) return;
  ResetRenderStates();
  targets_.CurrentGlow()->Begin();
  meshes_->Draw(true, viewProj, device_.Textures());
  models_->Draw(1, viewProj, device_.Textures());
  targets_.CurrentGlow()->End(device_.Copier());
}

void OpenGLInterface::OverlayPass(const glm::mat4& viewProj) {
  targets_.Overlay().Begin(targets_.AlternateClearColor());
  SetSceneLayout(device_.Assembler());
  ResetRenderStates(kBlendOverlay);
  const glm::vec3& eye = frame_.EyePosition();
  const glm::vec3& look = frame_.LookDirection();
  msg::Post(messages_, msg::kUpdate3DSoundListener, eye.x, eye.y, eye.z, look.x, look.y, look.z);
  sprites_->Draw(viewProj, static_cast<float>(renderWidth_), static_cast<float>(renderHeight_));
  targets_.Overlay().End(device_.Copier());
}

void OpenGLInterface::Render(float dt) {
  if (minimized_) return;
  InputAssembler& assembler = device_.Assembler();
  const glm::mat4 viewProj = frame_.Projection() * frame_.View();
  SetSceneLayout(assembler);
  lights_->Update(frame_.EyePosition());
  ResetRenderStates();
  models_->AdvanceAnimation(viewProj, dt);
  lights_->RenderShadowMaps(meshes_.get(), models_.get());

  device_.Context().BindBackBuffer();
  device_.Context().ClearBackBuffer();

  DrawQuadEffect* quad = device_.Effects().drawQuad.get();
  if (quad != nullptr) quad->SetMatrix(quad->Var(QuadVar::gWorldViewProj), glm::mat4(1.0f));
  targets_.Scene().Begin();
  SetSceneLayout(assembler);
  ScenePass(viewProj, dt);
  targets_.Scene().End(device_.Copier());

  GlowPass(viewProj);

  SetSceneLayout(assembler);
  device_.Quad().Bind(assembler);
  RenderTarget* image = postProcessing_->ApplyGlow(&targets_.Scene(), targets_.CurrentGlow(),
                                                   targets_.PreviousGlow());
  image = postProcessing_->ApplyOrdered(image, targets_.Scene().DepthTexture());

  OverlayPass(viewProj);
  FinalComposite(*image);

  if (!device_.Present()) {
    minimized_ = true;
    msg::Post(messages_, msg::kMinimizeWindow);
  }
}

void OpenGLInterface::FinalComposite(const RenderTarget& image) {
  ResetRenderStates();
  SetSceneLayout(device_.Assembler());
  device_.Quad().Bind(device_.Assembler());
  device_.Context().BindBackBuffer();
  targets_.Composite(device_, image, DrawSceneOverMenu(root_),
                     LetterboxScale(clientWidth_, clientHeight_, renderWidth_, renderHeight_));
  ResetRenderStates();
}

}  // namespace grindle::gfx
