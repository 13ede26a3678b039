#include "Graphics/RenderInterface/OpenGL/InputAssembler.h"

#include "Graphics/RenderInterface/OpenGL/GpuBuffer.h"

namespace grindle::gfx {

void InputAssembler::SetTopology(Topology topology) {
  switch (topology) {
    case Topology::kTriangleList:
      topology_ = GL_TRIANGLES;
      break;
    case Topology::kLineList:
      topology_ = GL_LINES;
      break;
    case Topology::kLineStrip:
      topology_ = GL_LINE_STRIP;
      break;
    case Topology::kPointList:
      topology_ = GL_POINTS;
      break;
  }
}

void InputAssembler::BindVertexBuffer(uint32_t slot, const GpuBuffer& buffer, uint32_t stride,
                                      uint32_t offset) {
  glVertexArrayVertexBuffer(layouts_.CurrentObject(), slot, buffer.Id(), offset,
                            static_cast<GLsizei>(stride));
}

void InputAssembler::BindIndexBuffer(const GpuBuffer& buffer) {
  glVertexArrayElementBuffer(layouts_.CurrentObject(), buffer.Id());
}

void InputAssembler::DrawIndexed(uint32_t indexCount, uint32_t startIndex, int32_t baseVertex) {
  glDrawElementsBaseVertex(topology_, static_cast<GLsizei>(indexCount), GL_UNSIGNED_INT,
                           reinterpret_cast<const void*>(static_cast<uintptr_t>(startIndex) * 4u),
                           baseVertex);
}

void InputAssembler::DrawIndexed16(uint32_t indexCount) {
  glDrawElements(topology_, static_cast<GLsizei>(indexCount), GL_UNSIGNED_SHORT, nullptr);
}

void InputAssembler::DrawIndexedInstanced(uint32_t indexCount, uint32_t instanceCount,
                                          uint32_t startIndex) {
  glDrawElementsInstanced(topology_, static_cast<GLsizei>(indexCount), GL_UNSIGNED_INT,
                          reinterpret_cast<const void*>(static_cast<uintptr_t>(startIndex) * 4u),
                          static_cast<GLsizei>(instanceCount));
}

void InputAssembler::Draw(uint32_t vertexCount, uint32_t startVertex) {
  glDrawArrays(topology_, static_cast<GLint>(startVertex), static_cast<GLsizei>(vertexCount));
}

}  // namespace grindle::gfx
