// The full-screen quad every image pass draws: four 32-byte vertices (position, three zero floats,
// texture coordinate; v = 0 at the top) and six 32-bit indices. Main thread, GL context current;
// immutable once made. Draw with the position-normal-texture layout current.
#pragma once

#include "Graphics/RenderInterface/OpenGL/GpuBuffer.h"

namespace grindle::gfx {

class InputAssembler;

class FullScreenQuad {
 public:
  FullScreenQuad();

  // Binds both buffers into the current layout (stride 32, offset 0).
  void Bind(InputAssembler& assembler) const;
  static constexpr uint32_t kIndexCount = 6;

 private:
  GpuBuffer vertices_;
  GpuBuffer indices_;
};

}  // namespace grindle::gfx
