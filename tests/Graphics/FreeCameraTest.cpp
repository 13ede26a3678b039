// The debug fly camera driven by real mouse payloads: turning while dragging at 1/150 radian per
// pixel, the edge flags of a still pointer, and the view it builds.
#include <gtest/gtest.h>

#include <glm/geometric.hpp>

#include "Graphics/RenderInterface/OpenGL/FreeCamera.h"
#include "Input/Mouse.h"

namespace grindle::gfx {
namespace {

constexpr int kClientWidth = 640;
constexpr int kClientHeight = 480;

int64_t At(int x, int y) { return static_cast<int64_t>(x) | (static_cast<int64_t>(y) << 16); }

class FreeCameraTest : public testing::Test {
 protected:
  void Move(int x, int y) {
    mouse_.HandleWindowMessage(kWmMouseMove, 0, At(x, y));
    mouse_.FrameStep();
    camera_.OnMouse(mouse_, kClientWidth, kClientHeight);
  }
  void Press(bool down) {
    mouse_.HandleWindowMessage(down ? kWmLButtonDown : kWmLButtonUp, 0, At(mouse_.X(), mouse_.Y()));
  }

  Mouse mouse_;
  FreeCamera camera_;
};

TEST_F(FreeCameraTest, DraggingTurnsByAPixelFractionAndReleasingStops) {
  Move(300, 200);
  const glm::vec3 lookBefore = camera_.Look();
  Press(true);
  Move(450, 200);  // 150 pixels right: one radian of yaw to the left-hand side
  EXPECT_TRUE(camera_.IsDragging());
  EXPECT_NEAR(camera_.Yaw(), -150.0f * kFreeCameraTurnPerPixel, 1e-6f);
  EXPECT_NEAR(camera_.Pitch(), 0.0f, 1e-6f);
  EXPECT_NEAR(glm::dot(camera_.Look(), lookBefore), std::cos(1.0f), 1e-4f);
  Move(450, 230);  // down 30: pitch grows and the camera looks lower
  EXPECT_NEAR(camera_.Pitch(), 30.0f * kFreeCameraTurnPerPixel, 1e-6f);
  EXPECT_LT(camera_.Look().y, 0.0f);
  Press(false);
  Move(500, 300);
  EXPECT_FALSE(camera_.IsDragging());
  EXPECT_NEAR(camera_.Yaw(), -150.0f * kFreeCameraTurnPerPixel, 1e-6f);
}

TEST_F(FreeCameraTest, AStillPointerNearAnEdgeRaisesThatEdgeUntilItMoves) {
  Move(5, 240);
  Move(5, 240);
  EXPECT_EQ(camera_.EdgeFlags(), FreeCamera::kEdgeLeft);
  Move(300, 475);
  EXPECT_EQ(camera_.EdgeFlags(), 0);
  Move(300, 475);
  EXPECT_EQ(camera_.EdgeFlags(), FreeCamera::kEdgeBottom);
  Move(kClientWidth - 10, 10);
  Move(kClientWidth - 10, 10);
  EXPECT_EQ(camera_.EdgeFlags(), FreeCamera::kEdgeRight | FreeCamera::kEdgeTop);
  Move(320, 240);
  Move(320, 240);
  EXPECT_EQ(camera_.EdgeFlags(), 0);
}

TEST_F(FreeCameraTest, TheViewLooksAlongTheCameraFromItsPosition) {
  const glm::mat4 view = camera_.View();
  const glm::vec4 eye = view * glm::vec4(camera_.Position(), 1.0f);
  EXPECT_NEAR(glm::length(glm::vec3(eye)), 0.0f, 1e-5f);
  const glm::vec4 ahead = view * glm::vec4(camera_.Position() + 3.0f * camera_.Look(), 1.0f);
  EXPECT_NEAR(ahead.z, -3.0f, 1e-5f);
}

}  // namespace
}  // namespace grindle::gfx
