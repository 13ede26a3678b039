// The effect slots every graphics manager reaches its effects through, the start-up and scene sets
// that fill them, and their hot reload. The renderer's device objects own the one library; main
// thread with the GL context current. A slot is null until its set is loaded; the scene set loads
// once (later requests do nothing) until Unload, which runs before the context goes away.
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

class InputLayouts;

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

// The folder effect files are read from, relative to the working directory.
inline constexpr std::string_view kShaderFolder = "shaders/";

class EffectLibrary {
 public:
  // Layouts are rebuilt from the slots whenever a set loads or one of its files reloads.
  EffectLibrary(MessageHandler& messages, InputLayouts& layouts)
      : messages_(messages), layouts_(layouts) {}
  ~EffectLibrary() { Unload(); }
  EffectLibrary(const EffectLibrary&) = delete;
  EffectLibrary& operator=(const EffectLibrary&) = delete;

  EffectSlots& Slots() { return slots_; }
  const EffectSlots& Slots() const { return slots_; }

  // Creates the start-up wrappers (sprite, sky, draw-quad, fire, explosion, rain), listens to
  // "ResourceReloaded" so that an edited effect file is rebuilt, then creates the start-up layouts.
  void LoadStartup();
  // Creates the scene wrappers once; sets the flag that the renderer reads to draw the 3D scene.
  void LoadScene();
  bool SceneLoaded() const { return sceneLoaded_; }
  // Releases every wrapper and layout, clears the flag and stops listening.
  void Unload();

  // Rebuilds whichever wrapper was made from `fileName` (a name as the resource manager reports
  // it); anything that is not an ".fx" file, or an effect not loaded, is left alone. Returns
  // whether a wrapper was rebuilt.
  bool Reload(std::string_view fileName);

 private:
  void CreateSet(bool isStartup);

  MessageHandler& messages_;
  InputLayouts& layouts_;
  EffectSlots slots_;
  bool sceneLoaded_ = false;
  bool listening_ = false;
};

// Every effect file of both sets, as the resource manager names them ("shaders/basic.fx").
std::vector<std::string> EffectFilePaths();

}  // namespace grindle::gfx
