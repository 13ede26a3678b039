// A GPU buffer rewritten every frame with per-instance data (the world matrices of instanced
// models), grown as needed and orphaned on each upload so the GPU never waits on last frame's
// draws. Main thread, GL context current.
#pragma once

#include <epoxy/gl.h>

#include <cstddef>
#include <cstdint>

namespace grindle::gfx {

class InstanceBuffer {
 public:
  InstanceBuffer() = default;
  ~InstanceBuffer();
  InstanceBuffer(const InstanceBuffer&) = delete;
  InstanceBuffer& operator=(const InstanceBuffer&) = delete;

  void Upload(const void* data, size_t bytes);
  // Binds into `slot` of the layout object `layout`, starting `offset` bytes in.
  void Bind(GLuint layout, uint32_t slot, uint32_t stride, size_t offset) const;

 private:
  GLuint id_ = 0;
  size_t capacity_ = 0;
};

}  // namespace grindle::gfx
