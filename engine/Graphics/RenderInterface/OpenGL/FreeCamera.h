// The debug fly camera: W/S move along the look vector, A/D strafe, dragging with the left button
// turns it (1/150 radian per pixel). F9 toggles whether it drives the view. Edge flags record a
// still pointer within 10 pixels of a client-area edge for whoever wants to scroll with them.
// Main thread; fed the "Keyboard" and "Mouse" payload copies.
#pragma once

#include <glm/mat4x4.hpp>
#include <glm/vec3.hpp>

namespace grindle {
class Keyboard;
class Mouse;
}  // namespace grindle

namespace grindle::gfx {

inline constexpr float kFreeCameraTurnPerPixel = 0.006666667f;
inline constexpr int kFreeCameraEdgeMargin = 10;

class FreeCamera {
 public:
  FreeCamera();

  void OnKeyboard(const Keyboard& keyboard);
  void OnMouse(const Mouse& mouse, int clientWidth, int clientHeight);

  bool IsEnabled() const { return isEnabled_; }
  void SetEnabled(bool enabled) { isEnabled_ = enabled; }
  glm::mat4 View() const;

  const glm::vec3& Position() const { return position_; }
  const glm::vec3& Look() const { return look_; }
  float Yaw() const { return yaw_; }
  float Pitch() const { return pitch_; }
  bool IsDragging() const { return isDragging_; }
  enum Edge { kEdgeLeft = 1, kEdgeRight = 2, kEdgeTop = 4, kEdgeBottom = 8 };
  int EdgeFlags() const { return edgeFlags_; }

 private:
  void RebuildAxes();

  glm::vec3 position_;
  glm::vec3 look_;
  glm::vec3 up_;
  glm::vec3 right_;
  float yaw_ = 0.0f;
  float pitch_ = 0.0f;
  float speed_ = 0.5f;
  bool isDragging_ = false;
  bool isEnabled_ = false;
  int edgeFlags_ = 0;
};

}  // namespace grindle::gfx
