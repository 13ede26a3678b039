// The OpenGL 4.5 renderer: context and back buffer, the five render targets at the render
// resolution, the full-screen quad, camera and matrices, the per-kind managers and the frame.
// Main thread only. The constructor publishes the instance as the current renderer
// (CurrentRenderer) and the destructor clears it; message handlers registered in Initialize reach
// it through that.
#pragma once

#include <glm/mat4x4.hpp>
#include <glm/vec3.hpp>
#include <glm/vec4.hpp>
#include <memory>
#include <string>
#include <vector>

#include "Core/DataHandle.h"
#include "Graphics/RenderInterface/OpenGL/FreeCamera.h"
#include "Graphics/RenderInterface/OpenGL/RenderInterface.h"
#include "Graphics/RenderInterface/OpenGL/RenderTarget.h"
#include "Graphics/RenderInterface/OpenGL/SceneManagers.h"
#include "Graphics/RenderInterface/OpenGL/WindowContext.h"

namespace grindle {
class Database;
class MessageHandler;
class MetaResource;
class ResourceManager;
struct MessageArgs;
}  // namespace grindle

namespace grindle::gfx {

class FullScreenQuad;
class LightManager;
class MeshPass;
class PostProcessChain;
class TextureStore;

inline constexpr const char* kDefaultTextureName = "Asphalt.jpg";
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
  // Writes the last composited frame (the back buffer) as a PNG; false when it cannot be written.
  bool WriteScreenshot(const std::string& fileName) const;

  const glm::mat4& View() const { return view_; }
  const glm::mat4& Projection() const { return projection_; }
  const glm::mat4& Orthographic() const { return orthographic_; }
  const glm::vec3& EyePosition() const { return eyePosition_; }
  const glm::vec4& TrackedPoint() const { return trackedPoint_; }
  int DebugViewIndex() const { return debugViewIndex_; }
  bool IsMinimized() const { return minimized_; }
  bool ShouldRestoreFullScreen() const { return restoreFullScreen_; }
  const RenderTarget* CurrentGlow() const { return currentGlow_; }
  const RenderTarget* SceneTarget() const { return &sceneTarget_; }
  const RenderTarget* GlowTargetA() const { return &glowTargetA_; }
  float AnimationClock() const { return animationClock_; }
  float SlowClock() const { return slowClock_; }
  LightManager& Lights() { return *lights_; }
  TextureStore& Textures() { return *textures_; }
  MeshPass* Meshes() { return meshes_.get(); }

 private:
  friend class RendererMessages;

  // Frame parts (OpenGLFrame.cpp).
  void ScenePass(const glm::mat4& viewProj, float dt);
  void GlowPass(const glm::mat4& viewProj);
  void OverlayPass(const glm::mat4& viewProj);
  void FinalComposite();
  void DrawLayer(const RenderTarget& layer, const glm::mat4& world);
  // Camera and per-frame state (OpenGLUpdate.cpp).
  void UpdateCamera(Database& gameObjects, float dt);
  void UpdateTrackedObject(Database& gameObjects);
  Database* CurrentGameObjects() const;

  void RegisterEffectFiles();

  Database& root_;
  MessageHandler& messages_;
  WindowContext context_;
  SDL_Window* windowHandle_ = nullptr;
  bool minimized_ = false;
  bool restoreFullScreen_ = false;
  bool debugDraw_ = false;

  std::unique_ptr<TextureStore> textures_;
  std::unique_ptr<MeshPass> meshes_;
  std::unique_ptr<LightManager> lights_;
  std::unique_ptr<PostProcessChain> postProcessing_;
  std::unique_ptr<FullScreenQuad> quad_;
  std::vector<std::unique_ptr<MetaResource>> effectFiles_;
  ResourceManager* resourceManager_ = nullptr;
  SpriteManager sprites_;
  ParticleManager particles_;
  ModelManager models_;

  glm::mat4 view_{1.0f};
  glm::mat4 projection_{1.0f};
  glm::mat4 orthographic_{1.0f};
  int debugViewIndex_ = 0;
  glm::vec3 eyePosition_{0.0f};
  glm::vec3 lookDirection_{0.0f, 0.0f, 1.0f};
  glm::vec4 trackedPoint_{0.0f};
  DataHandle<Database> trackedTransform_;
  RenderTarget sceneTarget_;
  RenderTarget overlayTarget_;
  RenderTarget glowTargetA_;
  RenderTarget glowTargetB_;
  RenderTarget spareTarget_;  // created and resized with the others; no pass draws into it yet
  RenderTarget* currentGlow_ = &glowTargetA_;
  RenderTarget* previousGlow_ = &glowTargetB_;
  RenderTarget* finalImage_ = &sceneTarget_;
  float animationClock_ = 0.0f;
  float slowClock_ = 0.0f;
  FreeCamera freeCamera_;
};

// The renderer that exists now, or null.
OpenGLInterface* CurrentRenderer();

}  // namespace grindle::gfx
