#include "Graphics/RenderInterface/OpenGL/FreeCamera.h"

#include <cmath>
#include <glm/geometric.hpp>

#include "Graphics/RenderInterface/OpenGL/RenderMath.h"
#include "Input/DebugKeys.h"
#include "Input/Keyboard.h"
#include "Input/Mouse.h"

namespace grindle::gfx {

namespace {

bool Held(const Keyboard& keyboard, int key) { return (keyboard.Current(key) & 0x80u) != 0; }

}  // namespace

FreeCamera::FreeCamera() : position_(0.0f, 10.0f, -30.0f) { RebuildAxes(); }

void FreeCamera::RebuildAxes() {
  look_ = glm::vec3(std::sin(yaw_) * std::cos(pitch_), -std::sin(pitch_),
                    std::cos(yaw_) * std::cos(pitch_));
  right_ = glm::normalize(glm::cross(look_, glm::vec3(0.0f, 1.0f, 0.0f)));
  up_ = glm::cross(right_, look_);
}

void FreeCamera::OnKeyboard(const Keyboard& keyboard) {
  if (keyboard.IsTriggered(debugkeys::kFreeCamera)) isEnabled_ = !isEnabled_;
  if (Held(keyboard, 'W')) position_ += speed_ * look_;
  if (Held(keyboard, 'S')) position_ -= speed_ * look_;
  const glm::vec3 strafe = glm::normalize(glm::cross(look_, up_));
  if (Held(keyboard, 'D')) position_ += speed_ * strafe;
  if (Held(keyboard, 'A')) position_ -= speed_ * strafe;
}

void FreeCamera::OnMouse(const Mouse& mouse, int clientWidth, int clientHeight) {
  const int dx = mouse.X() - mouse.PreviousX();
  const int dy = mouse.Y() - mouse.PreviousY();
  if (dx != 0 || dy != 0) {
    edgeFlags_ = 0;
  } else {
    const int x = mouse.X();
    const int y = mouse.Y();
    if (x < kFreeCameraEdgeMargin + 1) edgeFlags_ |= kEdgeLeft;
    if (x >= clientWidth - kFreeCameraEdgeMargin) edgeFlags_ |= kEdgeRight;
    if (y < kFreeCameraEdgeMargin + 1) edgeFlags_ |= kEdgeTop;
    if (y >= clientHeight - kFreeCameraEdgeMargin) edgeFlags_ |= kEdgeBottom;
  }
  if (mouse.IsDown(kMouseLeft)) {
    isDragging_ = true;
    yaw_ += -static_cast<float>(dx) * kFreeCameraTurnPerPixel;
    pitch_ += static_cast<float>(dy) * kFreeCameraTurnPerPixel;
    RebuildAxes();
  } else {
    isDragging_ = false;
  }
}

glm::mat4 FreeCamera::View() const { return LookAtMatrix(position_, look_, up_); }

}  // namespace grindle::gfx
