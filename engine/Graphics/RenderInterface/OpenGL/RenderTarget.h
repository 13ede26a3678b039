// An off-screen target: an optional colour texture with a full mip chain and a depth texture that
// shaders can read. Used by the renderer, the light manager (depth only) and the post effects. Main
// thread, GL context current. Create may be called again to resize; it releases what it had first.
#pragma once

#include <epoxy/gl.h>

#include <glm/vec4.hpp>

namespace grindle::gfx {

inline constexpr glm::vec4 kOpaqueBlack(0.0f, 0.0f, 0.0f, 1.0f);

class RenderTarget {
 public:
  RenderTarget() = default;
  ~RenderTarget();
  RenderTarget(const RenderTarget&) = delete;
  RenderTarget& operator=(const RenderTarget&) = delete;

  void Create(int width, int height, bool withColour, GLenum format = GL_RGBA8);
  // Binds this target alone with its viewport and clears colour (opaque black unless the frame
  // asks for its alternate colour) and depth (1.0) and stencil (0).
  void Begin(const glm::vec4& clearColor = kOpaqueBlack);
  // Generates the colour mip chain so later passes can sample smaller levels.
  void End();

  int Width() const { return width_; }
  int Height() const { return height_; }
  GLuint ColorTexture() const { return colorTexture_; }
  GLuint DepthTexture() const { return depthTexture_; }

 private:
  void Release();

  int width_ = 0;
  int height_ = 0;
  GLuint colorTexture_ = 0;
  GLuint depthTexture_ = 0;
  GLuint framebuffer_ = 0;
};

}  // namespace grindle::gfx
