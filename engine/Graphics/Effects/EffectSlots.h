// The process-wide effect slots every graphics manager reaches its effects through, the start-up
// and scene sets that fill them, and their hot reload. Main thread with the GL context current.
// A slot is null until its set is loaded; the scene set loads once (later requests do nothing)
// until UnloadAllEffects, which the renderer calls before its context goes away.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "Graphics/Effects/EffectWrappers.h"

namespace grindle {
class MessageHandler;
}  // namespace grindle

namespace grindle::gfx {

struct EffectSlots {
  // scene set
  std::unique_ptr<BasicEffect> basic;
  std::unique_ptr<ColorEffect> color;
  std::unique_ptr<NormalMapEffect> normalMap;
  std::unique_ptr<BuildShadowMapEffect> shadowMap;
  std::unique_ptr<BasicInstancedEffect> instanced;
  std::unique_ptr<RenderGlowMapEffect> glowMap;
  std::unique_ptr<ParticleEffect> explosionSmall;
  std::unique_ptr<ParticleEffect> explosionMine;
  std::unique_ptr<ParticleEffect> dust;
  std::unique_ptr<ParticleEffect> blink;
  // start-up set
  std::unique_ptr<SpriteEffect> sprite;
  std::unique_ptr<SkyEffect> sky;
  std::unique_ptr<DrawQuadEffect> drawQuad;
  std::unique_ptr<ParticleEffect> fire;
  std::unique_ptr<ParticleEffect> explosion;
  std::unique_ptr<ParticleEffect> rain;
};

EffectSlots& Effects();

// The folder effect files are read from, relative to the working directory.
inline constexpr std::string_view kShaderFolder = "shaders/";

// Creates the start-up wrappers (sprite, sky, draw-quad, fire, explosion, rain), listens to
// "ResourceReloaded" so that an edited effect file is rebuilt, then creates the start-up layouts.
void LoadStartupShaders(MessageHandler& messages);
// Creates the scene wrappers once; sets the flag that the renderer reads to draw the 3D scene.
void LoadSceneShaders();
bool SceneShadersLoaded();
// Releases every wrapper and layout, clears the flag and stops listening.
void UnloadAllEffects(MessageHandler& messages);

// Every effect file of both sets, as the resource manager names them ("shaders/basic.fx").
std::vector<std::string> EffectFilePaths();

// Rebuilds whichever wrapper was made from `fileName` (a name as the resource manager reports it);
// anything that is not an ".fx" file, or an effect not loaded, is left alone. Returns whether a
// wrapper was rebuilt.
bool ReloadEffectFile(std::string_view fileName);

}  // namespace grindle::gfx
