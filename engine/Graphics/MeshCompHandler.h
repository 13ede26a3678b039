// The mesh component handler: registers every game object's `Mesh` component in its level's
// `ComponentLists.Meshes` (writing the component's `MeshIndex` into the shared mesh store) and
// draws the listed components of the current level in the lit, glow, shadow and debug passes.
// Main thread, GL context current; the renderer owns the one instance (CreateMeshPass) and calls
// it as MeshPass describes. The level's `ComponentLists.Meshes` must exist before AddObject runs
// for one of its objects: level files declare it (BuildLevelLists comes only after the objects).
#pragma once

#include <string_view>

#include "Core/DataHandle.h"
#include "Graphics/Meshes/ListedMeshes.h"
#include "Graphics/Meshes/MeshStore.h"
#include "Graphics/RenderInterface/OpenGL/MeshPass.h"

namespace grindle::gfx {

class MeshCompHandler final : public MeshPass {
 public:
  MeshCompHandler(Database& root, RenderDevice& device) : root_(root), device_(device) {}

  // Registers the object's `Mesh` component, if it has one, in the current level's list.
  void AddObject(DataHandle<Database> object, std::string_view objectName) override;
  // Drops the object's entry from the current level's list.
  void RemoveObject(std::string_view objectName) override;
  // Creates the level's `ComponentLists.Meshes` when missing and registers every object of its
  // `GameObjects` that carries a `Mesh` component and is not listed yet.
  void BuildLevelLists(Database& level) override;

  void Draw(bool glowPass, const glm::mat4& viewProj, TextureStore& textures) override;
  void DrawShadowCasters(const glm::mat4& lightViewProj) override;
  void DrawDebugLines(const glm::mat4& viewProj) override;

  const MeshStore& Store() const { return store_; }

 private:
  void Register(Database& object, std::string_view objectName, Database& list);
  // A level's `ComponentLists.Meshes` and `GameObjects`; both null when either is missing.
  struct LevelMeshes {
    const Database* list = nullptr;
    const Database* gameObjects = nullptr;
  };
  LevelMeshes FindLevelMeshes(const Database& level) const;
  // The same for the current level; both null when there is none.
  LevelMeshes FindCurrentLevelMeshes() const;
  DataHandle<Database> FindCurrentLevel() const;
  const MeshRecord& BindMesh(const Database& meshComponent);

  void DrawLit(const LevelMeshes& meshes, const glm::mat4& viewProj, TextureStore& textures);
  void DrawGlow(const LevelMeshes& meshes, const glm::mat4& viewProj, TextureStore& textures);

  Database& root_;
  RenderDevice& device_;
  MeshStore store_;
  ListedMeshes listed_;
};

}  // namespace grindle::gfx
