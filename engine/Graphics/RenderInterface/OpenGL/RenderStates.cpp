#include "Graphics/RenderInterface/OpenGL/RenderStates.h"

#include <epoxy/gl.h>

#include "Core/Assert.h"

namespace grindle::gfx {

void SetRasterizerState(int32_t index) {
  GRINDLE_ASSERT(index < 0 || index >= kRasterizerCount, "Unknown rasterizer state");
  glPolygonMode(GL_FRONT_AND_BACK, index == kRasterWireframe ? GL_LINE : GL_FILL);
  // Counter-clockwise in clip space: with the upper-left origin that is how the generated meshes
  // face the camera.
  glFrontFace(GL_CCW);
  if (index == kRasterSolid || index == kRasterShadow) {
    glEnable(GL_CULL_FACE);
    glCullFace(GL_BACK);
  } else {
    glDisable(GL_CULL_FACE);
  }
  if (index == kRasterShadow) {
    glEnable(GL_POLYGON_OFFSET_FILL);
    glPolygonOffset(1.5f, 4.0f);
  } else {
    glDisable(GL_POLYGON_OFFSET_FILL);
  }
}

void SetBlendState(int32_t index, const float blendFactor[4], uint32_t sampleMask) {
  GRINDLE_ASSERT(index < 0 || index >= kBlendCount, "Unknown blend state");
  static constexpr float kZero[4] = {0, 0, 0, 0};
  const float* factor = blendFactor != nullptr ? blendFactor : kZero;
  glBlendColor(factor[0], factor[1], factor[2], factor[3]);
  glSampleMaski(0, sampleMask);
  switch (index) {
    case kBlendOpaque:
      glDisable(GL_BLEND);
      break;
    case kBlendAlpha:
      glEnable(GL_BLEND);
      glBlendEquation(GL_FUNC_ADD);
      glBlendFuncSeparate(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA, GL_ONE, GL_ONE_MINUS_SRC_ALPHA);
      break;
    case kBlendOverlay:
      glEnable(GL_BLEND);
      glBlendEquationSeparate(GL_FUNC_ADD, GL_MAX);
      glBlendFuncSeparate(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA, GL_ONE, GL_ONE);
      break;
    case kBlendAdditive:
      glEnable(GL_BLEND);
      glBlendEquation(GL_FUNC_ADD);
      glBlendFunc(GL_ONE, GL_ONE);
      break;
    default:
      break;
  }
}

void SetDepthStencilState(int32_t index, uint32_t stencilRef) {
  GRINDLE_ASSERT(index < 0 || index >= kDepthStencilCount, "Unknown depth-stencil state");
  glStencilFunc(GL_ALWAYS, static_cast<GLint>(stencilRef), 0xFFu);
  switch (index) {
    case kDepthLess:
      glEnable(GL_DEPTH_TEST);
      glDepthFunc(GL_LESS);
      glDepthMask(GL_TRUE);
      break;
    case kDepthDisabled:
      glDisable(GL_DEPTH_TEST);
      glDepthMask(GL_FALSE);
      break;
    case kDepthLessEqualNoWrite:
      glEnable(GL_DEPTH_TEST);
      glDepthFunc(GL_LEQUAL);
      glDepthMask(GL_FALSE);
      break;
    default:
      break;
  }
}

void ResetRenderStates(int32_t blend) {
  SetRasterizerState(kRasterSolid);
  SetBlendState(blend);
  SetDepthStencilState(kDepthLess);
}

}  // namespace grindle::gfx
