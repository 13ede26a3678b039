// The managers for models and particles, at the points where the frame calls
// them. They draw nothing yet: their content types arrive with a later change, and until then the
// frame's order and arguments are already fixed here. Main thread; owned by the renderer, which
// hands each its device objects (effects, input assembler, textures).
#pragma once

#include <glm/mat4x4.hpp>
#include <glm/vec3.hpp>
#include <string_view>

namespace grindle {
class Database;
}

namespace grindle::gfx {

class RenderDevice;

class ModelManager {
 public:
  explicit ModelManager(RenderDevice& device) : device_(device) {}
  void AddObject(const Database& /*object*/, std::string_view /*objectName*/) {}
  void RemoveObject(std::string_view /*objectName*/) {}
  void AdvanceAnimation(const glm::mat4& /*viewProj*/, float /*dt*/) {}
  void Draw(int /*pass*/, const glm::mat4& /*viewProj*/) {}

 private:
  RenderDevice& device_;
};

class ParticleManager {
 public:
  explicit ParticleManager(RenderDevice& device) : device_(device) {}
  void AddObject(const Database& /*object*/, std::string_view /*objectName*/) {}
  void RemoveObject(std::string_view /*objectName*/) {}
  void SetEyePosition(const glm::vec3& eye) { eye_ = eye; }
  void Draw(const glm::mat4& /*viewProj*/, float /*dt*/) {}

 private:
  RenderDevice& device_;
  glm::vec3 eye_{0.0f};
};

}  // namespace grindle::gfx
