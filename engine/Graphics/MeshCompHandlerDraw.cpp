// The passes of the mesh component handler: lit, glow, shadow casters and debug lines.
#include <glm/gtc/matrix_inverse.hpp>

#include "Core/Assert.h"
#include "Core/Database.h"
#include "Core/WellKnownKeys.h"
#include "Graphics/MeshCompHandler.h"
#include "Graphics/Meshes/MeshDrawInputs.h"
#include "Graphics/RenderInterface/OpenGL/RenderDevice.h"

namespace grindle::gfx {
namespace {

// A zero colour lets the colour effect draw the debug box in its vertices' translucent green.
constexpr glm::vec4 kUseVertexColour(0.0f);

template <class EffectT, class Tech>
void DrawPasses(InputAssembler& assembler, EffectT& effect, Tech technique,
                const MeshRecord& record) {
  const TechniqueHandle handle = effect.Tech(technique);
  for (uint32_t pass = 0; pass < effect.PassCount(handle); ++pass) {
    effect.ApplyPass(handle, pass);
    assembler.DrawIndexed(record.indexCount, 0, 0);
  }
}

// The object's world, its inverse transpose, world x viewProj (GLM products read right to left, so
// viewProj * world) and its texture transform, which the lit and shadow effects name alike.
template <class EffectT, class Var>
void SetObjectMatrices(EffectT& effect, Var, const Database& object, const glm::mat4& viewProj) {
  const glm::mat4 world = ReadWorldMatrix(object);
  effect.SetMatrix(effect.Var(Var::gWorld), world);
  effect.SetMatrix(effect.Var(Var::gWorldInvTranspose), glm::inverseTranspose(world));
  effect.SetMatrix(effect.Var(Var::gWorldViewProj), viewProj * world);
  effect.SetMatrix(effect.Var(Var::gTexTransform), ReadTextureTransform(object));
}

}  // namespace

const MeshRecord& MeshCompHandler::BindMesh(const Database& meshComponent) {
  const int meshIndex = *meshComponent.Find<int>(KeyOf(WellKnown::MeshIndex));
  GRINDLE_ASSERT(meshIndex < 0, "MeshIndex does not name a mesh of the store");
  const MeshRecord& record = store_.At(static_cast<uint32_t>(meshIndex));
  device_.Assembler().BindVertexBuffer(0, record.vertices, sizeof(GeneratedVertex));
  device_.Assembler().BindIndexBuffer(record.indices);
  return record;
}

void MeshCompHandler::Draw(bool glowPass, const glm::mat4& viewProj, TextureStore& textures) {
  const DataHandle<Database> dhCurLevel = FindCurrentLevel();
  GRINDLE_ASSERT(!dhCurLevel.IsValid(), "Current level not found");
  const LevelMeshes meshes = FindLevelMeshes(*dhCurLevel);
  if (meshes.list == nullptr) return;
  if (glowPass) {
    DrawGlow(meshes, viewProj, textures);
  } else {
    DrawLit(meshes, viewProj, textures);
  }
}

void MeshCompHandler::DrawLit(const LevelMeshes& meshes, const glm::mat4& viewProj,
                              TextureStore& textures) {
  if (!device_.Effects().basic) return;
  BasicEffect& effect = *device_.Effects().basic;
  device_.Assembler().SetInputLayout(LayoutKind::kMesh);
  listed_.ForEach(
      *meshes.list, *meshes.gameObjects, [&](const Database& object, const Database& mesh) {
        const MeshRecord& record = BindMesh(mesh);
        SetObjectMatrices(effect, BasicVar{}, object, viewProj);

        const LitTechniqueChoice choice = ChooseLitTechnique(mesh);
        if (choice.diffuseMap) {
          effect.SetTexture(effect.Var(BasicVar::gDiffuseMap), textures.Find(*choice.diffuseMap));
        }
        if (choice.normalMap) {
          effect.SetTexture(effect.Var(BasicVar::gNormalMap), textures.Find(*choice.normalMap));
        }
        if (choice.specularMap) {
          effect.SetTexture(effect.Var(BasicVar::gSpecularMap), textures.Find(*choice.specularMap));
        }
        const MaterialBlock material = ReadMaterial(object);
        effect.SetRaw(effect.Var(BasicVar::gMaterial), &material, sizeof(material));
        effect.SetFloat(effect.Var(BasicVar::gHasShadow), ReadShadowFlag(object));
        DrawPasses(device_.Assembler(), effect, choice.technique, record);
      });
}

void MeshCompHandler::DrawGlow(const LevelMeshes& meshes, const glm::mat4& viewProj,
                               TextureStore& textures) {
  if (!device_.Effects().glowMap) return;
  RenderGlowMapEffect& effect = *device_.Effects().glowMap;
  BasicEffect* basic = device_.Effects().basic.get();
  const uint32_t textureNameKey = KeyOf(WellKnown::TextureName);
  device_.Assembler().SetInputLayout(LayoutKind::kMesh);
  listed_.ForEach(
      *meshes.list, *meshes.gameObjects, [&](const Database& object, const Database& mesh) {
        const std::optional<glm::vec4> glow = ReadGlowColour(object);
        if (!glow) return;
        const MeshRecord& record = BindMesh(mesh);
        effect.SetMatrix(effect.Var(GlowVar::gWorldViewProj), viewProj * ReadWorldMatrix(object));
        effect.SetVector(effect.Var(GlowVar::gGlowColor), *glow);
        if (basic) basic->SetFloat(basic->Var(BasicVar::gHasShadow), ReadShadowFlag(object));
        // An untextured object glows through the default texture rather than whatever was bound
        // last.
        const auto textureName = mesh.Find<std::string>(textureNameKey);
        const GLuint texture =
            textureName ? textures.Find(*textureName) : textures.DefaultTexture();
        const TechniqueHandle technique = effect.Tech(GlowTech::D3D10_NonSkinnedTech);
        for (uint32_t pass = 0; pass < effect.PassCount(technique); ++pass) {
          effect.SetTexture(effect.Var(GlowVar::gDiffuseMap), texture);
          effect.ApplyPass(technique, pass);
          device_.Assembler().DrawIndexed(record.indexCount, 0, 0);
        }
      });
}

void MeshCompHandler::DrawShadowCasters(const glm::mat4& lightViewProj) {
  const LevelMeshes meshes = FindCurrentLevelMeshes();
  if (meshes.list == nullptr || !device_.Effects().shadowMap) return;
  BuildShadowMapEffect& effect = *device_.Effects().shadowMap;
  device_.Assembler().SetInputLayout(LayoutKind::kMesh);
  effect.SetMatrix(effect.Var(ShadowVar::gViewProj), lightViewProj);
  listed_.ForEach(
      *meshes.list, *meshes.gameObjects, [&](const Database& object, const Database& mesh) {
        const MeshRecord& record = BindMesh(mesh);
        SetObjectMatrices(effect, ShadowVar{}, object, lightViewProj);
        DrawPasses(device_.Assembler(), effect, ShadowTech::BuildShadowMapTech, record);
      });
}

void MeshCompHandler::DrawDebugLines(const glm::mat4& viewProj) {
  const LevelMeshes meshes = FindCurrentLevelMeshes();
  if (meshes.list == nullptr || !device_.Effects().color) return;
  ColorEffect& effect = *device_.Effects().color;
  const MeshRecord& box = store_.DebugMesh();
  device_.Assembler().BindVertexBuffer(0, box.vertices, sizeof(DebugVertex));
  device_.Assembler().BindIndexBuffer(box.indices);
  effect.SetVector(effect.Var(ColorVar::gColor), kUseVertexColour);
  // The 2 x 2 x 2 box bounds every radius-1 primitive under the object's own transform.
  listed_.ForEach(*meshes.list, *meshes.gameObjects, [&](const Database& object, const Database&) {
    effect.SetMatrix(effect.Var(ColorVar::gWVP), viewProj * ReadWorldMatrix(object));
    DrawPasses(device_.Assembler(), effect, ColorTech::ColorTech, box);
  });
}

}  // namespace grindle::gfx
