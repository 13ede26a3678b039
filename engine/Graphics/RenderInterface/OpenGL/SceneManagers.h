// The particle manager, at the points where the frame calls it (the model manager lives in
// Models/). It draws nothing yet: its content types arrive with a later change, and until then the
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
