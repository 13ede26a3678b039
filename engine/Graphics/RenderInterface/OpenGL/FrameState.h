// The renderer's per-frame view state: the camera (the current level's main camera, or the free
// camera while it is on) with its view and projection matrices, the animation clocks, the tracked
// object ("Potato") and the debug view index the digit keys choose. The renderer owns one and
// advances it once a frame before drawing; it reads the root database and writes only the level's
// `CurrentCamera`. Main thread.
#pragma once

#include <glm/mat4x4.hpp>
#include <glm/vec3.hpp>
#include <glm/vec4.hpp>

#include "Core/DataHandle.h"
#include "Graphics/RenderInterface/OpenGL/FreeCamera.h"

namespace grindle {
class Database;
class Keyboard;
class Mouse;
}  // namespace grindle

namespace grindle::gfx {

class FrameState {
 public:
  explicit FrameState(Database& root) : root_(root) {}

  // One frame of camera, clocks and tracked object; false (and nothing changes) while the game is
  // paused.
  bool Advance(float dt);
  // Rebuilds the projection and orthographic matrices for the render resolution.
  void SetLens(float fieldOfView, int renderWidth, int renderHeight);
  // Level start-up: the level's `CurrentCamera` is (re)made and its "Potato" becomes tracked.
  void OnLevelStart(Database& level);
  // Free-camera keys, and digits 0-3 choosing the debug view on their press edge (later keys win).
  void OnKeyboard(const Keyboard& keyboard);
  void OnMouse(const Mouse& mouse, int clientWidth, int clientHeight);

  const glm::mat4& View() const { return view_; }
  const glm::mat4& Projection() const { return projection_; }
  const glm::mat4& Orthographic() const { return orthographic_; }
  const glm::vec3& EyePosition() const { return eyePosition_; }
  const glm::vec3& LookDirection() const { return lookDirection_; }
  const glm::vec4& TrackedPoint() const { return trackedPoint_; }
  // Whether the last Advance found the tracked object; TrackedPoint is then 5 units above it.
  bool FoundTrackedObject() const { return foundTracked_; }
  int DebugViewIndex() const { return debugViewIndex_; }
  float AnimationClock() const { return animationClock_; }
  float SlowClock() const { return slowClock_; }

 private:
  void UpdateCamera(Database& level, Database& gameObjects, float dt);
  void UpdateTrackedObject(Database& gameObjects);

  Database& root_;
  FreeCamera freeCamera_;
  glm::mat4 view_{1.0f};
  glm::mat4 projection_{1.0f};
  glm::mat4 orthographic_{1.0f};
  glm::vec3 eyePosition_{0.0f};
  glm::vec3 lookDirection_{0.0f, 0.0f, 1.0f};
  glm::vec4 trackedPoint_{0.0f};
  DataHandle<Database> trackedTransform_;
  bool foundTracked_ = false;
  int debugViewIndex_ = 0;
  float animationClock_ = 0.0f;
  float slowClock_ = 0.0f;
};

}  // namespace grindle::gfx
