// The model manager's passes: instanced static batches and skinned models in the lit pass, the
// glowing ones in the glow pass, and both into the shadow maps.
#include <glm/gtc/matrix_inverse.hpp>

#include "Graphics/RenderInterface/OpenGL/Models/ModelManager.h"
#include "Graphics/RenderInterface/OpenGL/RenderDevice.h"
#include "Graphics/RenderInterface/OpenGL/TextureStore.h"

namespace grindle::gfx {
namespace {

constexpr uint32_t kInstanceStride = sizeof(glm::mat4);

bool HasMap(const std::string& name) { return !name.empty() && name != models::kNoTexture; }

// The file's colours times the object's; the object's specular power wins when it has one.
MaterialBlock Tinted(const models::ModelMaterial& m, const ModelTint& tint) {
  MaterialBlock block{m.ambient, m.diffuse, m.specular, m.reflect};
  if (!tint.present) return block;
  block.ambient *= tint.colours.ambient;
  block.diffuse *= tint.colours.diffuse;
  block.specular = glm::vec4(glm::vec3(block.specular) * glm::vec3(tint.colours.specular),
                             tint.colours.specular.w);
  return block;
}

// Sets the material and maps of one subset on a lit effect and returns its technique.
// The skinned effect's technique enum starts with the same five lighting techniques in the same
// order, so a lighting choice converts to either.
template <class EffectT, class Var, class Tech>
TechniqueHandle PrepareSubset(EffectT& effect, Var, Tech, const models::ModelMaterial& m,
                              const ModelTint& tint, TextureStore& textures) {
  const auto tech = [&](LitTech lit) { return effect.Tech(static_cast<Tech>(lit)); };
  const MaterialBlock block = Tinted(m, tint);
  effect.SetRaw(effect.Var(Var::gMaterial), &block, sizeof(block));
  if (!HasMap(m.diffuseMapName)) return tech(LitTech::D3D10_NoTextures);
  effect.SetTexture(effect.Var(Var::gDiffuseMap), textures.Find(m.diffuseMapName));
  const bool specular = HasMap(m.specularMapName);
  const bool normal = HasMap(m.normalMapName);
  if (specular) effect.SetTexture(effect.Var(Var::gSpecularMap), textures.Find(m.specularMapName));
  if (normal) effect.SetTexture(effect.Var(Var::gNormalMap), textures.Find(m.normalMapName));
  if (specular && normal) return tech(LitTech::D3D10_Tex_Spec_Norm);
  if (specular) return tech(LitTech::D3D10_Tex_Spec);
  if (normal) return tech(LitTech::D3D10_Tex_Norm);
  return tech(LitTech::D3D10_Tex);
}

template <class EffectT, class Draw>
uint32_t RunPasses(EffectT& effect, TechniqueHandle technique, Draw draw) {
  const uint32_t passes = effect.PassCount(technique);
  for (uint32_t pass = 0; pass < passes; ++pass) {
    effect.ApplyPass(technique, pass);
    draw();
  }
  return passes;
}

template <class Vertex>
void BindModel(InputAssembler& assembler, const GpuModel& model) {
  assembler.BindVertexBuffer(0, model.vertices, sizeof(Vertex));
  assembler.BindIndexBuffer(model.indices);
}

// The effect's own texture, or the default one, for what a glowing subset masks its colour with.
GLuint GlowMask(const GpuModel& model, const models::DrawRange& range, TextureStore& textures) {
  const std::string& name = model.materials[range.material].diffuseMapName;
  return HasMap(name) ? textures.Find(name) : textures.DefaultTexture();
}

}  // namespace

void ModelManager::Draw(int pass, const glm::mat4& viewProj, TextureStore& textures) {
  if (pass == 0) {
    DrawLit(viewProj, textures);
  } else {
    DrawGlow(viewProj, textures);
  }
}

void ModelManager::DrawLit(const glm::mat4& viewProj, TextureStore& textures) {
  InputAssembler& assembler = device_.Assembler();
  lastLitDrawCalls_ = 0;
  if (BasicInstancedEffect* effect = device_.Effects().instanced.get();
      effect && !batches_.empty()) {
    assembler.SetInputLayout(LayoutKind::kInstancedMesh);
    effect->SetMatrix(effect->Var(InstancedVar::gViewProj), viewProj);
    effect->SetMatrix(effect->Var(InstancedVar::gWorld), glm::mat4(1.0f));
    effect->SetMatrix(effect->Var(InstancedVar::gWorldInvTranspose), glm::mat4(1.0f));
    effect->SetMatrix(effect->Var(InstancedVar::gTexTransform), glm::mat4(1.0f));
    for (const Batch& batch : batches_) {
      BindModel<models::StaticVertex>(assembler, *batch.model);
      instances_.Bind(assembler.Layouts().CurrentObject(), 1, kInstanceStride,
                      batch.first * size_t{kInstanceStride});
      for (const models::DrawRange& range : batch.model->ranges) {
        const TechniqueHandle technique =
            PrepareSubset(*effect, InstancedVar{}, LitTech{},
                          batch.model->materials[range.material], batch.tint, textures);
        lastLitDrawCalls_ += RunPasses(*effect, technique, [&] {
          assembler.DrawIndexedInstanced(range.indexCount, batch.count, range.startIndex);
        });
      }
    }
  }
  NormalMapEffect* effect = device_.Effects().normalMap.get();
  if (effect == nullptr || skinnedDrawn_.empty()) return;
  assembler.SetInputLayout(LayoutKind::kSkinned);
  effect->SetMatrix(effect->Var(SkinnedVar::gTexTransform), glm::mat4(1.0f));
  for (const Drawn& drawn : skinnedDrawn_) {
    BindModel<models::SkinnedVertex>(assembler, *drawn.model);
    effect->SetMatrix(effect->Var(SkinnedVar::gWorld), drawn.world);
    effect->SetMatrix(effect->Var(SkinnedVar::gWorldInvTranspose),
                      glm::inverseTranspose(drawn.world));
    effect->SetMatrix(effect->Var(SkinnedVar::gWorldViewProj), viewProj * drawn.world);
    effect->SetMatrix(effect->Var(SkinnedVar::gWorldViewProjTex), viewProj * drawn.world);
    effect->SetMatrixArray(effect->Var(SkinnedVar::gBoneTransforms), drawn.bones->data(),
                           static_cast<uint32_t>(drawn.bones->size()));
    for (const models::DrawRange& range : drawn.model->ranges) {
      const TechniqueHandle technique =
          PrepareSubset(*effect, SkinnedVar{}, SkinnedTech{},
                        drawn.model->materials[range.material], drawn.tint, textures);
      lastLitDrawCalls_ += RunPasses(*effect, technique, [&] {
        assembler.DrawIndexed(range.indexCount, range.startIndex, 0);
      });
    }
  }
}

void ModelManager::DrawGlow(const glm::mat4& viewProj, TextureStore& textures) {
  InputAssembler& assembler = device_.Assembler();
  RenderGlowMapEffect* effect = device_.Effects().glowMap.get();
  if (effect == nullptr) return;
  const auto draw = [&](const Drawn& drawn, GlowTech tech) {
    effect->SetMatrix(effect->Var(GlowVar::gWorldViewProj), viewProj * drawn.world);
    effect->SetVector(effect->Var(GlowVar::gGlowColor), *drawn.glow);
    for (const models::DrawRange& range : drawn.model->ranges) {
      effect->SetTexture(effect->Var(GlowVar::gDiffuseMap),
                         GlowMask(*drawn.model, range, textures));
      RunPasses(*effect, effect->Tech(tech),
                [&] { assembler.DrawIndexed(range.indexCount, range.startIndex, 0); });
    }
  };
  assembler.SetInputLayout(LayoutKind::kMesh);
  for (const Drawn& drawn : glowingStatics_) {
    BindModel<models::StaticVertex>(assembler, *drawn.model);
    draw(drawn, GlowTech::D3D10_NonSkinnedTech);
  }
  assembler.SetInputLayout(LayoutKind::kSkinned);
  for (const Drawn& drawn : skinnedDrawn_) {
    if (!drawn.glow) continue;
    BindModel<models::SkinnedVertex>(assembler, *drawn.model);
    effect->SetMatrixArray(effect->Var(GlowVar::gBoneTransforms), drawn.bones->data(),
                           static_cast<uint32_t>(drawn.bones->size()));
    draw(drawn, GlowTech::D3D10_MainTech);
  }
}

void ModelManager::DrawShadowCasters(const glm::mat4& lightViewProj) {
  InputAssembler& assembler = device_.Assembler();
  BuildShadowMapEffect* effect = device_.Effects().shadowMap.get();
  if (effect == nullptr) return;
  effect->SetMatrix(effect->Var(ShadowVar::gViewProj), lightViewProj);
  effect->SetMatrix(effect->Var(ShadowVar::gTexTransform), glm::mat4(1.0f));
  if (!batches_.empty()) {
    assembler.SetInputLayout(LayoutKind::kInstancedMesh);
    const TechniqueHandle technique = effect->Tech(ShadowTech::BuildShadowMapTechInstanced);
    for (const Batch& batch : batches_) {
      BindModel<models::StaticVertex>(assembler, *batch.model);
      instances_.Bind(assembler.Layouts().CurrentObject(), 1, kInstanceStride,
                      batch.first * size_t{kInstanceStride});
      for (const models::DrawRange& range : batch.model->ranges) {
        RunPasses(*effect, technique, [&] {
          assembler.DrawIndexedInstanced(range.indexCount, batch.count, range.startIndex);
        });
      }
    }
  }
  if (skinnedDrawn_.empty()) return;
  // The shadow effect's wrapper has no handle for the palette; the file declares it.
  const VariableHandle bones = effect->Variable("gBoneTransforms");
  assembler.SetInputLayout(LayoutKind::kSkinned);
  const TechniqueHandle technique = effect->Tech(ShadowTech::BuildShadowMapTechSkinned);
  for (const Drawn& drawn : skinnedDrawn_) {
    BindModel<models::SkinnedVertex>(assembler, *drawn.model);
    effect->SetMatrix(effect->Var(ShadowVar::gWorldViewProj), lightViewProj * drawn.world);
    effect->SetMatrixArray(bones, drawn.bones->data(), static_cast<uint32_t>(drawn.bones->size()));
    for (const models::DrawRange& range : drawn.model->ranges) {
      RunPasses(*effect, technique,
                [&] { assembler.DrawIndexed(range.indexCount, range.startIndex, 0); });
    }
  }
}

}  // namespace grindle::gfx
