#include "Graphics/RenderInterface/OpenGL/FullScreenQuad.h"

#include "Graphics/RenderInterface/OpenGL/InputAssembler.h"

namespace grindle::gfx {

namespace {

struct QuadVertex {
  float x, y, z;
  float unused[3];
  float u, v;
};
static_assert(sizeof(QuadVertex) == 32);

constexpr QuadVertex kVertices[4] = {
    {-1.0f, 1.0f, 0.0f, {0, 0, 0}, 0.0f, 0.0f},
    {-1.0f, -1.0f, 0.0f, {0, 0, 0}, 0.0f, 1.0f},
    {1.0f, -1.0f, 0.0f, {0, 0, 0}, 1.0f, 1.0f},
    {1.0f, 1.0f, 0.0f, {0, 0, 0}, 1.0f, 0.0f},
};
constexpr uint32_t kIndices[FullScreenQuad::kIndexCount] = {0, 1, 3, 1, 2, 3};

}  // namespace

FullScreenQuad::FullScreenQuad()
    : vertices_(kVertices, sizeof(kVertices)), indices_(kIndices, sizeof(kIndices)) {}

void FullScreenQuad::Bind(InputAssembler& assembler) const {
  assembler.BindVertexBuffer(0, vertices_, sizeof(QuadVertex), 0);
  assembler.BindIndexBuffer(indices_);
}

}  // namespace grindle::gfx
