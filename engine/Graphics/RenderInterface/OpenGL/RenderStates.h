// The render-state table: rasteriser, blend and depth-stencil states selected by index, as passes
// and the frame ask for them. Main thread, GL context current. Index 0 of each is the default that
// "resetting the states" restores; an index outside the table is a programming error (asserts).
#pragma once

#include <cstdint>

namespace grindle::gfx {

enum RasterizerState : int32_t {
  kRasterSolid = 0,  // fill, cull back faces (fronts wound as the primitive generators make them)
  kRasterWireframe = 1,  // lines, no culling
  kRasterNoCull = 2,     // fill, both sides (sky dome from inside, sprites)
  kRasterShadow = 3,     // fill, cull back faces, depth bias against shadow acne
  kRasterizerCount
};

enum BlendState : int32_t {
  kBlendOpaque = 0,
  kBlendAlpha = 1,     // source-over
  kBlendOverlay = 2,   // source-over for colour, keeps the greater alpha (menus over the scene)
  kBlendAdditive = 3,  // glow and particles
  kBlendCount
};

enum DepthStencilState : int32_t {
  kDepthLess = 0,              // test and write
  kDepthDisabled = 1,          // neither test nor write (full-screen passes)
  kDepthLessEqualNoWrite = 2,  // test only (sky dome, particles)
  kDepthStencilCount
};

void SetRasterizerState(int32_t index);
void SetBlendState(int32_t index, const float blendFactor[4] = nullptr,
                   uint32_t sampleMask = 0xFFFFFFFFu);
void SetDepthStencilState(int32_t index, uint32_t stencilRef = 0);
// Rasteriser 0, blend 0 with factor 0 and mask 0xFFFFFFFF, depth-stencil 0 with reference 0.
void ResetRenderStates(int32_t blend = kBlendOpaque);

}  // namespace grindle::gfx
