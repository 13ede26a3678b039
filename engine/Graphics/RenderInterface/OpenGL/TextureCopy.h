// The renderer's own image copy: a texture level drawn over a whole framebuffer with bilinear
// filtering, by a small built-in program. It builds render targets' mip chains and presents the
// back buffer, instead of glGenerateMipmap and glBlitFramebuffer, whose llvmpipe versions compile
// internal shaders that Mesa's shader cache never keeps (about 90 ms of LLVM in every process).
// Main thread, GL context current; the device owns the one instance. Each call puts back every GL
// state it changes, so the passes around it see no difference.
#pragma once

#include <epoxy/gl.h>

namespace grindle::gfx {

class TextureCopy {
 public:
  TextureCopy();
  ~TextureCopy();
  TextureCopy(const TextureCopy&) = delete;
  TextureCopy& operator=(const TextureCopy&) = delete;

  // Fills levels 1 to levels - 1 of `texture` (level 0 being width x height), each from the one
  // above it, as a bilinear blit of the whole level onto the next would.
  void GenerateMips(GLuint texture, int width, int height, int levels) const;
  // Draws level 0 of `texture` over all of `framebuffer` (width x height), turned upside down.
  void CopyFlipped(GLuint texture, GLuint framebuffer, int width, int height) const;

 private:
  // Binds the program, its sampler and texture unit and an empty vertex array; blending, depth,
  // stencil, culling and scissoring off, all colour channels written.
  void Prepare(GLuint texture) const;
  void Draw(GLuint framebuffer, int width, int height, bool flip) const;

  GLuint program_ = 0;
  GLuint sampler_ = 0;
  GLuint vertexArray_ = 0;
  GLuint framebuffer_ = 0;  // the mip level being drawn is attached here
  GLuint unit_ = 0;         // a texture unit no effect binds: the last one
  GLint targetLocation_ = -1;
};

}  // namespace grindle::gfx
