// What the renderer asks of the mesh component handler, at the points of the frame and of the
// object life cycle where it calls it. Main thread, GL context current. The handler reads the
// current level from the root database itself; the renderer hands it only what changes per call.
// CreateMeshPass is defined by the mesh component handler's sources.
#pragma once

#include <glm/mat4x4.hpp>
#include <memory>
#include <string_view>

#include "Core/DataHandle.h"

namespace grindle {
class Database;
}

namespace grindle::gfx {

class RenderDevice;
class TextureStore;

class MeshPass {
 public:
  virtual ~MeshPass() = default;

  // "msgObjectCreated"/"msgLevelObjectCreated": `object` is the object's database.
  virtual void AddObject(DataHandle<Database> object, std::string_view objectName) = 0;
  // "msgObjectDestroyed".
  virtual void RemoveObject(std::string_view objectName) = 0;
  // Level start-up: the level was announced, its objects exist; build the per-level lists.
  virtual void BuildLevelLists(Database& level) = 0;
  // Lit pass (glowPass false) with the basic effect, or glow pass with the glow-map effect.
  virtual void Draw(bool glowPass, const glm::mat4& viewProj, TextureStore& textures) = 0;
  // Shadow casters into the bound shadow map with the shadow-map effect's BuildShadowMapTech.
  virtual void DrawShadowCasters(const glm::mat4& lightViewProj) = 0;
  // Debug lines with the colour effect (position-colour layout, line-strip topology already set).
  virtual void DrawDebugLines(const glm::mat4& viewProj) = 0;
};

std::unique_ptr<MeshPass> CreateMeshPass(Database& root, RenderDevice& device);

}  // namespace grindle::gfx
