// The OpenGL 4.5 renderer. Its state is split three ways: the device objects (context, effects,
// input assembler, textures, quad: RenderDevice), the render targets at the render resolution
// (RenderTargets) and the per-frame view state (FrameState); beside them it owns the per-kind
// managers and runs the frame in its fixed order. Main thread only. The constructor publishes the
// instance as the current renderer (CurrentRenderer) and the destructor clears it; its message
// handlers (RendererMessages) drive it through the public operations below.
#pragma once

#include <glm/mat4x4.hpp>
#include <glm/vec3.hpp>
#include <glm/vec4.hpp>
#include <memory>
#include <string>
#include <string_view>

#include "Core/DataHandle.h"
#include "Graphics/RenderInterface/OpenGL/FrameState.h"
#include "Graphics/RenderInterface/OpenGL/Particles/ParticleManager.h"
#include "Graphics/RenderInterface/OpenGL/RenderDevice.h"
#include "Graphics/RenderInterface/OpenGL/RenderInterface.h"
#include "Graphics/RenderInterface/OpenGL/RenderTargets.h"

namespace grindle {
class Database;
class Keyboard;
class MessageHandler;
class Mouse;
}  // namespace grindle

namespace grindle::gfx {

class EffectFileWatch;
class LightManager;
class MeshPass;
class ModelManager;
class PostProcessChain;
class SpriteManager;

inline constexpr glm::vec4 kFogColor(0.471f, 0.471f, 0.565f, 1.0f);
inline constexpr float kFogStart = 50.0f;
inline constexpr float kFogRange = 300.0f;

class OpenGLInterface final : public RenderInterface {
 public:
  OpenGLInterface(Database& root, MessageHandler& messages, int clientWidth, int clientHeight);
  ~OpenGLInterface() override;

  bool Initialize(SDL_Window* window) override;
  void Resize() override;
  void Update(float dt) override;
  void Render(float dt) override;
  void SetFieldOfView(float radians) override;

  void SetResolution(int width, int height);
  void SetFullScreen(bool on);
  void SetClientSize(int width, int height);
  // Writes the last composited frame (the back buffer) as a PNG; false when it cannot be written.
  bool WriteScreenshot(const std::string& fileName) const;

  // Game objects and levels as their messages announce them.
  void AddObject(const DataHandle<Database>& object, std::string_view objectName);
  void RemoveObject(std::string_view objectName);
  void OnLevelStart(std::string_view levelName);
  void OnUnloadLevel(std::string_view levelName);
  // Window focus: losing it leaves full screen (and minimises) until it comes back.
  void OnWindowActivated();
  void OnWindowDeactivated();
  void OnKeyboard(const Keyboard& keyboard) { frame_.OnKeyboard(keyboard); }
  void OnMouse(const Mouse& mouse) { frame_.OnMouse(mouse, clientWidth_, clientHeight_); }
  void SetPostProcessing(std::string_view names);
  void SetDebugDraw(bool on) { debugDraw_ = on; }
  void SetAlternateClearColor(const glm::vec4& color) { targets_.SetAlternateClearColor(color); }

  RenderDevice& Device() { return device_; }
  const glm::mat4& View() const { return frame_.View(); }
  const glm::mat4& Projection() const { return frame_.Projection(); }
  const glm::mat4& Orthographic() const { return frame_.Orthographic(); }
  const glm::vec3& EyePosition() const { return frame_.EyePosition(); }
  const glm::vec4& TrackedPoint() const { return frame_.TrackedPoint(); }
  int DebugViewIndex() const { return frame_.DebugViewIndex(); }
  float AnimationClock() const { return frame_.AnimationClock(); }
  float SlowClock() const { return frame_.SlowClock(); }
  bool IsMinimized() const { return minimized_; }
  bool ShouldRestoreFullScreen() const { return restoreFullScreen_; }
  const RenderTarget* CurrentGlow() const { return targets_.CurrentGlow(); }
  const RenderTarget* SceneTarget() const { return &targets_.Scene(); }
  const RenderTarget* GlowTargetA() const { return &targets_.GlowA(); }
  LightManager& Lights() { return *lights_; }
  TextureStore& Textures() { return device_.Textures(); }
  MeshPass* Meshes() { return meshes_.get(); }
  ModelManager* Models() { return models_.get(); }
  ParticleManager& Particles() { return particles_; }

 private:
  // The frame's passes (OpenGLFrame.cpp).
  void ScenePass(const glm::mat4& viewProj, float dt);
  void GlowPass(const glm::mat4& viewProj);
  void OverlayPass(const glm::mat4& viewProj);
  void FinalComposite(const RenderTarget& image);

  Database& root_;
  MessageHandler& messages_;
  // Declared first so that it goes last: everything below may hold GL names.
  RenderDevice device_;
  SDL_Window* windowHandle_ = nullptr;
  RenderTargets targets_;
  FrameState frame_;
  bool minimized_ = false;
  bool restoreFullScreen_ = false;
  bool debugDraw_ = false;

  std::unique_ptr<MeshPass> meshes_;
  std::unique_ptr<LightManager> lights_;
  std::unique_ptr<ModelManager> models_;
  std::unique_ptr<PostProcessChain> postProcessing_;
  std::unique_ptr<EffectFileWatch> effectFiles_;
  std::unique_ptr<SpriteManager> sprites_;
  ParticleManager particles_;
};

// The renderer that exists now, or null.
OpenGLInterface* CurrentRenderer();

}  // namespace grindle::gfx
