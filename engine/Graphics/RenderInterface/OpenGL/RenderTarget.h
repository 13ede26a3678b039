// An off-screen target: an optional colour texture with a full mip chain and an optional depth
// texture that shaders can read. Used by the renderer, the light manager (depth only) and the post
// effects. Main thread, GL context current. Create records the size and kind; the GL objects are
// made when the target is first drawn into or read, so a target no pass uses costs no memory.
// Create may be called again to resize; it releases what it had first.
#pragma once

#include <epoxy/gl.h>

#include <glm/vec4.hpp>

namespace grindle::gfx {

class TextureCopy;

inline constexpr glm::vec4 kOpaqueBlack(0.0f, 0.0f, 0.0f, 1.0f);

// What a target holds besides its size. Targets drawn with depth testing, or whose depth is read,
// need depth; full-screen image passes do not. Only targets read at a smaller size than their own
// need colour levels below the first (a pass reading at its own size or larger samples level 0).
struct TargetLayout {
  bool colour = true;
  GLenum format = GL_RGBA8;
  bool mipChain = true;
  bool depth = true;
};

class RenderTarget {
 public:
  RenderTarget() = default;
  ~RenderTarget();
  RenderTarget(const RenderTarget&) = delete;
  RenderTarget& operator=(const RenderTarget&) = delete;

  void Create(int width, int height, const TargetLayout& layout = {});
  // Binds this target alone with its viewport and clears colour (opaque black unless the frame
  // asks for its alternate colour) and depth (1.0) and stencil (0).
  void Begin(const glm::vec4& clearColor = kOpaqueBlack);
  // Generates the colour mip chain (if it has one) so later passes can sample smaller levels.
  void End(const TextureCopy& copy);

  int Width() const { return width_; }
  int Height() const { return height_; }
  // Reading a target that was never drawn into makes it (cleared to zero, as a new one always was).
  GLuint ColorTexture() const;
  GLuint DepthTexture() const;
  // Whether the GL objects exist yet.
  bool IsAllocated() const { return framebuffer_ != 0; }

 private:
  void Allocate() const;
  int Levels() const;
  void Release();

  int width_ = 0;
  int height_ = 0;
  TargetLayout layout_;
  // Made on first use, from the const accessors too: allocating changes nothing a caller can see.
  mutable GLuint colorTexture_ = 0;
  mutable GLuint depthTexture_ = 0;
  mutable GLuint framebuffer_ = 0;
};

}  // namespace grindle::gfx
