// The renderer's device objects: the window's context and back buffer, the input assembler, the
// effect library, the texture store, the full-screen quad and the texture copy. Every manager the
// renderer owns is handed this to reach effects, layouts, draw calls and textures. Main thread.
// Members are declared so that everything holding GL names goes before the context does.
#pragma once

#include <memory>

#include "Graphics/Effects/EffectSlots.h"
#include "Graphics/RenderInterface/OpenGL/FullScreenQuad.h"
#include "Graphics/RenderInterface/OpenGL/InputAssembler.h"
#include "Graphics/RenderInterface/OpenGL/TextureCopy.h"
#include "Graphics/RenderInterface/OpenGL/TextureStore.h"
#include "Graphics/RenderInterface/OpenGL/WindowContext.h"

namespace grindle {
class MessageHandler;
}

namespace grindle::gfx {

inline constexpr const char* kDefaultTextureName = "Asphalt.jpg";

class RenderDevice {
 public:
  explicit RenderDevice(MessageHandler& messages) : effects_(messages, assembler_.Layouts()) {}
  RenderDevice(const RenderDevice&) = delete;
  RenderDevice& operator=(const RenderDevice&) = delete;

  // Creates the context on the window, then the start-up effects and layouts, the texture store
  // and the quad. False (and nothing else made) when the window system offers no context.
  bool Create(SDL_Window* window);
  bool IsCreated() const { return context_.IsCreated(); }

  // The scene set and its layouts, once ("LoadShaders").
  void LoadSceneShadersAndLayouts();

  WindowContext& Context() { return context_; }
  const WindowContext& Context() const { return context_; }
  InputAssembler& Assembler() { return assembler_; }
  EffectSlots& Effects() { return effects_.Slots(); }
  EffectLibrary& Shaders() { return effects_; }
  bool SceneShadersLoaded() const { return effects_.SceneLoaded(); }
  TextureStore& Textures() { return *textures_; }
  const FullScreenQuad& Quad() const { return *quad_; }
  const TextureCopy& Copier() const { return *copy_; }
  // Shows the back buffer in the window; false while the window is minimised.
  bool Present() { return context_.Present(*copy_); }

 private:
  WindowContext context_;
  InputAssembler assembler_;
  EffectLibrary effects_;
  std::unique_ptr<TextureStore> textures_;
  std::unique_ptr<FullScreenQuad> quad_;
  std::unique_ptr<TextureCopy> copy_;
};

}  // namespace grindle::gfx
