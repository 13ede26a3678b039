// The look of lit scenes: glow that keeps its hue, shadows only from the lights that cast them,
// and the post-processing chain a level file chooses (depth of field and SSAO among them).
#include <cmath>
#include <optional>

#include "GoldenImage.h"

namespace grindle::gfx {
namespace {

// Hue in degrees (0..360) of an RGB colour; saturation is assumed well above zero.
float HueDegrees(const glm::vec3& c) {
  const float high = std::max(c.r, std::max(c.g, c.b));
  const float low = std::min(c.r, std::min(c.g, c.b));
  const float span = high - low;
  float hue = 0.0f;
  if (high == c.r) {
    hue = 60.0f * std::fmod((c.g - c.b) / span, 6.0f);
  } else if (high == c.g) {
    hue = 60.0f * ((c.b - c.r) / span + 2.0f);
  } else {
    hue = 60.0f * ((c.r - c.g) / span + 4.0f);
  }
  return hue < 0.0f ? hue + 360.0f : hue;
}

using LookTest = GoldenImageFixture;

// Glowing objects bleed light into the background around them. A glow brighter than white must
// not slide towards cyan (blue) or yellow (orange): the hue of the glowing object and of its halo
// stays within 10 degrees of the glow colour's. The dull grey orb's green glow is the glow golden
// image.
TEST_F(LookTest, GlowingObjectsBleedLightAndKeepTheirHue) {
  const struct {
    const char* name;
    glm::vec3 glow;
    std::optional<glm::vec3> diffuse;  // the glow colour when empty
  } cases[] = {{"Green", {0.1f, 1.0f, 0.3f}, glm::vec3(0.2f)},
               {"Blue", {0.1f, 0.3f, 1.0f}, {}},
               {"Orange", {1.0f, 0.45f, 0.05f}, {}}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    Database& level = AddLevel(c.name);
    AddCamera(level, {0, 0, -10}, {0, 0, 1});
    Database& orb = AddMeshObject(level, "Orb", "Sphere.mesh", {0, 0, 0}, {1.5f, 1.5f, 1.5f},
                                  glm::vec4(c.diffuse.value_or(c.glow), 1.0f));
    Database& glow = *orb.Add<Database>("Glow");
    glow.Add<double>("r", c.glow.r);
    glow.Add<double>("g", c.glow.g);
    glow.Add<double>("b", c.glow.b);
    const Image image = RenderLevel(c.name, 3);
    const glm::vec4 halo = image.At(kWidth / 2 + 30, kHeight / 2);
    EXPECT_GT(Luma(halo), Luma(image.At(10, 10)) + 0.05f);
    const float expected = HueDegrees(c.glow);
    EXPECT_NEAR(HueDegrees(glm::vec3(halo)), expected, 10.0f);
    EXPECT_NEAR(HueDegrees(glm::vec3(image.At(kWidth / 2, kHeight / 2))), expected, 10.0f);
    if (c.diffuse) ExpectMatchesGolden(image, "glow");
    root_.Find<Database>("Levels")->Remove(c.name);
  }
}

// Only lights that are asked to cast shadows do: by default the first directional light alone; a
// level light's `CastsShadow` turns its slot's shadow on or off. A pixel counts as shadowed where
// it is clearly darker than in the scene where no light casts. The yellow box ignores shadows: it
// is never darkened but still casts; the default scene is also the shadow golden image.
TEST_F(LookTest, OnlyLightsThatCastShadowsDarkenTheFloor) {
  const auto render = [this](const char* name, std::initializer_list<double> casts) {
    Database& level = AddLevel(name);
    AddCamera(level, {0, 12, -10}, {0, -1, 0.8f});
    AddMeshObject(level, "Floor", "Grid.mesh", {0, 0, 0}, {40, 1, 40}, {0.3f, 0.3f, 0.3f, 1});
    AddMeshObject(level, "Box", "Box.mesh", {0, 3, 0}, {2, 2, 2}, {0.2f, 0.4f, 0.9f, 1});
    AddMeshObject(level, "Unshadowed", "Box.mesh", {-6, 0.5f, 0}, {1, 1, 1}, {0.9f, 0.9f, 0.2f, 1})
        .Add<double>("IgnoreShadows", 1.0);
    int index = 0;
    for (const double cast : casts) {
      Database& light = *level.Find<Database>("GameObjects")
                             ->Add<Database>("Light" + std::to_string(index++))
                             ->Add<Database>("Light");
      light.Add<std::string>("type", "Directional");
      light.Add<double>("CastsShadow", cast);
    }
    const Image image = RenderLevel(name);
    root_.Find<Database>("Levels")->Remove(name);
    return image;
  };
  const Image none = render("None", {0.0});
  const auto shadowed = [&none](const Image& image) {
    int count = 0;
    for (int y = 0; y < kHeight; ++y) {
      for (int x = 0; x < kWidth; ++x) {
        const glm::vec4 d = none.At(x, y) - image.At(x, y);
        if (d.r + d.g + d.b > 0.1f) ++count;
      }
    }
    return count;
  };
  const Image defaultScene = render("Default", {});
  ExpectMatchesGolden(defaultScene, "shadow");
  const int byDefault = shadowed(defaultScene);
  const int two = shadowed(render("Two", {1.0, 1.0}));
  EXPECT_GT(byDefault, 200);
  EXPECT_GT(two, byDefault + 200);
}

// Mean absolute channel difference of two captures over a block.
float MeanDifference(const Image& a, const Image& b, int x0, int y0, int x1, int y1) {
  float total = 0.0f;
  for (int y = y0; y < y1; ++y) {
    for (int x = x0; x < x1; ++x) {
      const glm::vec4 d = glm::abs(a.At(x, y) - b.At(x, y));
      total += d.r + d.g + d.b;
    }
  }
  return total / static_cast<float>(3 * (x1 - x0) * (y1 - y0));
}

float MeanLuma(const Image& image, int x0, int y0, int x1, int y1) {
  float total = 0.0f;
  for (int y = y0; y < y1; ++y) {
    for (int x = x0; x < x1; ++x) total += Luma(image.At(x, y));
  }
  return total / static_cast<float>((x1 - x0) * (y1 - y0));
}

// A level names its chain in `PostProcessing`; each capture is compared with the same frame
// without the chain ("msgSetPostProcessing" with nothing) to see what the effect changed where.
class PostChainTest : public GoldenImageFixture {
 protected:
  // Boxes on a floor: one at the focus distance (20 units, left of centre), one close to the eye
  // (6 units, right), one far behind (60 units).
  Database& BoxesLevel(const std::string& name, const std::string& chain) {
    Database& level = AddLevel(name);
    level.Add<std::string>("PostProcessing", chain);
    AddCamera(level, {0, 3, -20}, {0, -0.12f, 1});
    AddMeshObject(level, "Floor", "Grid.mesh", {0, 0, 0}, {80, 1, 80}, {0.5f, 0.5f, 0.5f, 1});
    AddMeshObject(level, "Focus", "Box.mesh", {3, 1.5f, 0}, {3, 3, 3}, {0.9f, 0.5f, 0.2f, 1});
    AddMeshObject(level, "Near", "Box.mesh", {-2.5f, 1, -14}, {1.5f, 2, 1.5f},
                  {0.2f, 0.5f, 0.9f, 1});
    AddMeshObject(level, "Far", "Box.mesh", {-8, 3, 40}, {6, 6, 6}, {0.3f, 0.8f, 0.3f, 1});
    return level;
  }

  std::pair<Image, Image> WithAndWithoutChain(const std::string& name) {
    const Image with = RenderLevel(name);
    messages_.SendArgs("msgSetPostProcessing", std::string());
    Frame();
    Frame();
    return {with, Capture()};
  }
};

TEST_F(PostChainTest, DepthOfFieldBlursWhatIsNearAndFarButNotTheFocus) {
  BoxesLevel("Focus", "DepthOfField");
  const auto [blurred, sharp] = WithAndWithoutChain("Focus");
  // The focus box (x 105..145, y 62..98) is all but untouched; the near box (x 215..290, from
  // y 95 down) is softened.
  const float atFocus = MeanDifference(blurred, sharp, 110, 65, 140, 95);
  const float nearBox = MeanDifference(blurred, sharp, 205, 90, 300, 180);
  EXPECT_LT(atFocus, 0.01f);
  EXPECT_GT(nearBox, 4.0f * atFocus + 0.01f);
  ExpectMatchesGolden(blurred, "post_depth_of_field");
}

TEST_F(PostChainTest, SsaoDarkensWhereTheBoxMeetsTheFloorAndNotOpenFloor) {
  BoxesLevel("Crease", "SSAO");
  const auto [occluded, plain] = WithAndWithoutChain("Crease");
  // Along the focus box's foot (y ~97) the floor darkens; open floor in front stays as it was.
  const float creaseDrop =
      MeanLuma(plain, 108, 93, 142, 100) - MeanLuma(occluded, 108, 93, 142, 100);
  const float openDrop = MeanLuma(plain, 20, 160, 120, 175) - MeanLuma(occluded, 20, 160, 120, 175);
  EXPECT_GT(creaseDrop, 0.02f);
  EXPECT_LT(std::abs(openDrop), 0.01f);
  ExpectMatchesGolden(occluded, "post_ssao");
}

}  // namespace
}  // namespace grindle::gfx
