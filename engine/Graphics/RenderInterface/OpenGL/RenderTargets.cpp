#include "Graphics/RenderInterface/OpenGL/RenderTargets.h"

#include <glm/ext/matrix_transform.hpp>
#include <utility>

#include "Graphics/RenderInterface/OpenGL/RenderDevice.h"

namespace grindle::gfx {

namespace {

void DrawLayer(RenderDevice& device, const RenderTarget& layer, const glm::mat4& world) {
  DrawQuadEffect* quad = device.Effects().drawQuad.get();
  if (quad == nullptr) return;
  quad->SetMatrix(quad->Var(QuadVar::gWorldViewProj), world);
  quad->SetTexture(quad->Var(QuadVar::gTexture), layer.ColorTexture());
  const TechniqueHandle technique = quad->Tech(QuadTech::DrawImageTech);
  for (uint32_t pass = 0; pass < quad->PassCount(technique); ++pass) {
    quad->ApplyPass(technique, pass);
    device.Assembler().DrawIndexed(FullScreenQuad::kIndexCount, 0, 0);
  }
}

}  // namespace

void RenderTargets::Create(int width, int height) {
  for (RenderTarget* target : {&glowA_, &glowB_, &overlay_, &scene_, &spare_}) {
    // The scene's colour is read only by the glow pass, at its own size; the glow targets are read
    // at half size and the overlay is letterboxed, so they keep their levels.
    target->Create(width, height, {.mipChain = target != &scene_});
  }
}

void RenderTargets::SwapGlow() { std::swap(currentGlow_, previousGlow_); }

void RenderTargets::Composite(RenderDevice& device, const RenderTarget& image, bool sceneOverMenu,
                              glm::vec2 letterbox) const {
  const glm::mat4 scaled = glm::scale(glm::mat4(1.0f), glm::vec3(letterbox, 1.0f));
  if (sceneOverMenu) {
    DrawLayer(device, overlay_, scaled);
    // Picture in picture: half size, moved right and down (scale, then translate).
    const glm::mat4 inset =
        glm::translate(glm::mat4(1.0f), glm::vec3(0.1f * letterbox.x, -0.3f * letterbox.y, 0.0f)) *
        glm::scale(glm::mat4(1.0f), glm::vec3(0.5f * letterbox.x, 0.5f * letterbox.y, 1.0f));
    DrawLayer(device, image, inset);
  } else {
    DrawLayer(device, image, scaled);
    DrawLayer(device, overlay_, scaled);
  }
}

}  // namespace grindle::gfx
