#include "Graphics/RenderInterface/OpenGL/GpuBuffer.h"

namespace grindle::gfx {

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

}  // namespace grindle::gfx
