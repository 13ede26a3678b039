// What a draw call reads its vertices through: the input layouts, the primitive topology, the
// vertex and index buffers bound into the current layout, and the draw calls themselves. The
// renderer's device objects own the one instance; main thread, GL context current. Bind the layout
// first, then its buffers, then draw: buffers belong to the layout that was current.
#pragma once

#include <epoxy/gl.h>

#include <cstdint>

#include "Graphics/Effects/InputLayouts.h"

namespace grindle::gfx {

class GpuBuffer;

enum class Topology : uint32_t { kTriangleList, kLineList, kLineStrip, kPointList };

class InputAssembler {
 public:
  InputLayouts& Layouts() { return layouts_; }

  void SetInputLayout(LayoutKind kind) { layouts_.Set(kind); }
  LayoutKind CurrentInputLayout() const { return layouts_.Current(); }
  void SetTopology(Topology topology);

  // Slot 0 carries vertices; slot 1 per-instance data of the instanced layout.
  void BindVertexBuffer(uint32_t slot, const GpuBuffer& buffer, uint32_t stride,
                        uint32_t offset = 0);
  // 32-bit indices.
  void BindIndexBuffer(const GpuBuffer& buffer);
  void DrawIndexed(uint32_t indexCount, uint32_t startIndex, int32_t baseVertex);
  // The same from the start of a buffer of 16-bit indices (glyph quads).
  void DrawIndexed16(uint32_t indexCount);
  void DrawIndexedInstanced(uint32_t indexCount, uint32_t instanceCount, uint32_t startIndex = 0);
  void Draw(uint32_t vertexCount, uint32_t startVertex);

 private:
  InputLayouts layouts_;
  GLenum topology_ = GL_TRIANGLES;
};

}  // namespace grindle::gfx
