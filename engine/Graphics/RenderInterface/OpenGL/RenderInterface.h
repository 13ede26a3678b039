// The abstract renderer the graphics system drives, and the state every renderer shares: window
// (client) size, the fixed render resolution of the off-screen targets, full-screen mode and the
// field of view. Main thread only. Only one renderer exists at a time; its constructor publishes
// it as the current renderer.
#pragma once

#include <cstdint>

struct SDL_Window;

namespace grindle::gfx {

inline constexpr int kDefaultRenderWidth = 1280;
inline constexpr int kDefaultRenderHeight = 720;

class RenderInterface {
 public:
  RenderInterface(int clientWidth, int clientHeight)
      : clientWidth_(clientWidth), clientHeight_(clientHeight) {}
  virtual ~RenderInterface() = default;
  RenderInterface(const RenderInterface&) = delete;
  RenderInterface& operator=(const RenderInterface&) = delete;

  virtual void Resize() = 0;
  virtual bool Initialize(SDL_Window* window) = 0;
  virtual void Update(float dt) = 0;
  virtual void Render(float dt) = 0;
  // Told the client size after initialisation and after every resize.
  virtual void OnClientSize(int /*width*/, int /*height*/) {}
  virtual void SetFieldOfView(float /*radians*/) {}

  bool IsFullScreen() const { return fullScreen_; }
  int ClientWidth() const { return clientWidth_; }
  int ClientHeight() const { return clientHeight_; }
  int RenderWidth() const { return renderWidth_; }
  int RenderHeight() const { return renderHeight_; }
  float FieldOfView() const { return fieldOfView_; }

 protected:
  bool multisampling_ = false;
  bool fullScreen_ = true;  // the game starts in (desktop) full screen
  int32_t clientWidth_;
  int32_t clientHeight_;
  int32_t renderWidth_ = kDefaultRenderWidth;
  int32_t renderHeight_ = kDefaultRenderHeight;
  float fieldOfView_ = 3.14159265358979323846f * 0.25f;
};

}  // namespace grindle::gfx
