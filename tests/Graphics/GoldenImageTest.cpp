// Fixed scenes rendered headless on llvmpipe and compared with the reference images in golden/.
// Each scene also checks the property it exists for with a direct pixel test, so a wrong
// reference cannot pass.
#include "GoldenImage.h"

namespace grindle::gfx {
namespace {

using GoldenImageTest = GoldenImageFixture;

TEST_F(GoldenImageTest, EveryTechniqueVariantOnPrimitives) {
  Database& level = AddLevel("Techniques");
  AddCamera(level, {0, 4, -12}, {0, -0.3f, 1});
  AddMeshObject(level, "Floor", "Grid.mesh", {0, -1, 0}, {30, 1, 30}, {0.6f, 0.6f, 0.6f, 1});
  AddMeshObject(level, "Plain", "Sphere.mesh", {-6, 0.5f, 0}, {1, 1, 1}, {0.9f, 0.3f, 0.3f, 1});
  const char *crate = "Crate.png", *tiles = "FloorTiles.png";
  const char *stripes = "StripesSpecular.png", *bumps = "BumpsNormal.png";
  const struct {
    const char *name, *file;
    float x;
    glm::vec3 scale;
    const char *diffuse, *specular, *normal;
  } textured[] = {
      {"Tex", "Box.mesh", -3, {2, 2, 2}, crate, nullptr, nullptr},
      {"TexSpec", "Cylinder.mesh", 0, {1, 2, 1}, crate, stripes, nullptr},
      {"TexNorm", "Box.mesh", 3, {2, 2, 2}, tiles, nullptr, bumps},
      {"TexSpecNorm", "Sphere.mesh", 6, {1, 1, 1}, tiles, stripes, bumps},
  };
  for (const auto& o : textured) {
    Database& mesh = *AddMeshObject(level, o.name, o.file, {o.x, 0.5f, 0}, o.scale, {1, 1, 1, 1})
                          .Find<Database>("Mesh");
    *mesh.Find<double>("HasTexture") = 1.0;
    mesh.Add<std::string>("TextureName", o.diffuse);
    mesh.Add<double>("HasSpecularMap", o.specular != nullptr);
    mesh.Add<std::string>("SpecularMapName", o.specular ? o.specular : "");
    mesh.Add<double>("HasNormalMap", o.normal != nullptr);
    mesh.Add<std::string>("NormalMapName", o.normal ? o.normal : "");
  }
  const Image image = RenderLevel("Techniques");
  // Right-handed: +x is on the left of a camera looking along +z, so the untextured red sphere
  // is on the right, and the crate beside it shows its texture's brown.
  const glm::vec4 plain = image.At(268, 88);
  EXPECT_GT(plain.r, plain.g + 0.3f);
  const glm::vec4 crateBox = image.At(214, 88);
  EXPECT_GT(crateBox.r, crateBox.b + 0.2f);
  ExpectMatchesGolden(image, "techniques");
}

TEST_F(GoldenImageTest, FogFadesDistantObjectsToTheFogColourInFrontOfTheSky) {
  Database& level = AddLevel("Fog");
  AddCamera(level, {0, 0, 0}, {0, 0, 1});
  level.Find<Database>("GameObjects")
      ->Add<Database>("SkyDome")
      ->Add<std::string>("Sky", "gradient");
  AddMeshObject(level, "Near", "Box.mesh", {-2, 0, 8}, {2, 2, 2}, {1, 0.1f, 0.1f, 1});
  AddMeshObject(level, "Far", "Box.mesh", {60, 0, 400}, {80, 80, 80}, {1, 0.1f, 0.1f, 1});
  const Image image = RenderLevel("Fog");
  const glm::vec4 nearBox = image.At(kWidth / 2 + 40, kHeight / 2);
  const glm::vec4 farBox = image.At(kWidth / 2 - 25, kHeight / 2);
  EXPECT_GT(nearBox.r, nearBox.b + 0.3f);
  // Beyond start + range the fog colour (0.471, 0.471, 0.565) is all that is left.
  EXPECT_NEAR(farBox.r, 0.471f, 0.02f);
  EXPECT_NEAR(farBox.b, 0.565f, 0.02f);
  // Above the horizon the sky's blue, where nothing else is drawn.
  const glm::vec4 sky = image.At(10, 5);
  EXPECT_GT(sky.b, sky.r + 0.1f);
  ExpectMatchesGolden(image, "fog");
}

// One grey wall filling the view, seen through a 4:3 window, as the picture in picture of a menu
// and through colour grades of the post-processing chain.
TEST_F(GoldenImageTest, TheWallThroughLetterboxInsetAndColourGrades) {
  Database& level = AddLevel("Wall");
  AddCamera(level, {0, 0, -5}, {0, 0, 1});
  Database& wall =
      AddMeshObject(level, "Wall", "Box.mesh", {0, 0, 5}, {40, 40, 1}, {0.8f, 0.8f, 0.8f, 1});
  // As the window procedure sends it: unsigned sizes.
  messages_.SendArgs("SetClientWindow", 240u, 180u);
  messages_.Send("OnResize");
  const Image letterbox = RenderLevel("Wall");
  messages_.SendArgs("SetClientWindow", static_cast<double>(kWidth), static_cast<double>(kHeight));
  messages_.Send("OnResize");
  ASSERT_EQ(letterbox.width, 240);
  // (4/3) / (16/9) = 0.75 of the height is picture: 22.5 rows of black above and below.
  for (int x = 0; x < 240; x += 30) {
    EXPECT_EQ(letterbox.At(x, 10), glm::vec4(0, 0, 0, 1));
    EXPECT_EQ(letterbox.At(x, 170), glm::vec4(0, 0, 0, 1));
    EXPECT_GT(Luma(letterbox.At(x, 90)), 0.2f);
  }
  ExpectMatchesGolden(letterbox, "letterbox");

  root_.Add<Database>("GlobalVariables")->Add<double>("DrawSceneOverMenu", 1.0);
  const auto render = [this] {
    Frame();
    Frame();
    return Capture();
  };
  const Image inset = render();
  root_.Remove("GlobalVariables");
  // Half size, centred at (0.1, -0.3) in clip space: pixels 96..256 across and 72..162 down.
  EXPECT_GT(Luma(inset.At(176, 117)), 0.2f);
  EXPECT_GT(Luma(inset.At(100, 160)), 0.2f);
  for (const auto& [x, y] :
       {std::pair{20, 20}, std::pair{90, 117}, std::pair{176, 66}, std::pair{262, 117}}) {
    EXPECT_EQ(inset.At(x, y), glm::vec4(0, 0, 0, 1)) << x << "," << y;
  }
  ExpectMatchesGolden(inset, "picture_in_picture");
  // The menu flow's clear colour fills the overlay around the inset; the scene inside keeps its
  // own black clear.
  root_.Add<Database>("GlobalVariables")->Add<double>("DrawSceneOverMenu", 1.0);
  Renderer().SetAlternateClearColor(glm::vec4(0, 0, 1, 1));
  const Image menu = render();
  Renderer().SetAlternateClearColor(glm::vec4(0));
  root_.Remove("GlobalVariables");
  EXPECT_EQ(menu.At(20, 20), glm::vec4(0, 0, 1, 1));
  EXPECT_EQ(menu.At(262, 117), glm::vec4(0, 0, 1, 1));
  EXPECT_EQ(menu.At(176, 117), inset.At(176, 117));

  *wall.Find<Database>("Material")->Find<glm::vec4>("Diffuse") = glm::vec4(0.9f, 0.3f, 0.2f, 1);
  *wall.Find<Database>("Material")->Find<glm::vec4>("Ambient") = glm::vec4(0.9f, 0.3f, 0.2f, 1);
  messages_.SendArgs("msgSetPostProcessing", std::string("GreyScale"));
  const glm::vec4 g = render().At(kWidth / 2, kHeight / 2);
  EXPECT_NEAR(g.r, g.g, 1.5f / 255.0f);
  EXPECT_NEAR(g.g, g.b, 1.5f / 255.0f);
  messages_.SendArgs("msgSetPostProcessing", std::string("GreyScale,Sepia"));
  Frame();
  const glm::vec4 s = Capture().At(kWidth / 2, kHeight / 2);
  EXPECT_GT(s.r, s.g);
  EXPECT_GT(s.g, s.b);
  messages_.SendArgs("msgSetPostProcessing", std::string("Bloom"));
  Frame();
  ExpectMatchesGolden(Capture(), "bloom");
}

}  // namespace
}  // namespace grindle::gfx
