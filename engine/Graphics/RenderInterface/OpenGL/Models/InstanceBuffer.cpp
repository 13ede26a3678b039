#include "Graphics/RenderInterface/OpenGL/Models/InstanceBuffer.h"

namespace grindle::gfx {

InstanceBuffer::~InstanceBuffer() {
  if (id_ != 0) glDeleteBuffers(1, &id_);
}

void InstanceBuffer::Upload(const void* data, size_t bytes) {
  if (bytes == 0) return;
  if (id_ == 0) glCreateBuffers(1, &id_);
  if (bytes > capacity_) capacity_ = bytes * 2;
  glNamedBufferData(id_, static_cast<GLsizeiptr>(capacity_), nullptr, GL_STREAM_DRAW);
  glNamedBufferSubData(id_, 0, static_cast<GLsizeiptr>(bytes), data);
}

void InstanceBuffer::Bind(GLuint layout, uint32_t slot, uint32_t stride, size_t offset) const {
  glVertexArrayVertexBuffer(layout, slot, id_, static_cast<GLintptr>(offset),
                            static_cast<GLsizei>(stride));
}

}  // namespace grindle::gfx
