// The particle systems of the game objects that carry a `ParticleSystem` component (`Type`, and
// `EmitDirectionX/Y/Z`), one system each, placed at the object's `Transform` every frame (rain at
// the eye instead). Objects are listed in their level's `ComponentLists.ParticleSystems`. Systems
// are found by object name in the current level each frame, never through kept handles, so a level
// going away cannot leave one dangling; only systems of current-level objects run. Main thread; the
// renderer owns the one instance and calls it with the GL context current.
#pragma once

#include <cstdint>
#include <glm/mat4x4.hpp>
#include <glm/vec3.hpp>
#include <map>
#include <memory>
#include <string>
#include <string_view>

#include "Graphics/RenderInterface/OpenGL/Particles/ParticleSystem.h"

namespace grindle {
class Database;
}

namespace grindle::gfx {

class ParticleTextures;
class RenderDevice;

class ParticleManager {
 public:
  ParticleManager(RenderDevice& device, Database& root);
  ~ParticleManager();

  // Starts a system for an object with a `ParticleSystem` of a known `Type` (an unknown type is
  // reported, naming the object); an object announced again starts over.
  void AddObject(const Database& object, std::string_view objectName);
  void RemoveObject(std::string_view objectName);
  // Starts the object's system again; false when the object has none.
  bool Restart(std::string_view objectName);
  void SetEyePosition(const glm::vec3& eye) { eye_ = eye; }
  // Emits, ages and draws every system by `dt` seconds; depth-tested against the bound target.
  void Draw(const glm::mat4& viewProj, float dt);

  const ParticleSystem* Find(std::string_view objectName) const;
  size_t SystemCount() const { return systems_.size(); }

 private:
  struct Entry {
    ParticleSystem system;
    uint32_t objectKey;
  };
  Database* CurrentLevel() const;
  void Place(ParticleSystem& system, const Database& object) const;

  RenderDevice& device_;
  Database& root_;
  glm::vec3 eye_{0.0f};
  std::unique_ptr<ParticleTextures> textures_;
  std::map<std::string, std::unique_ptr<Entry>, std::less<>> systems_;
};

}  // namespace grindle::gfx
