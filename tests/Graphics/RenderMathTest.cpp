// The renderer's fixed arithmetic checked against values worked out by hand: the clamping rule,
// the letterbox scale, the resolution names, the camera basis and the debug fly camera. The
// projections are checked by the rendered scenes of the golden image tests.
#include <gtest/gtest.h>

#include <cmath>
#include <glm/geometric.hpp>
#include <glm/vec4.hpp>

#include "Graphics/RenderInterface/OpenGL/FreeCamera.h"
#include "Graphics/RenderInterface/OpenGL/RenderMath.h"
#include "Input/Mouse.h"

namespace grindle::gfx {
namespace {

TEST(RenderMath, FieldOfViewClampsToTheOpenRangeAndNegativeKeeps) {
  for (const auto& [requested, result] :
       {std::pair{5.0f, kPi}, std::pair{0.0f, 0.001f}, std::pair{-1.0f, 1.0f},
        std::pair{0.5f, 0.5f}, std::pair{kPi, kPi}}) {
    EXPECT_FLOAT_EQ(ClampFieldOfView(1.0f, requested), result) << requested;
  }
}

TEST(RenderMath, OrthographicDepthOffsetIsTheNegativeZeroOfItsZeroNearPlane) {
  EXPECT_TRUE(std::signbit(OrthographicMatrix(1280.0f, 720.0f)[3][2]));
}

TEST(RenderMath, LetterboxLeavesBarsOnTheLongSideOnly) {
  EXPECT_EQ(LetterboxScale(1920, 1080, 1280, 720), glm::vec2(1.0f, 1.0f));
  const glm::vec2 taller = LetterboxScale(800, 600, 1280, 720);  // 4:3 window
  EXPECT_FLOAT_EQ(taller.x, 1.0f);
  EXPECT_NEAR(taller.y, (800.0f / 600.0f) / (1280.0f / 720.0f), 1e-6f);
  const glm::vec2 wider = LetterboxScale(2560, 720, 1280, 720);
  EXPECT_NEAR(wider.x, 0.5f, 1e-6f);
  EXPECT_FLOAT_EQ(wider.y, 1.0f);
}

TEST(RenderMath, OnlyTheExactResolutionTextsMatch) {
  const struct {
    const char* text;
    int width, height;
  } table[] = {{"1920x1080", 1920, 1080}, {"1600x900", 1600, 900}, {"1280x720", 1280, 720},
               {"1024x576", 1024, 576},   {"960x540", 960, 540},   {"800x450", 800, 450},
               {"640x360", 640, 360}};
  for (const auto& entry : table) {
    const auto resolution = ResolutionFromText(entry.text);
    ASSERT_TRUE(resolution.has_value()) << entry.text;
    EXPECT_EQ(resolution->width, entry.width);
    EXPECT_EQ(resolution->height, entry.height);
  }
  for (const char* text : {"1280x720 ", "1280X720", " 1280x720", "1280x72", "", "1366x768"}) {
    EXPECT_FALSE(ResolutionFromText(text).has_value()) << '"' << text << '"';
  }
}

TEST(RenderMath, CameraBasisIsOrthonormalAndLookAtPutsTheEyeAtTheOriginFacingMinusZ) {
  const CameraBasis basis = CameraBasisFromDirection(glm::vec3(1.0f, -1.0f, 0.5f));
  EXPECT_NEAR(basis.direction.y, -1.0f / 1.5f, 1e-6f);  // normalised
  EXPECT_NEAR(glm::dot(basis.right, basis.direction), 0.0f, 1e-6f);
  EXPECT_NEAR(glm::dot(basis.up, basis.direction), 0.0f, 1e-6f);
  EXPECT_GT(basis.up.y, 0.0f);
  // Looking along +z with y up, the right-handed right vector points along -x.
  EXPECT_NEAR(CameraBasisFromDirection(glm::vec3(0, 0, 1)).right.x, -1.0f, 1e-6f);
  EXPECT_TRUE(std::isnan(CameraBasisFromDirection(glm::vec3(0.0f)).direction.x));
  const glm::vec3 eye(3.0f, 4.0f, 5.0f);
  const glm::mat4 view = LookAtMatrix(eye, basis.direction, basis.up);
  const glm::vec4 ahead = view * glm::vec4(eye + 2.0f * basis.direction, 1.0f);
  EXPECT_NEAR(glm::distance(glm::vec3(ahead), glm::vec3(0.0f, 0.0f, -2.0f)), 0.0f, 1e-5f);
}

// The debug fly camera driven by real mouse payloads: turning while dragging at 1/150 radian per
// pixel, and the edge flags of a still pointer.
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
