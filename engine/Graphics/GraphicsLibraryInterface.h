// The graphics system: takes part in the engine life cycle and drives the renderer once a frame
// (Update, then Render). Main thread. Start creates the Graphics object and its renderer on the
// window the start-up code published as MainWindowHandle; without a renderer the game carries on
// and Update does nothing.
#pragma once

#include <memory>

#include "Core/SystemBase.h"

namespace grindle {

namespace gfx {
class Graphics;
}

class GraphicsInterface final : public SystemBase {
 public:
  GraphicsInterface();
  ~GraphicsInterface() override;

  void Update(float dt) override;
  gfx::Graphics* GetGraphics() const { return graphics_.get(); }

 protected:
  void OnStart() override;
  void OnUnload() override;

 private:
  std::unique_ptr<gfx::Graphics> graphics_;
};

}  // namespace grindle
