#include "Graphics/RenderInterface/OpenGL/GpuBuffer.h"

#include "Graphics/Effects/InputLayouts.h"

namespace grindle::gfx {

namespace {

GLenum gTopology = GL_TRIANGLES;

}  // namespace

GpuBuffer::GpuBuffer(const void* data, size_t bytes) : bytes_(bytes) {
  glCreateBuffers(1, &id_);
  glNamedBufferStorage(id_, static_cast<GLsizeiptr>(bytes), data, 0);
}

GpuBuffer::~GpuBuffer() {
  if (id_ != 0) glDeleteBuffers(1, &id_);
}

GpuBuffer& GpuBuffer::operator=(GpuBuffer&& other) noexcept {
  if (this != &other) {
    if (id_ != 0) glDeleteBuffers(1, &id_);
    id_ = std::exchange(other.id_, 0u);
    bytes_ = std::exchange(other.bytes_, 0u);
  }
  return *this;
}

void SetTopology(Topology topology) {
  switch (topology) {
    case Topology::kTriangleList:
      gTopology = GL_TRIANGLES;
      break;
    case Topology::kLineList:
      gTopology = GL_LINES;
      break;
    case Topology::kLineStrip:
      gTopology = GL_LINE_STRIP;
      break;
    case Topology::kPointList:
      gTopology = GL_POINTS;
      break;
  }
}

void BindVertexBuffer(uint32_t slot, const GpuBuffer& buffer, uint32_t stride, uint32_t offset) {
  glVertexArrayVertexBuffer(CurrentLayoutObject(), slot, buffer.Id(), offset,
                            static_cast<GLsizei>(stride));
}

void BindIndexBuffer(const GpuBuffer& buffer) {
  glVertexArrayElementBuffer(CurrentLayoutObject(), buffer.Id());
}

void DrawIndexed(uint32_t indexCount, uint32_t startIndex, int32_t baseVertex) {
  glDrawElementsBaseVertex(gTopology, static_cast<GLsizei>(indexCount), GL_UNSIGNED_INT,
                           reinterpret_cast<const void*>(static_cast<uintptr_t>(startIndex) * 4u),
                           baseVertex);
}

void DrawIndexedInstanced(uint32_t indexCount, uint32_t instanceCount) {
  glDrawElementsInstanced(gTopology, static_cast<GLsizei>(indexCount), GL_UNSIGNED_INT, nullptr,
                          static_cast<GLsizei>(instanceCount));
}

void Draw(uint32_t vertexCount, uint32_t startVertex) {
  glDrawArrays(gTopology, static_cast<GLint>(startVertex), static_cast<GLsizei>(vertexCount));
}

}  // namespace grindle::gfx
