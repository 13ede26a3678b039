// The renderer's fixed arithmetic checked against values worked out by hand: the projection
// constants of a near plane at 1 and a far plane at 1000, the clamping rule, the letterbox scale
// and the resolution names.
#include <gtest/gtest.h>

#include <cmath>
#include <glm/geometric.hpp>
#include <glm/vec4.hpp>

#include "Graphics/RenderInterface/OpenGL/RenderMath.h"

namespace grindle::gfx {
namespace {

TEST(RenderMath, PerspectiveMatchesTheRightHandedRowsForNearOneFarThousand) {
  const float fov = kPi * 0.25f;
  const glm::mat4 m = PerspectiveMatrix(fov, 16.0f / 9.0f);
  const float c = 1.0f / std::tan(fov / 2.0f);
  // Row r, column k of the row-vector matrix is m[r][k].
  EXPECT_NEAR(m[0][0], c * 9.0f / 16.0f, 1e-6f);
  EXPECT_NEAR(m[1][1], c, 1e-6f);
  EXPECT_NEAR(m[2][2], -1.001001f, 1e-6f);
  EXPECT_FLOAT_EQ(m[2][3], -1.0f);
  EXPECT_NEAR(m[3][2], -1.001001f, 1e-6f);
  EXPECT_FLOAT_EQ(m[3][3], 0.0f);
  // A point on the near plane lands at depth 0, one on the far plane at depth 1 (v x M).
  const glm::vec4 nearPoint = m * glm::vec4(0, 0, -1, 1);
  const glm::vec4 farPoint = m * glm::vec4(0, 0, -1000, 1);
  EXPECT_NEAR(nearPoint.z / nearPoint.w, 0.0f, 1e-6f);
  EXPECT_NEAR(farPoint.z / farPoint.w, 1.0f, 1e-5f);
}

TEST(RenderMath, OrthographicMapsPixelsToClipSpaceAndDepthOverAThousand) {
  const glm::mat4 m = OrthographicMatrix(1280.0f, 720.0f);
  EXPECT_FLOAT_EQ(m[0][0], 2.0f / 1280.0f);
  EXPECT_FLOAT_EQ(m[1][1], 2.0f / 720.0f);
  EXPECT_FLOAT_EQ(m[2][2], -0.001f);
  EXPECT_FLOAT_EQ(m[3][2], 0.0f);
  EXPECT_TRUE(std::signbit(m[3][2]));
  EXPECT_FLOAT_EQ(m[3][3], 1.0f);
  const glm::vec4 corner = m * glm::vec4(640.0f, -360.0f, -500.0f, 1.0f);
  EXPECT_FLOAT_EQ(corner.x, 1.0f);
  EXPECT_FLOAT_EQ(corner.y, -1.0f);
  EXPECT_FLOAT_EQ(corner.z, 0.5f);
}

TEST(RenderMath, FieldOfViewClampsToTheOpenRangeAndNegativeKeeps) {
  EXPECT_FLOAT_EQ(ClampFieldOfView(1.0f, 5.0f), kPi);
  EXPECT_FLOAT_EQ(ClampFieldOfView(1.0f, 0.0f), 0.001f);
  EXPECT_FLOAT_EQ(ClampFieldOfView(1.0f, -1.0f), 1.0f);
  EXPECT_FLOAT_EQ(ClampFieldOfView(1.0f, 0.5f), 0.5f);
  EXPECT_FLOAT_EQ(ClampFieldOfView(1.0f, kPi), kPi);
}

TEST(RenderMath, LetterboxLeavesBarsOnTheLongSideOnly) {
  const glm::vec2 same = LetterboxScale(1920, 1080, 1280, 720);
  EXPECT_FLOAT_EQ(same.x, 1.0f);
  EXPECT_FLOAT_EQ(same.y, 1.0f);
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

TEST(RenderMath, CameraBasisIsOrthonormalAndZeroDirectionGivesNaN) {
  const CameraBasis basis = CameraBasisFromDirection(glm::vec3(0.0f, -3.0f, 4.0f));
  EXPECT_NEAR(glm::length(basis.direction), 1.0f, 1e-6f);
  EXPECT_NEAR(basis.direction.y, -0.6f, 1e-6f);
  EXPECT_NEAR(glm::dot(basis.right, basis.direction), 0.0f, 1e-6f);
  EXPECT_NEAR(glm::dot(basis.up, basis.direction), 0.0f, 1e-6f);
  EXPECT_GT(basis.up.y, 0.0f);
  // Looking along +z with y up, the right-handed right vector points along -x.
  EXPECT_NEAR(CameraBasisFromDirection(glm::vec3(0, 0, 1)).right.x, -1.0f, 1e-6f);
  EXPECT_TRUE(std::isnan(CameraBasisFromDirection(glm::vec3(0.0f)).direction.x));
}

TEST(RenderMath, LookAtMovesTheEyeToTheOriginLookingDownMinusZ) {
  const glm::vec3 eye(3.0f, 4.0f, 5.0f);
  const CameraBasis basis = CameraBasisFromDirection(glm::vec3(1.0f, -1.0f, 0.5f));
  const glm::mat4 view = LookAtMatrix(eye, basis.direction, basis.up);
  const glm::vec4 atEye = view * glm::vec4(eye, 1.0f);
  EXPECT_NEAR(glm::length(glm::vec3(atEye)), 0.0f, 1e-5f);
  const glm::vec4 ahead = view * glm::vec4(eye + 2.0f * basis.direction, 1.0f);
  EXPECT_NEAR(ahead.x, 0.0f, 1e-5f);
  EXPECT_NEAR(ahead.y, 0.0f, 1e-5f);
  EXPECT_NEAR(ahead.z, -2.0f, 1e-5f);
}

}  // namespace
}  // namespace grindle::gfx
