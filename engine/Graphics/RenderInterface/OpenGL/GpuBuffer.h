// Immutable GPU buffers: vertex and index data written once at creation. Main thread, GL context
// current. A GpuBuffer owns its GL name and frees it on destruction; buffers are bound into the
// current input layout through the input assembler.
#pragma once

#include <epoxy/gl.h>

#include <cstddef>
#include <cstdint>
#include <utility>

namespace grindle::gfx {

class GpuBuffer {
 public:
  GpuBuffer() = default;
  // Copies `bytes` bytes into a new immutable buffer.
  GpuBuffer(const void* data, size_t bytes);
  ~GpuBuffer();
  GpuBuffer(GpuBuffer&& other) noexcept
      : id_(std::exchange(other.id_, 0u)), bytes_(std::exchange(other.bytes_, 0u)) {}
  GpuBuffer& operator=(GpuBuffer&& other) noexcept;
  GpuBuffer(const GpuBuffer&) = delete;
  GpuBuffer& operator=(const GpuBuffer&) = delete;

  GLuint Id() const { return id_; }
  size_t Size() const { return bytes_; }

 private:
  GLuint id_ = 0;
  size_t bytes_ = 0;
};

}  // namespace grindle::gfx
