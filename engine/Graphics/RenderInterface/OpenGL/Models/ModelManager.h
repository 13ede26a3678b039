// The model manager: game objects with a `ModelStatic` or `ModelSkinned` component draw the named
// model file at their `Transform`, in their `Material` colours (multiplying the file's), in the
// shadow maps, the lit pass and (with `Glow`) the glow pass. Static models that share a file and
// colours are drawn instanced, one draw per subset for the whole batch; skinned models are posed
// on the CPU from their clip and skinned on the GPU, writing `TimeMarker` and
// `FinalTransformations` back every frame. Main thread, GL context current; the renderer owns the
// one instance and calls it where its frame says. Objects are kept by name and looked up in the
// current level each frame, so nothing dangles when a level goes away.
#pragma once

#include <cstdint>
#include <glm/mat4x4.hpp>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Core/DataHandle.h"
#include "Graphics/Meshes/MeshDrawInputs.h"
#include "Graphics/RenderInterface/OpenGL/Models/InstanceBuffer.h"
#include "Graphics/RenderInterface/OpenGL/Models/ModelStore.h"

namespace grindle {
class Database;
class ResourceManager;
}  // namespace grindle

namespace grindle::gfx {

class RenderDevice;
class TextureStore;

// An object's colours as they tint a model: none when it has no `Material`.
struct ModelTint {
  bool present = false;
  MaterialBlock colours{};
  bool operator==(const ModelTint& other) const;
};

class ModelManager {
 public:
  // `resources` may be null (no hot reload).
  ModelManager(Database& root, RenderDevice& device, ResourceManager* resources)
      : root_(root), device_(device), store_(resources) {}

  // "msgObjectCreated"/"msgLevelObjectCreated": registers the object's model components, reading
  // their files on first use, and lists them in the current level's `ComponentLists`.
  void AddObject(DataHandle<Database> object, std::string_view objectName);
  void RemoveObject(std::string_view objectName);
  // Level start-up: creates the level's `StaticModels` and `SkinnedModels` lists and registers
  // every object of the level that carries a model component.
  void BuildLevelLists(Database& level);

  // Advances and poses the skinned models (not while the game is paused), writes their clip time
  // and bone matrices back, and gathers this frame's instance batches.
  void AdvanceAnimation(const glm::mat4& viewProj, float dt);
  // Pass 0 lit, pass 1 glow.
  void Draw(int pass, const glm::mat4& viewProj, TextureStore& textures);
  // Into the bound shadow map with the shadow-map effect.
  void DrawShadowCasters(const glm::mat4& lightViewProj);

  bool Reload(const std::string& path) { return store_.Reload(path); }
  const ModelStore& Store() const { return store_; }
  // Draw calls of the last lit pass (instanced batches count once per subset).
  uint32_t LastLitDrawCalls() const { return lastLitDrawCalls_; }

 private:
  struct StaticObject {
    uint32_t key = 0;
    std::string modelName;
    GpuModel* model = nullptr;
  };
  struct SkinnedObject {
    uint32_t key = 0;
    std::string modelName;
    GpuModel* model = nullptr;
    std::string clipName;
    const models::AnimationClip* clip = nullptr;
    uint32_t generation = 0;
    float time = 0.0f;
    double writtenTime = -1.0;
    bool loop = true;
    std::vector<glm::mat4> finals;
  };
  struct Batch {
    GpuModel* model = nullptr;
    ModelTint tint;
    uint32_t first = 0;
    uint32_t count = 0;
  };
  struct Drawn {
    GpuModel* model = nullptr;
    glm::mat4 world{1.0f};
    ModelTint tint;
    std::optional<glm::vec4> glow;
    const std::vector<glm::mat4>* bones = nullptr;  // skinned only
  };

  const Database* CurrentGameObjects() const;
  Database* CurrentLevel() const;
  void Register(Database& object, std::string_view objectName, Database* level);
  // A script swaps an object's model by writing the component's `Name`: from that frame on the
  // named file is drawn (read on first use). Returns the model to draw.
  GpuModel* FollowName(const Database& component, ModelKind kind, std::string& modelName,
                       GpuModel* drawn);
  void Animate(SkinnedObject& skinned, Database& component, float dt);
  void GatherStatic(const Database& gameObjects);
  void GatherSkinned(const Database& gameObjects, float dt);

  void DrawLit(const glm::mat4& viewProj, TextureStore& textures);
  void DrawGlow(const glm::mat4& viewProj, TextureStore& textures);

  Database& root_;
  RenderDevice& device_;
  ModelStore store_;
  std::map<std::string, StaticObject, std::less<>> statics_;
  std::map<std::string, SkinnedObject, std::less<>> skinned_;

  // This frame's drawing, gathered by AdvanceAnimation.
  std::vector<Batch> batches_;
  std::vector<glm::mat4> instanceWorlds_;
  InstanceBuffer instances_;
  std::vector<Drawn> glowingStatics_;
  std::vector<Drawn> skinnedDrawn_;
  uint32_t lastLitDrawCalls_ = 0;
};

}  // namespace grindle::gfx
