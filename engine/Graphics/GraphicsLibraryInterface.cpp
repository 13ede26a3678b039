#include "Graphics/GraphicsLibraryInterface.h"

#include "Graphics/Graphics.h"
#include "Platform/Dialogs.h"

namespace grindle {

GraphicsInterface::GraphicsInterface() : SystemBase("Graphics") {}

GraphicsInterface::~GraphicsInterface() = default;

void GraphicsInterface::OnStart() {
  graphics_ = std::make_unique<gfx::Graphics>(Root(), Messages());
  gfx::PublishGraphics(graphics_.get());
  if (!graphics_->CreateRenderer()) {
    platform::ShowMessageBox("", "Sorry, your graphics card is not supported");
  }
}

void GraphicsInterface::Update(float dt) {
  gfx::RenderInterface* renderer = graphics_ ? graphics_->Renderer() : nullptr;
  if (renderer == nullptr) return;
  renderer->Update(dt);
  renderer->Render(dt);
}

void GraphicsInterface::OnUnload() { graphics_.reset(); }

}  // namespace grindle
