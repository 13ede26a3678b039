// The debug fly camera driven by real mouse payloads: turning while dragging at 1/150 radian per
// pixel, and the edge flags of a still pointer.
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

TEST_F(FreeCameraTest, AStillPointerWithinTenPixelsOfAnEdgeRaisesThatEdgeUntilItMoves) {
  const struct {
    int x, y, flags;
  } stops[] = {{5, 240, FreeCamera::kEdgeLeft},
               {10, 240, FreeCamera::kEdgeLeft},
               {11, 240, 0},
               {300, 470, FreeCamera::kEdgeBottom},
               {300, 469, 0},
               {kClientWidth - 10, 10, FreeCamera::kEdgeRight | FreeCamera::kEdgeTop},
               {kClientWidth - 11, 11, 0}};
  for (const auto& stop : stops) {
    Move(stop.x, stop.y);
    EXPECT_EQ(camera_.EdgeFlags(), 0) << "moving to " << stop.x << "," << stop.y;
    Move(stop.x, stop.y);
    EXPECT_EQ(camera_.EdgeFlags(), stop.flags) << "still at " << stop.x << "," << stop.y;
  }
}

}  // namespace
}  // namespace grindle::gfx
