// Each particle kind rendered at a fixed time after it starts (fixed 1/60 s steps; the random
// values come from a fixed-seed texture, so every run draws the same particles), compared with its
// reference image and checked for the colour and place that make it look like its name. Also: a
// one-shot explosion that ends by itself and bursts again on the restart message.
#include "Core/Messages/Catalogue.h"
#include "GoldenImage.h"

namespace grindle::gfx {
namespace {

// What the particles added over the empty scene in a block of the image.
struct Added {
  int pixels = 0;  // pixels changed by more than 8/255
  glm::vec3 mean{0.0f};
};

Added AddedLight(const Image& image, const Image& empty, int x0, int y0, int x1, int y1) {
  Added added;
  for (int y = y0; y < y1; ++y) {
    for (int x = x0; x < x1; ++x) {
      const glm::vec3 d = glm::vec3(image.At(x, y)) - glm::vec3(empty.At(x, y));
      if (std::abs(d.r) + std::abs(d.g) + std::abs(d.b) < 8.0f / 255.0f) continue;
      ++added.pixels;
      added.mean += glm::vec3(image.At(x, y));
    }
  }
  if (added.pixels > 0) added.mean /= static_cast<float>(added.pixels);
  return added;
}

class ParticleImageTest : public GoldenImageFixture {
 protected:
  // A quarter of the default render resolution: the frames are many, and 640 x 360 is still
  // twice the window.
  void SetUp() override {
    GoldenImageFixture::SetUp();
    messages_.SendArgs("ChangeResolution", std::string("640x360"));
  }
  void TearDown() override { messages_.SendArgs("ChangeResolution", std::string("1280x720")); }

  // A dark floor, the camera 10 units back looking at the origin, one object carrying a particle
  // system at the origin.
  Database& ParticleLevel(const std::string& name, const char* type) {
    Database& level = AddLevel(name);
    AddCamera(level, {0, 2, -10}, {0, -0.2f, 1});
    AddMeshObject(level, "Floor", "Grid.mesh", {0, -1, 0}, {40, 1, 40}, {0.1f, 0.1f, 0.1f, 1});
    Database& object = *level.Find<Database>("GameObjects")->Add<Database>("Emitter");
    AddTransform(object, glm::vec3(0.0f));
    if (type != nullptr) {
      Database& system = *object.Add<Database>("ParticleSystem");
      system.Add<std::string>("Type", type);
      system.Add<double>("EmitDirectionX", 0.0);
      system.Add<double>("EmitDirectionY", 0.0);
      system.Add<double>("EmitDirectionZ", 0.0);
    }
    return level;
  }

  // `frames` steps of `dt`, captured after the last. Only the view and the time step reach the
  // particles, so between a first and a last whole frame the particle manager is stepped on its
  // own with the first frame's view: the same particles for a fraction of the time, the scene
  // around them being what costs on llvmpipe.
  Image Run(int frames, float dt = 1.0f / 60.0f) {
    Step(dt);
    const glm::mat4 viewProj = Renderer().Projection() * Renderer().View();
    for (int i = 2; i < frames; ++i) Renderer().Particles().Draw(viewProj, dt);
    Step(dt);
    return Capture();
  }
  void Step(float dt) {
    Deliver();
    graphics_.Update(dt);
  }

  uint32_t LiveParticles() {
    const ParticleSystem* system = Renderer().Particles().Find("Emitter");
    return system != nullptr ? system->LastParticleCount() : 0;
  }
};

TEST_F(ParticleImageTest, EachKindLooksLikeItsNameHalfASecondIn) {
  ParticleLevel("Empty", nullptr);
  StartLevel("Empty");
  const Image empty = Run(2);

  enum class Hue { kWarm, kCool, kDusty, kGolden };
  const struct {
    const char* type;
    Hue hue;
    // Where on screen the particles must show (the emitter is at the centre, x 160, y 90).
    int x0, y0, x1, y1;
    int minPixels;
  } kinds[] = {
      {"Fire", Hue::kWarm, 130, 20, 190, 100, 300},
      {"Explosion", Hue::kWarm, 90, 10, 230, 150, 3000},
      {"ExplosionSmall", Hue::kWarm, 130, 50, 190, 110, 500},
      {"ExplosionMine", Hue::kWarm, 40, 40, 280, 130, 1500},
      {"Rain", Hue::kCool, 0, 0, 320, 180, 300},
      {"Dust", Hue::kDusty, 130, 60, 190, 110, 150},
      {"Blink", Hue::kGolden, 130, 50, 190, 120, 40},
  };
  for (const auto& kind : kinds) {
    SCOPED_TRACE(kind.type);
    const std::string level = std::string("Particles") + kind.type;
    ParticleLevel(level, kind.type);
    StartLevel(level);
    const Image image = Run(30);
    const Added added = AddedLight(image, empty, kind.x0, kind.y0, kind.x1, kind.y1);
    EXPECT_GE(added.pixels, kind.minPixels);
    const glm::vec3 c = added.mean;
    switch (kind.hue) {
      case Hue::kWarm:  // fire and fireballs: red over green over blue
        EXPECT_GT(c.r, c.g);
        EXPECT_GT(c.g, c.b + 0.05f);
        break;
      case Hue::kCool:  // rain: grey-blue
        EXPECT_GE(c.b, c.r);
        break;
      case Hue::kDusty:  // dust: a dull brown, far from saturated
        EXPECT_GT(c.r, c.b);
        EXPECT_LT(c.r - c.b, 0.2f);
        break;
      case Hue::kGolden:  // sparkles: bright yellow-white
        EXPECT_GT(c.g, c.b);
        EXPECT_GT(c.r + c.g, 0.8f);
        break;
    }
    ExpectMatchesGolden(image, std::string("particles_") + kind.type);
    root_.Find<Database>("Levels")->Remove(level);
    messages_.SendArgs("msgObjectDestroyed", DataHandle<Database>(), std::string("Emitter"));
  }
}

TEST_F(ParticleImageTest, AnExplosionEndsByItselfAndBurstsAgainOnRequest) {
  ParticleLevel("Empty", nullptr);
  StartLevel("Empty");
  const Image empty = Run(2);
  root_.Find<Database>("Levels")->Remove("Empty");

  ParticleLevel("Blast", "Explosion");
  StartLevel("Blast");
  Run(10);
  EXPECT_GT(LiveParticles(), 40u);
  // Longer steps for the rest of the explosion's life keep the test short.
  const Image ended = Run(25, 0.1f);
  EXPECT_EQ(LiveParticles(), 0u);
  EXPECT_EQ(AddedLight(ended, empty, 0, 0, kWidth, kHeight).pixels, 0);
  ExpectMatchesGolden(ended, "particles_explosion_ended");

  msg::Post(messages_, msg::scr::kRestartParticles, std::string("Emitter"));
  const Image again = Run(30);
  EXPECT_GT(AddedLight(again, empty, 90, 10, 230, 150).pixels, 3000);
  messages_.SendArgs("msgObjectDestroyed", DataHandle<Database>(), std::string("Emitter"));
}

}  // namespace
}  // namespace grindle::gfx
