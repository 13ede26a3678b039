// Immutable GPU buffers (vertex and index data written once at creation) and the few draw calls
// every pass uses. Main thread, GL context current. A GpuBuffer owns its GL name and frees it on
// destruction; buffers are bound into the current input layout (see Effects/InputLayouts.h).
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

enum class Topology : uint32_t { kTriangleList, kLineList, kLineStrip, kPointList };

void SetTopology(Topology topology);
// Slot 0 carries vertices; slot 1 per-instance data of the instanced layout.
void BindVertexBuffer(uint32_t slot, const GpuBuffer& buffer, uint32_t stride, uint32_t offset = 0);
// 32-bit indices.
void BindIndexBuffer(const GpuBuffer& buffer);
void DrawIndexed(uint32_t indexCount, uint32_t startIndex, int32_t baseVertex);
void DrawIndexedInstanced(uint32_t indexCount, uint32_t instanceCount);
void Draw(uint32_t vertexCount, uint32_t startVertex);

}  // namespace grindle::gfx
