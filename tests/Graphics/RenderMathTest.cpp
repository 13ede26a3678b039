// The renderer's fixed arithmetic checked against values worked out by hand: the clamping rule,
// the letterbox scale, the resolution names and the camera basis. The projections are checked by
// the rendered scenes of the golden image tests.
#include <gtest/gtest.h>

#include <cmath>
#include <glm/geometric.hpp>
#include <glm/vec4.hpp>

#include "Graphics/RenderInterface/OpenGL/RenderMath.h"

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

}  // namespace
}  // namespace grindle::gfx
