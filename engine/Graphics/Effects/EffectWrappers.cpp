#include "Graphics/Effects/EffectWrappers.h"

namespace grindle::gfx {

namespace {

constexpr BasicEffect::TechniqueNames kLitTechniques = {
    "D3D10_Tex_Spec_Norm", "D3D10_Tex_Norm", "D3D10_Tex_Spec", "D3D10_NoTextures", "D3D10_Tex"};

}  // namespace

BasicEffect::BasicEffect(std::string fileName)
    : WrappedEffect(std::move(fileName), kLitTechniques,
                    {"gWorldViewProj",     "gWorld",
                     "gWorldInvTranspose", "gTexTransform",
                     "gEyePosW",           "gFogColor",
                     "gFogStart",          "gFogRange",
                     "gHasShadow",         "gDirLights",
                     "gSpotLights",        "gMaterial",
                     "gDiffuseMap",        "gNormalMap",
                     "gSpecularMap",       "gDirShadowTransforms",
                     "gDirShadowMaps",     "gSpotShadowTransforms",
                     "gSpotShadowMaps",    "gDirFloateans",
                     "gSpotFloateans"}) {}

ColorEffect::ColorEffect(std::string fileName)
    : WrappedEffect(std::move(fileName), {"ColorTech"}, {"gWVP", "gColor"}) {}

NormalMapEffect::NormalMapEffect(std::string fileName)
    : WrappedEffect(std::move(fileName),
                    {"D3D10_Tex_Spec_Norm", "D3D10_Tex_Norm", "D3D10_Tex_Spec", "D3D10_NoTextures",
                     "D3D10_Tex", "D3D10_ToGlowMap"},
                    {"gWorldViewProj",
                     "gWorldViewProjTex",
                     "gWorld",
                     "gWorldInvTranspose",
                     "gBoneTransforms",
                     "gTexTransform",
                     "gEyePosW",
                     "gFogColor",
                     "gFogStart",
                     "gFogRange",
                     "gDirLights",
                     "gSpotLights",
                     "gMaterial",
                     "gDiffuseMap",
                     "gNormalMap",
                     "gSpecularMap",
                     "gDirShadowTransforms",
                     "gDirShadowMaps",
                     "gSpotShadowTransforms",
                     "gSpotShadowMaps",
                     "gSsaoMap",
                     "gDirFloateans",
                     "gSpotFloateans"}) {}

BuildShadowMapEffect::BuildShadowMapEffect(std::string fileName)
    : WrappedEffect(std::move(fileName),
                    {"BuildShadowMapTech", "BuildShadowMapTechInstanced",
                     "BuildShadowMapTechSkinned", "BuildShadowMapAlphaClipTech",
                     "TessBuildShadowMapTech", "TessBuildShadowMapAlphaClipTech"},
                    {"gViewProj", "gWorldViewProj", "gWorld", "gWorldInvTranspose", "gTexTransform",
                     "gEyePosW", "gHeightScale", "gMaxTessDistance", "gMinTessDistance",
                     "gMinTessFactor", "gMaxTessFactor", "gDiffuseMap"}) {}

BasicInstancedEffect::BasicInstancedEffect(std::string fileName)
    : WrappedEffect(std::move(fileName), kLitTechniques,
                    {"gViewProj",
                     "gWorld",
                     "gWorldInvTranspose",
                     "gTexTransform",
                     "gEyePosW",
                     "gFogColor",
                     "gFogStart",
                     "gFogRange",
                     "gDirLights",
                     "gSpotLights",
                     "gMaterial",
                     "gDiffuseMap",
                     "gNormalMap",
                     "gSpecularMap",
                     "gDirShadowTransforms",
                     "gDirShadowMaps",
                     "gSpotShadowTransforms",
                     "gSpotShadowMaps",
                     "gDirFloateans",
                     "gSpotFloateans"}) {}

RenderGlowMapEffect::RenderGlowMapEffect(std::string fileName)
    : WrappedEffect(std::move(fileName), {"D3D10_MainTech", "D3D10_NonSkinnedTech"},
                    {"gWorldViewProj", "gDiffuseMap", "gBoneTransforms", "gGlowColor"}) {}

ParticleEffect::ParticleEffect(std::string fileName)
    : WrappedEffect(std::move(fileName), {"StreamOutTech", "DrawTech"},
                    {"gViewProj", "gGameTime", "gTimeStep", "gEyePosW", "gEmitPosW", "gEmitDirW",
                     "gTexArray", "gRandomTex"}) {}

SpriteEffect::SpriteEffect(std::string fileName)
    : WrappedEffect(
          std::move(fileName),
          {"TextHUDTech", "TextWorldTech", "SpriteHUDTech", "SpriteWorldTech",
           "SpriteHUDScrollTech"},
          {"gWVP", "gColor", "gFontTexture", "gPosition", "gScreenWidth", "gScreenHeight",
           "gFontScale", "gSpriteWidth", "gSpriteHeight", "gWidthPercentage", "gTexTransform"}) {}

SkyEffect::SkyEffect(std::string fileName)
    : WrappedEffect(std::move(fileName), {"SkyTech"}, {"gWorldViewProj", "gCubeMap"}) {}

DrawQuadEffect::DrawQuadEffect(std::string fileName)
    : WrappedEffect(
          std::move(fileName),
          {"DrawImageTech", "DrawImageAlphaBlendTech", "BlurHorizontalTech", "BlurVerticalTech",
           "SobelTech", "GlowTech", "OutlineTech", "AddTech", "DOFTech", "HueTech", "BloomTech",
           "SSAOTech", "BlackAndWhiteTech", "GreyScaleTech", "SepiaTech"},
          {"gHue", "gDist", "gRange", "gBlendFactor", "gWorldViewProj", "gTexture", "gTexture2",
           "gGlowTexture", "gRandomTexture"}) {}

}  // namespace grindle::gfx
