#include "Graphics/RenderInterface/OpenGL/RenderDevice.h"

#include "Graphics/RenderInterface/OpenGL/RenderStates.h"

namespace grindle::gfx {

bool RenderDevice::Create(SDL_Window* window) {
  if (!context_.Create(window)) return false;
  ResetRenderStates();
  copy_ = std::make_unique<TextureCopy>();
  effects_.LoadStartup();
  textures_ = std::make_unique<TextureStore>(kDefaultTextureName);
  quad_ = std::make_unique<FullScreenQuad>();
  return true;
}

void RenderDevice::LoadSceneShadersAndLayouts() {
  effects_.LoadScene();
  assembler_.Layouts().CreateScene(effects_.Slots());
}

}  // namespace grindle::gfx
