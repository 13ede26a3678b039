// The sky: a position-only sphere drawn around the eye with the sky effect, sampling a cube map of
// a generated horizon-to-zenith gradient, turned about the vertical axis by the renderer's
// animation angle. Main thread, GL context current. Drawn first in the scene pass with depth writes
// off, so everything else covers it.
#pragma once

#include <epoxy/gl.h>

#include <glm/mat4x4.hpp>
#include <glm/vec3.hpp>

#include "Graphics/RenderInterface/OpenGL/GpuBuffer.h"

namespace grindle::gfx {

class RenderDevice;

// Radius, slices and stacks of the dome, as the sky-dome mesh is made.
inline constexpr float kSkyRadius = 20.0f;
inline constexpr int kSkySlices = 30;
inline constexpr int kSkyStacks = 30;

class SkyDome {
 public:
  explicit SkyDome(RenderDevice& device);
  ~SkyDome();
  SkyDome(const SkyDome&) = delete;
  SkyDome& operator=(const SkyDome&) = delete;

  void Draw(const glm::vec3& eye, const glm::mat4& viewProj, float angleDegrees);

 private:
  RenderDevice& device_;
  GpuBuffer vertices_;
  GpuBuffer indices_;
  uint32_t indexCount_ = 0;
  GLuint cubeMap_ = 0;
};

}  // namespace grindle::gfx
