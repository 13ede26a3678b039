// The graphics object the graphics system creates on start: it chooses and creates the renderer.
// Main thread. Only one renderer exists; the second API value (the other renderer of the original
// design) falls back to the OpenGL renderer, which is the only one built.
#pragma once

#include <cstdint>
#include <memory>

#include "Graphics/RenderInterface/OpenGL/RenderInterface.h"

namespace grindle {
class Database;
class MessageHandler;
}  // namespace grindle

namespace grindle::gfx {

enum RenderApi : int32_t { kRenderApiPrimary = 1, kRenderApiSecondary = 2 };

class Graphics {
 public:
  // Copies WindowWidth and WindowHeight (doubles in the root, as start-up writes them).
  Graphics(Database& root, MessageHandler& messages);
  virtual ~Graphics();

  // Destroys the current renderer and creates one on the root's MainWindowHandle. False when none
  // could start.
  bool CreateRenderer();

  RenderInterface* Renderer() const { return renderer_.get(); }
  void SetRenderApi(int32_t api) { renderApi_ = api; }

 private:
  Database& root_;
  MessageHandler& messages_;
  std::unique_ptr<RenderInterface> renderer_;
  int32_t renderApi_ = kRenderApiPrimary;
  int32_t windowWidth_ = 0;
  int32_t windowHeight_ = 0;
};

// The graphics object the graphics system published, or null.
Graphics* CurrentGraphics();
void PublishGraphics(Graphics* graphics);

}  // namespace grindle::gfx
