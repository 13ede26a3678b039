// The wrapper of each effect file: the file's techniques and variables looked up once by their
// fixed names, so that draws index handles instead of searching strings. Main thread only. The enum
// order is the lookup order; `Tech(...)`/`Var(...)` of a name the file lacks give inert handles.
#pragma once

#include <array>
#include <cstddef>
#include <string>

#include "Graphics/Effects/Effect.h"

namespace grindle::gfx {

template <class TechEnum, size_t kTechCount, class VarEnum, size_t kVarCount>
class WrappedEffect : public Effect {
 public:
  using TechniqueNames = std::array<const char*, kTechCount>;
  using VariableNames = std::array<const char*, kVarCount>;

  WrappedEffect(std::string fileName, const TechniqueNames& techniqueNames,
                const VariableNames& variableNames)
      : Effect(std::move(fileName)) {
    for (size_t i = 0; i < kTechCount; ++i) techniques_[i] = Technique(techniqueNames[i]);
    for (size_t i = 0; i < kVarCount; ++i) variables_[i] = Variable(variableNames[i]);
  }

  TechniqueHandle Tech(TechEnum which) const { return techniques_[static_cast<size_t>(which)]; }
  VariableHandle Var(VarEnum which) const { return variables_[static_cast<size_t>(which)]; }

 private:
  std::array<TechniqueHandle, kTechCount> techniques_{};
  std::array<VariableHandle, kVarCount> variables_{};
};

// The five lighting techniques, one per combination of maps a material has.
enum class LitTech {
  D3D10_Tex_Spec_Norm,
  D3D10_Tex_Norm,
  D3D10_Tex_Spec,
  D3D10_NoTextures,
  D3D10_Tex
};

enum class BasicVar {
  gWorldViewProj,
  gWorld,
  gWorldInvTranspose,
  gTexTransform,
  gEyePosW,
  gFogColor,
  gFogStart,
  gFogRange,
  gHasShadow,
  gDirLights,
  gSpotLights,
  gMaterial,
  gDiffuseMap,
  gNormalMap,
  gSpecularMap,
  gDirShadowTransforms,
  gDirShadowMaps,
  gSpotShadowTransforms,
  gSpotShadowMaps,
  gDirFloateans,
  gSpotFloateans
};
class BasicEffect final : public WrappedEffect<LitTech, 5, BasicVar, 21> {
 public:
  explicit BasicEffect(std::string fileName);
};

enum class ColorTech { ColorTech };
enum class ColorVar { gWVP, gColor };
class ColorEffect final : public WrappedEffect<ColorTech, 1, ColorVar, 2> {
 public:
  explicit ColorEffect(std::string fileName);
};

enum class SkinnedTech {
  D3D10_Tex_Spec_Norm,
  D3D10_Tex_Norm,
  D3D10_Tex_Spec,
  D3D10_NoTextures,
  D3D10_Tex,
  D3D10_ToGlowMap
};
enum class SkinnedVar {
  gWorldViewProj,
  gWorldViewProjTex,
  gWorld,
  gWorldInvTranspose,
  gBoneTransforms,
  gTexTransform,
  gEyePosW,
  gFogColor,
  gFogStart,
  gFogRange,
  gDirLights,
  gSpotLights,
  gMaterial,
  gDiffuseMap,
  gNormalMap,
  gSpecularMap,
  gDirShadowTransforms,
  gDirShadowMaps,
  gSpotShadowTransforms,
  gSpotShadowMaps,
  gSsaoMap,
  gDirFloateans,
  gSpotFloateans
};
class NormalMapEffect final : public WrappedEffect<SkinnedTech, 6, SkinnedVar, 23> {
 public:
  explicit NormalMapEffect(std::string fileName);
};

enum class ShadowTech {
  BuildShadowMapTech,
  BuildShadowMapTechInstanced,
  BuildShadowMapTechSkinned,
  BuildShadowMapAlphaClipTech,
  TessBuildShadowMapTech,
  TessBuildShadowMapAlphaClipTech
};
enum class ShadowVar {
  gViewProj,
  gWorldViewProj,
  gWorld,
  gWorldInvTranspose,
  gTexTransform,
  gEyePosW,
  gHeightScale,
  gMaxTessDistance,
  gMinTessDistance,
  gMinTessFactor,
  gMaxTessFactor,
  gDiffuseMap
};
class BuildShadowMapEffect final : public WrappedEffect<ShadowTech, 6, ShadowVar, 12> {
 public:
  explicit BuildShadowMapEffect(std::string fileName);
};

enum class InstancedVar {
  gViewProj,
  gWorld,
  gWorldInvTranspose,
  gTexTransform,
  gEyePosW,
  gFogColor,
  gFogStart,
  gFogRange,
  gDirLights,
  gSpotLights,
  gMaterial,
  gDiffuseMap,
  gNormalMap,
  gSpecularMap,
  gDirShadowTransforms,
  gDirShadowMaps,
  gSpotShadowTransforms,
  gSpotShadowMaps,
  gDirFloateans,
  gSpotFloateans
};
class BasicInstancedEffect final : public WrappedEffect<LitTech, 5, InstancedVar, 20> {
 public:
  explicit BasicInstancedEffect(std::string fileName);
};

enum class GlowTech { D3D10_MainTech, D3D10_NonSkinnedTech };
enum class GlowVar { gWorldViewProj, gDiffuseMap, gBoneTransforms, gGlowColor };
class RenderGlowMapEffect final : public WrappedEffect<GlowTech, 2, GlowVar, 4> {
 public:
  explicit RenderGlowMapEffect(std::string fileName);
};

enum class ParticleTech { StreamOutTech, DrawTech };
enum class ParticleVar {
  gViewProj,
  gGameTime,
  gTimeStep,
  gEyePosW,
  gEmitPosW,
  gEmitDirW,
  gTexArray,
  gRandomTex
};
class ParticleEffect final : public WrappedEffect<ParticleTech, 2, ParticleVar, 8> {
 public:
  explicit ParticleEffect(std::string fileName);
};

enum class SpriteTech {
  TextHUDTech,
  TextWorldTech,
  SpriteHUDTech,
  SpriteWorldTech,
  SpriteHUDScrollTech
};
enum class SpriteVar {
  gWVP,
  gColor,
  gFontTexture,
  gPosition,
  gScreenWidth,
  gScreenHeight,
  gFontScale,
  gSpriteWidth,
  gSpriteHeight,
  gWidthPercentage,
  gTexTransform
};
class SpriteEffect final : public WrappedEffect<SpriteTech, 5, SpriteVar, 11> {
 public:
  explicit SpriteEffect(std::string fileName);
};

enum class SkyTech { SkyTech };
enum class SkyVar { gWorldViewProj, gCubeMap };
class SkyEffect final : public WrappedEffect<SkyTech, 1, SkyVar, 2> {
 public:
  explicit SkyEffect(std::string fileName);
};

enum class QuadTech {
  DrawImageTech,
  DrawImageAlphaBlendTech,
  BlurHorizontalTech,
  BlurVerticalTech,
  SobelTech,
  GlowTech,
  OutlineTech,
  AddTech,
  DOFTech,
  HueTech,
  BloomTech,
  SSAOTech,
  BlackAndWhiteTech,
  GreyScaleTech,
  SepiaTech
};
enum class QuadVar {
  gHue,
  gDist,
  gRange,
  gBlendFactor,
  gWorldViewProj,
  gTexture,
  gTexture2,
  gGlowTexture,
  gRandomTexture
};
// The post-processing chain (its effects and their targets) is owned beside this wrapper by the
// renderer's PostProcessChain, which is built from it.
class DrawQuadEffect final : public WrappedEffect<QuadTech, 15, QuadVar, 9> {
 public:
  explicit DrawQuadEffect(std::string fileName);
};

}  // namespace grindle::gfx
