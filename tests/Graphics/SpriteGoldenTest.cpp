// Sprites and text drawn by the real renderer (llvmpipe, offscreen window) from the shipped fonts
// (baked by grindle_fontbake) and sprite images, compared with references in golden/ and checked
// directly at telling pixels. The render target is 1280 x 720 and the capture 320 x 180, so one
// captured pixel is four render pixels.
#include "GoldenImage.h"

namespace grindle::gfx {
namespace {

struct Box {
  int x0, y0, x1, y1;
};

class SpriteGoldenTest : public GoldenImageFixture {
 protected:
  static Database& AddSprite(Database& level, const std::string& name, const char* kind) {
    return *level.Find<Database>("GameObjects")->Add<Database>(name)->Add<Database>(kind);
  }

  static Database& AddText(Database& level, const std::string& name, const char* kind,
                           const std::string& text, const char* font, double pixelScale) {
    Database& sprite = AddSprite(level, name, kind);
    sprite.Add<double>("IsText", 1.0);
    sprite.Add<std::string>("Font", font);
    sprite.Add<std::string>("Message", text);
    sprite.Add<glm::vec4>("Color", glm::vec4(1.0f));
    sprite.Add<double>("PixelScale", pixelScale);
    return sprite;
  }

  static Database& AddHudText(Database& level, const std::string& name, const std::string& text,
                              glm::vec2 screen, const char* align, double pixelScale = 2.0) {
    Database& sprite = AddText(level, name, "SpriteHUD", text, "Hud", pixelScale);
    sprite.Add<std::string>("HorizontalAlignment", align);
    sprite.Add<double>("ScreenPositionX", screen.x);
    sprite.Add<double>("ScreenPositionY", screen.y);
    return sprite;
  }

  // How many pixels inside the box are brighter than `level` in every channel.
  static int Lit(const Image& image, const Box& box, float level = 0.5f) {
    int count = 0;
    for (int y = box.y0; y < box.y1; ++y) {
      for (int x = box.x0; x < box.x1; ++x) {
        const glm::vec4 c = image.At(x, y);
        if (c.r > level && c.g > level && c.b > level) ++count;
      }
    }
    return count;
  }

  // The brightest red, green and blue inside the box.
  static glm::vec4 Brightest(const Image& image, const Box& box) {
    glm::vec4 best(0.0f);
    for (int y = box.y0; y < box.y1; ++y) {
      for (int x = box.x0; x < box.x1; ++x) best = glm::max(best, image.At(x, y));
    }
    return best;
  }
};

TEST_F(SpriteGoldenTest, HudTextAlignsWrapsAndBlendsOnce) {
  Database& level = AddLevel("Hud");
  AddHudText(level, "Left", "Left", {0.02f, 0.03f}, "left");
  AddHudText(level, "Centre", "Centre", {0.5f, 0.03f}, "Centre");
  AddHudText(level, "Right", "Right", {0.98f, 0.03f}, "RIGHT");
  AddHudText(level, "Wrapped", "Player 2 wins the round", {0.02f, 0.3f}, "left")
      .Add<double>("Width", 420.0);
  // Half-transparent white: the stem of a large I must come out half grey over the black scene.
  AddHudText(level, "Half", "I", {0.8f, 0.55f}, "center", 6.0)
      .Add<glm::vec4>("Color", glm::vec4(1, 1, 1, 0.5f));
  const Image image = RenderLevel("Hud");
  ExpectMatchesGolden(image, "hud_text");

  // The top row holds three words: against the left edge, around the centre, against the right.
  EXPECT_GT(Lit(image, {6, 5, 40, 22}), 20);
  EXPECT_EQ(Lit(image, {0, 0, 5, 25}), 0);
  EXPECT_GT(Lit(image, {140, 5, 180, 22}), 20);
  EXPECT_EQ(Lit(image, {60, 5, 120, 22}), 0);
  EXPECT_GT(Lit(image, {285, 5, 313, 22}), 20);
  EXPECT_EQ(Lit(image, {315, 0, 320, 25}), 0);
  // Wrapped at 420 of 1280 render pixels (105 captured, from x = 6): two lines of 16 pixels.
  EXPECT_EQ(Lit(image, {115, 50, 250, 110}), 0);
  for (const int line : {0, 1})
    EXPECT_GT(Lit(image, {6, 56 + 16 * line, 112, 68 + 16 * line}), 5) << line;
  EXPECT_EQ(Lit(image, {0, 88, 240, 110}), 0);
  const glm::vec4 stem = Brightest(image, {250, 100, 265, 150});
  EXPECT_NEAR(stem.r, 0.5f, 0.04f);
}

TEST_F(SpriteGoldenTest, WorldSpritesBillboardOverTheSceneUnderTheHud) {
  Database& level = AddLevel("World");
  // Looking along +x: a sprite in its object's x-y plane is seen edge on unless it billboards.
  AddCamera(level, {-10, 0, 0}, {1, 0, 0});
  Database& marker = *level.Find<Database>("GameObjects")->Add<Database>("Marker");
  AddTransform(marker, glm::vec3(0.0f));
  Database& label = *marker.Add<Database>("SpriteWorld");
  label.Add<double>("IsText", 1.0);
  label.Add<std::string>("Font", "Title");
  label.Add<std::string>("Message", "Potato");
  label.Add<double>("PixelScale", 3.0);
  label.Add<double>("IsBillboarded", 1.0);
  label.Add<double>("RelativePositionY", 1.5);
  label.Add<std::string>("HorizontalAlignment", "center");
  label.Add<std::string>("VerticalAlignment", "bottom");
  label.Add<glm::vec4>("Color", glm::vec4(1.0f, 0.9f, 0.3f, 1.0f));
  Database& icon = AddSprite(level, "Icon", "SpriteWorld");
  icon.Add<std::string>("ImageFileName", "Potato.png");
  icon.Add<double>("PixelScale", 2.0);
  icon.Add<double>("IsBillboarded", 1.0);
  icon.Add<std::string>("HorizontalAlignment", "center");
  icon.Add<std::string>("VerticalAlignment", "center");
  Database& edgeOn = AddText(level, "EdgeOn", "SpriteWorld", "Hidden", "Title", 3.0);
  edgeOn.Add<double>("RelativePositionY", -2.0);
  // A HUD panel across the lower middle covers the world sprites where they meet.
  Database& panel = AddSprite(level, "Panel", "SpriteHUD");
  panel.Add<std::string>("ImageFileName", "Panel.png");
  panel.Add<double>("ScreenPositionX", 0.5);
  panel.Add<double>("ScreenPositionY", 0.72);
  panel.Add<double>("Width", 500.0);
  panel.Add<std::string>("HorizontalAlignment", "center");
  panel.Add<std::string>("VerticalAlignment", "center");
  const Image image = RenderLevel("World");
  ExpectMatchesGolden(image, "world_sprites");

  // The label stands above the icon, wide and upright: yellow across the middle third.
  int labelLeft = kWidth, labelRight = 0, labelTop = kHeight, labelBottom = 0;
  for (int y = 0; y < kHeight / 2; ++y) {
    for (int x = 0; x < kWidth; ++x) {
      const glm::vec4 c = image.At(x, y);
      if (c.r > 0.8f && c.g > 0.75f && c.b < 0.4f) {
        labelLeft = std::min(labelLeft, x);
        labelRight = std::max(labelRight, x);
        labelTop = std::min(labelTop, y);
        labelBottom = std::max(labelBottom, y);
      }
    }
  }
  ASSERT_LT(labelLeft, labelRight);
  EXPECT_GT(labelRight - labelLeft, 3 * (labelBottom - labelTop));
  EXPECT_NEAR((labelLeft + labelRight) / 2, kWidth / 2, 6);
  // The icon's brown at the centre; the edge-on text leaves nothing below it but the panel.
  const glm::vec4 potato = image.At(kWidth / 2, kHeight / 2 - 4);
  EXPECT_GT(potato.r, potato.b + 0.2f);
  // Where the panel covers the icon's lower half, the panel's slate blue wins.
  const glm::vec4 covered = image.At(kWidth / 2, 104);
  EXPECT_GT(covered.b, covered.r);
}

TEST_F(SpriteGoldenTest, ScriptChangesShowInTheFrameTheyAreMade) {
  Database& level = AddLevel("Changes");
  Database& score = AddHudText(level, "Score", "I", {0.5f, 0.5f}, "center", 6.0);
  Database& badge = AddSprite(level, "Badge", "SpriteHUD");
  badge.Add<std::string>("ImageFileName", "Shield.png");
  badge.Add<glm::vec4>("Color", glm::vec4(1.0f));
  StartLevel("Changes");
  Frame();

  *score.Find<std::string>("Message") = "III";
  messages_.SendArgs("SetHUDObjectColor", std::string("Score"), 1.0, 0.0, 0.0);
  messages_.SendArgs("SetObjectAlpha", std::string("Badge"), 0.0);
  Frame();
  const Image image = Capture();
  const glm::vec4 red = Brightest(image, {130, 80, 190, 110});
  EXPECT_GT(red.r, 0.9f);
  EXPECT_LT(red.g, 0.1f);
  // Three strokes now: red reaches well left and right of where the single I stood.
  EXPECT_GT(Brightest(image, {130, 80, 152, 110}).r, 0.9f);
  EXPECT_GT(Brightest(image, {168, 80, 190, 110}).r, 0.9f);
  // The badge, faded out by its message, leaves its corner black.
  EXPECT_LT(Brightest(image, {0, 0, 30, 30}).b, 0.05f);

  // A script that writes a number over the text replaces the string entry: the number is shown.
  score.Add<double>("Message", 7.0);
  Frame();
  EXPECT_GT(Brightest(Capture(), {140, 80, 180, 110}).r, 0.9f);
  score.Remove("Message");
  Frame();
  EXPECT_LT(Brightest(Capture(), {140, 80, 180, 110}).r, 0.1f);
}

TEST_F(SpriteGoldenTest, MissingFilesAndCharactersFallBackVisiblyAndSayOnce) {
  Database& level = AddLevel("Missing");
  AddSprite(level, "Ghost", "SpriteHUD").Add<std::string>("ImageFileName", "Nowhere.png");
  AddText(level, "NoFont", "SpriteHUD", "Lost", "Vanished", 2.0)
      .Add<double>("ScreenPositionY", 0.5);
  AddHudText(level, "Euro", "\xE2\x82\xAC 5 \xE2\x82\xAC", {0.5f, 0.8f}, "left");
  AddHudText(level, "More", "\xE2\x82\xAC", {0.5f, 0.9f}, "left");
  const std::string printed = CaptureStdout([&] {
    StartLevel("Missing");
    for (int i = 0; i < 3; ++i) Frame();
  });
  for (const char* said : {"Sprite image Assets/Sprites/Nowhere.png could not be loaded",
                           "Font Assets/Fonts/Vanished.fnt not found",
                           "Font Assets/Fonts/Hud.fnt lacks characters"}) {
    EXPECT_EQ(CountOf(printed, said), 1u) << printed;
  }
  const Image image = Capture();
  // Both stand-ins show the default texture (grey asphalt), not nothing.
  EXPECT_GT(Brightest(image, {0, 0, 16, 16}).r, 0.2f);
  EXPECT_GT(Brightest(image, {0, 92, 16, 100}).r, 0.2f);
  // The 5 between the skipped signs is drawn where the line starts.
  EXPECT_GT(Lit(image, {160, 144, 180, 160}), 3);
}

}  // namespace
}  // namespace grindle::gfx
