// One GPU particle system: two vertex buffers that take turns as the source and the transform
// feedback target of the emit/update pass, and the draw pass that expands the live particles into
// quads facing the eye. The CPU never reads particles back; it only knows the system's clock.
// Main thread, GL context current. Restart puts the single emitter back and zeroes the clock.
#pragma once

#include <epoxy/gl.h>

#include <array>
#include <glm/mat4x4.hpp>
#include <glm/vec3.hpp>

#include "Graphics/RenderInterface/OpenGL/Particles/ParticleKinds.h"

namespace grindle::gfx {

class InputAssembler;
class ParticleEffect;
class ParticleTextures;

struct ParticleFrame {
  glm::mat4 viewProj{1.0f};
  glm::vec3 eye{0.0f};
  float timeStep = 0.0f;
};

class ParticleSystem {
 public:
  explicit ParticleSystem(ParticleKind kind);
  ~ParticleSystem();
  ParticleSystem(const ParticleSystem&) = delete;
  ParticleSystem& operator=(const ParticleSystem&) = delete;

  ParticleKind Kind() const { return kind_; }
  void SetEmitter(const glm::vec3& position, const glm::vec3& direction) {
    emitPosition_ = position;
    emitDirection_ = direction;
  }
  void Restart();
  // A one-shot system whose burst has died out; it neither updates nor draws until restarted.
  bool IsFinished() const;
  float Age() const { return age_; }

  // Emits and ages by the frame's time step, with the kind's effect.
  void Advance(ParticleEffect& effect, InputAssembler& assembler, const ParticleFrame& frame,
               const ParticleTextures& textures);
  void Draw(ParticleEffect& effect, InputAssembler& assembler, const ParticleFrame& frame);
  // Particles (emitter included) the last Advance wrote. Waits for the GPU: tests and tools only.
  uint32_t LastParticleCount() const;

 private:
  ParticleKind kind_;
  std::array<GLuint, 2> buffers_{};
  std::array<GLuint, 2> feedback_{};
  GLuint seedBuffer_ = 0;
  GLuint writtenQuery_ = 0;
  uint32_t current_ = 0;  // the buffer holding the latest particles
  bool isFresh_ = true;   // nothing streamed yet: the next pass reads the seed emitter
  bool hasQueried_ = false;
  float age_ = 0.0f;
  glm::vec3 emitPosition_{0.0f};
  glm::vec3 emitDirection_{0.0f};
};

}  // namespace grindle::gfx
