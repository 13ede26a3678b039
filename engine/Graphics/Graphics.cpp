#include "Graphics/Graphics.h"

#include "Core/Database.h"
#include "Core/WellKnownKeys.h"
#include "Graphics/RenderInterface/OpenGL/OpenGLInterface.h"

namespace grindle::gfx {

namespace {

Graphics* gGraphics = nullptr;

int32_t ReadSize(const Database& root, WellKnown key) {
  if (const DataHandle<double> value = root.Find<double>(KeyOf(key)))
    return static_cast<int32_t>(*value);
  if (const DataHandle<int> value = root.Find<int>(KeyOf(key))) return *value;
  return 0;
}

}  // namespace

Graphics* CurrentGraphics() { return gGraphics; }
void PublishGraphics(Graphics* graphics) { gGraphics = graphics; }

Graphics::Graphics(Database& root, MessageHandler& messages)
    : root_(root),
      messages_(messages),
      windowWidth_(ReadSize(root, WellKnown::WindowWidth)),
      windowHeight_(ReadSize(root, WellKnown::WindowHeight)) {}

Graphics::~Graphics() {
  renderer_.reset();
  if (gGraphics == this) gGraphics = nullptr;
}

bool Graphics::CreateRenderer() {
  renderer_.reset();
  const DataHandle<SDL_Window*> window =
      root_.Find<SDL_Window*>(KeyOf(WellKnown::MainWindowHandle));
  SDL_Window* windowHandle = window ? *window : nullptr;
  // Both API values lead to the one renderer there is; any other value chooses none.
  if (renderApi_ != kRenderApiPrimary && renderApi_ != kRenderApiSecondary) return false;
  auto renderer = std::make_unique<OpenGLInterface>(root_, messages_, windowWidth_, windowHeight_);
  if (!renderer->Initialize(windowHandle)) return false;
  renderer_ = std::move(renderer);
  return true;
}

}  // namespace grindle::gfx
