// The renderer end to end on llvmpipe: its messages, the camera state it writes into the level and
// the frame state it keeps, observed through the database, the messages it sends and its accessors.
#include <chrono>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <glm/geometric.hpp>
#include <map>
#include <thread>

#include "Core/MathTypes.h"
#include "Core/ResourceManager.h"
#include "Core/ThreadManager.h"
#include "Graphics/Effects/EffectSlots.h"
#include "Graphics/Graphics.h"
#include "Graphics/RenderInterface/OpenGL/LightManager.h"
#include "Graphics/RenderInterface/OpenGL/OpenGLInterface.h"
#include "Graphics/RenderInterface/OpenGL/RenderMath.h"
#include "Graphics/RenderInterface/OpenGL/TextureStore.h"
#include "RendererFixture.h"
#include "TestOutput.h"

namespace grindle::gfx {
namespace {

class RendererTest : public RendererFixture {
 protected:
  // Counts every delivery of `name` and keeps the last arguments that were doubles.
  struct Heard {
    int count = 0;
    std::vector<double> numbers;
  };
  Heard& Hear(const std::string& name) {
    Heard& heard = heard_[name];
    messages_.Listen(name, "RendererTest", [&heard](MessageArgs args) {
      ++heard.count;
      heard.numbers.clear();
      for (uint32_t i = 0; i < args.count; ++i) {
        if (const double* value = args.Get<double>(i)) heard.numbers.push_back(*value);
      }
    });
    return heard;
  }
  void TearDown() override {
    for (const auto& [name, heard] : heard_) messages_.UnListen(name, "RendererTest");
  }
  double CameraValue(Database& level, const char* name) {
    return *level.Find<Database>("CurrentCamera")->Find<double>(name);
  }

  std::map<std::string, Heard> heard_;
};

TEST_F(RendererTest, EveryMessageOfTheRendererHasItsListenerAndOnlyOne) {
  for (const char* message :
       {"msgObjectDestroyed", "msgObjectCreated", "msgLevelObjectCreated", "msgUnloadLevel",
        "SCR:PotatoExploded", "LevelInitializeComplete", "LoadShaders", "Keyboard", "Mouse",
        "OnResize", "SetClientWindow", "FullScreenMSG", "WindowDeactivated", "WindowActivated",
        "msgSetWorldObjectAlpha", "SetObjectAlpha", "SetSpriteWorldObjectAlpha",
        "SetWorldObjectColor", "SetHUDObjectColor", "LoadRemainingShaders", "ChangeResolution",
        "msgScreenshot", "msgSetPostProcessing", "msgSetDebugDraw"}) {
    EXPECT_EQ(messages_.ListenerCount(message), 1u) << message;
  }
  // The effect slots listen for reloads on their own.
  EXPECT_EQ(messages_.ListenerCount("ResourceReloaded"), 1u);
}

TEST_F(RendererTest, MainCameraIsWrittenToCurrentCameraAndBecomesTheView) {
  Database& level = AddLevel("CameraLevel");
  AddCamera(level, {1, 2, 3}, {0, 0, 2});
  StartLevel("CameraLevel");
  Frame();
  EXPECT_DOUBLE_EQ(CameraValue(level, "PositionX"), 1.0);
  EXPECT_DOUBLE_EQ(CameraValue(level, "PositionY"), 2.0);
  EXPECT_DOUBLE_EQ(CameraValue(level, "PositionZ"), 3.0);
  EXPECT_DOUBLE_EQ(CameraValue(level, "ViewZ"), 1.0);  // normalised
  EXPECT_DOUBLE_EQ(CameraValue(level, "UpY"), 1.0);
  EXPECT_DOUBLE_EQ(CameraValue(level, "UpX"), 0.0);
  const glm::vec4 eyeInView = Renderer().View() * glm::vec4(1, 2, 3, 1);
  EXPECT_NEAR(glm::length(glm::vec3(eyeInView)), 0.0f, 1e-5f);
  const glm::vec4 ahead = Renderer().View() * glm::vec4(1, 2, 13, 1);
  EXPECT_NEAR(ahead.z, -10.0f, 1e-4f);
  EXPECT_NEAR(Renderer().SlowClock(), 0.1f / 60.0f, 1e-6f);
}

TEST_F(RendererTest, PausedGameKeepsTheCameraStillButStillRenders) {
  Database& level = AddLevel("PauseLevel");
  Database& camera = AddCamera(level, {0, 0, 0}, {0, 0, 1});
  Database& box = AddMeshObject(level, "Box", "Box.mesh", {0, 0, 5}, {1, 1, 1}, {1, 0, 0, 1});
  StartLevel("PauseLevel");
  Frame();
  const Image before = Capture();
  const float clock = Renderer().AnimationClock();
  *root_.Find<bool>("isGamePaused") = true;
  *camera.Find<double>("PositionX") = 50.0;
  *box.Find<Database>("Material")->Find<glm::vec4>("Diffuse") = glm::vec4(0, 1, 0, 1);
  Frame();
  EXPECT_DOUBLE_EQ(CameraValue(level, "PositionX"), 0.0);
  EXPECT_EQ(Renderer().EyePosition().x, 0.0f);
  EXPECT_EQ(Renderer().AnimationClock(), clock);
  // The box turned green on screen: the paused frame was drawn, from the same place.
  const Image after = Capture();
  const glm::vec4 centreBefore = before.At(kWidth / 2, kHeight / 2);
  const glm::vec4 centreAfter = after.At(kWidth / 2, kHeight / 2);
  EXPECT_GT(centreBefore.r, centreBefore.g);
  EXPECT_GT(centreAfter.g, centreAfter.r);
  *root_.Find<bool>("isGamePaused") = false;
  Frame();
  EXPECT_DOUBLE_EQ(CameraValue(level, "PositionX"), 50.0);
}

TEST_F(RendererTest, LevelWithoutMainCameraKeepsThePreviousView) {
  Database& first = AddLevel("WithCamera");
  AddCamera(first, {4, 5, 6}, {1, 0, 0});
  StartLevel("WithCamera");
  Frame();
  const glm::mat4 view = Renderer().View();
  AddLevel("NoCamera");
  StartLevel("NoCamera");
  Frame();
  EXPECT_EQ(Renderer().View(), view);
}

TEST_F(RendererTest, ChangeResolutionAcceptsOnlyTheExactNames) {
  for (const char* ignored : {"1280x720 ", "1280X720", "640 x 360"}) {
    messages_.SendArgs("ChangeResolution", std::string(ignored));
    Deliver();
    EXPECT_EQ(Renderer().RenderWidth(), 1280) << ignored;
  }
  messages_.SendArgs("ChangeResolution", std::string("640x360"));
  Deliver();
  EXPECT_EQ(Renderer().RenderWidth(), 640);
  EXPECT_EQ(Renderer().RenderHeight(), 360);
  EXPECT_EQ(Renderer().SceneTarget()->Width(), 640);
  EXPECT_EQ(Renderer().GlowTargetA()->Height(), 360);
  EXPECT_EQ(Renderer().ClientWidth(), kWidth);  // the window keeps its size
  messages_.SendArgs("ChangeResolution", std::string("1280x720"));
  Deliver();
  EXPECT_EQ(Renderer().SceneTarget()->Width(), 1280);
}

TEST_F(RendererTest, FieldOfViewClampsAndRebuildsTheProjectionForTheRenderAspect) {
  const float original = Renderer().FieldOfView();
  Renderer().SetFieldOfView(5.0f);
  EXPECT_FLOAT_EQ(Renderer().FieldOfView(), kPi);
  Renderer().SetFieldOfView(0.0f);
  EXPECT_FLOAT_EQ(Renderer().FieldOfView(), 0.001f);
  Renderer().SetFieldOfView(1.2f);
  Renderer().SetFieldOfView(-1.0f);
  EXPECT_FLOAT_EQ(Renderer().FieldOfView(), 1.2f);
  EXPECT_EQ(Renderer().Projection(), PerspectiveMatrix(1.2f, 1280.0f / 720.0f));
  EXPECT_EQ(Renderer().Orthographic(), OrthographicMatrix(1280.0f, 720.0f));
  Renderer().SetFieldOfView(original);
}

TEST_F(RendererTest, LosingActivationInFullScreenComesBackToFullScreen) {
  Heard& minimize = Hear("MinimizeWindow");
  Heard& show = Hear("ShowWindow");
  messages_.Send("FullScreenMSG");
  Deliver();
  ASSERT_TRUE(Renderer().IsFullScreen());
  messages_.Send("WindowDeactivated");
  Deliver();
  EXPECT_FALSE(Renderer().IsFullScreen());
  EXPECT_TRUE(Renderer().ShouldRestoreFullScreen());
  EXPECT_EQ(minimize.count, 1);
  messages_.Send("WindowActivated");
  Deliver();
  EXPECT_TRUE(Renderer().IsFullScreen());
  EXPECT_GE(show.count, 3);  // full screen on, off, on again, then activation itself
  // In a window, losing activation does not arm the return.
  messages_.Send("FullScreenMSG");
  messages_.Send("WindowDeactivated");
  messages_.Send("WindowActivated");
  Deliver();
  EXPECT_FALSE(Renderer().IsFullScreen());
  EXPECT_FALSE(Renderer().ShouldRestoreFullScreen());
  EXPECT_EQ(minimize.count, 1);
}

TEST_F(RendererTest, ActivationUnpausesOnlyTheFrontEndLevels) {
  root_.Add<std::string>("CurrentLevel", "Arena");
  *root_.Find<bool>("isGamePaused") = true;
  messages_.Send("WindowActivated");
  Deliver();
  EXPECT_TRUE(*root_.Find<bool>("isGamePaused"));
  root_.Add<std::string>("CurrentLevel", "SplashScreens");
  messages_.Send("WindowActivated");
  Deliver();
  EXPECT_FALSE(*root_.Find<bool>("isGamePaused"));
}

TEST_F(RendererTest, GlowTargetsAlternateEveryUpdate) {
  AddLevel("GlowLevel");
  StartLevel("GlowLevel");
  Frame();
  const RenderTarget* first = Renderer().CurrentGlow();
  Frame();
  const RenderTarget* second = Renderer().CurrentGlow();
  Frame();
  EXPECT_NE(first, second);
  EXPECT_EQ(Renderer().CurrentGlow(), first);
}

TEST_F(RendererTest, ThePotatoCarriesTheFirstSpotLightAndTheTrackedPoint) {
  Database& level = AddLevel("PotatoLevel");
  AddMeshObject(level, "Potato", "Sphere.mesh", {7, 2, -3}, {1, 1, 1}, {1, 1, 0, 1});
  StartLevel("PotatoLevel");
  Frame();
  const SpotLight& spot = Renderer().Lights().Lights().spot[0];
  EXPECT_FLOAT_EQ(spot.position.x, 7.0f);
  EXPECT_FLOAT_EQ(spot.position.y, 40.0f);
  EXPECT_FLOAT_EQ(spot.position.z, -3.0f);
  EXPECT_EQ(Renderer().TrackedPoint(), glm::vec4(7.0f, 7.0f, -3.0f, 1.0f));
}

TEST_F(RendererTest, LevelLightsReplaceTheDefaultsUntilTheLevelUnloads) {
  Database& level = AddLevel("LitLevel");
  Database& lamp = *level.Find<Database>("GameObjects")->Add<Database>("Lamp");
  Database& light = *lamp.Add<Database>("Light");
  light.Add<std::string>("type", "Directional");
  light.Add<Vector4>("Diffuse", {0.1f, 0.2f, 0.3f, 1.0f});
  light.Add<double>("DirectionX", 0.0);
  light.Add<double>("DirectionY", -2.0);
  light.Add<double>("DirectionZ", 0.0);
  StartLevel("LitLevel");
  Frame();
  const DirectionalLight& first = Renderer().Lights().Lights().directional[0];
  EXPECT_EQ(first.diffuse, glm::vec4(0.1f, 0.2f, 0.3f, 1.0f));
  EXPECT_EQ(first.direction, glm::vec3(0.0f, -1.0f, 0.0f));
  EXPECT_EQ(Renderer().Lights().Lights().directional[1].diffuse,
            Renderer().Lights().DefaultSet().directional[1].diffuse);
  messages_.SendArgs("msgUnloadLevel", std::string("LitLevel"));
  Frame();
  EXPECT_FALSE(Renderer().Lights().HasObject("Lamp"));
  EXPECT_EQ(Renderer().Lights().Lights().directional[0].diffuse,
            Renderer().Lights().DefaultSet().directional[0].diffuse);
}

TEST_F(RendererTest, SpriteColourMessagesWriteTheirComponents) {
  Database& level = AddLevel("MenuLevel");
  Database& button = *level.Find<Database>("GameObjects")->Add<Database>("Button");
  button.Add<Database>("SpriteHUD")->Add<Vector4>("Color", {1, 1, 1, 1});
  button.Add<Database>("SpriteWorld")->Add<glm::vec4>("Color", glm::vec4(1.0f));
  messages_.SendArgs("SetObjectAlpha", std::string("Button"), 0.25);
  messages_.SendArgs("SetWorldObjectColor", std::string("Button"), 0.5, 0.75, 0.125);
  messages_.SendArgs("msgSetWorldObjectAlpha", std::string("Button"), 0.5);
  messages_.SendArgs("SetHUDObjectColor", std::string("Nobody"), 0.0, 0.0, 0.0);  // ignored
  Deliver();
  const Vector4 hud = *button.Find<Database>("SpriteHUD")->Find<Vector4>("Color");
  EXPECT_EQ(hud.w, 0.25f);
  EXPECT_EQ(hud.x, 1.0f);
  EXPECT_EQ(*button.Find<Database>("SpriteWorld")->Find<glm::vec4>("Color"),
            glm::vec4(0.5f, 0.75f, 0.125f, 0.5f));
}

TEST_F(RendererTest, TheSoundListenerHearsTheEyeAndLookDirectionEachFrame) {
  Heard& listener = Hear("Update3DSoundListener");
  Database& level = AddLevel("SoundLevel");
  AddCamera(level, {1, 2, 3}, {0, 0, -4});
  StartLevel("SoundLevel");
  Frame();
  Frame();
  Deliver();
  EXPECT_EQ(listener.count, 2);
  EXPECT_EQ(listener.numbers, (std::vector<double>{1, 2, 3, 0, 0, -1}));
}

TEST_F(RendererTest, ASecondLoadShadersCreatesNothingNew) {
  const Effect* basic = Effects().basic.get();
  const Effect* sky = Effects().sky.get();
  messages_.Send("LoadShaders");
  messages_.Send("LoadRemainingShaders");
  Deliver();
  EXPECT_EQ(Effects().basic.get(), basic);
  EXPECT_EQ(Effects().sky.get(), sky);
}

TEST_F(RendererTest, ReloadRebuildsTheEffectOfThatFileAndIgnoresOtherFiles) {
  const Effect* color = Effects().color.get();
  const Effect* sprite = Effects().sprite.get();
  messages_.SendArgs("ResourceReloaded", std::string("Assets/Textures/Asphalt.png"));
  messages_.SendArgs("ResourceReloaded", std::string("shaders/NotAnEffect.fx"));
  Deliver();
  EXPECT_EQ(Effects().color.get(), color);
  messages_.SendArgs("ResourceReloaded", std::string("shaders/color.fx"));
  Deliver();
  EXPECT_NE(Effects().color.get(), color);
  EXPECT_TRUE(Effects().color->IsLoaded());
  EXPECT_EQ(Effects().sprite.get(), sprite);
}

TEST_F(RendererTest, ScreenshotOfAnEmptySceneIsTheBlackBackBuffer) {
  AddLevel("Empty");
  StartLevel("Empty");
  Frame();
  const Image image = Capture();
  ASSERT_EQ(image.width, kWidth);
  ASSERT_EQ(image.height, kHeight);
  for (int y = 0; y < kHeight; y += 37) {
    for (int x = 0; x < kWidth; x += 41) EXPECT_EQ(image.At(x, y), glm::vec4(0, 0, 0, 1));
  }
}

TEST_F(RendererTest, AnEffectThatFailsToCompileNamesFileLineAndMessageAndStaysEmpty) {
  const std::string path = testing::TempDir() + "broken.fx";
  {
    std::ofstream file(path);
    file << "// a shader author's typo on line 5\n@common\nuniform mat4 gWVP;\n@vertex VS\n"
            "void main() { gl_Position = gWVP * undeclaredThing; }\n"
            "@fragment PS\nout vec4 c;\nvoid main() { c = vec4(1); }\n"
            "@technique T\npass P vertex=VS fragment=PS\n";
  }
  testing::internal::CaptureStderr();
  Effect broken(path);
  const std::string shown = testing::internal::GetCapturedStderr();
  EXPECT_FALSE(broken.IsLoaded());
  EXPECT_NE(shown.find(path + ":5("), std::string::npos) << shown;
  EXPECT_NE(shown.find("undeclaredThing"), std::string::npos) << shown;
  // Its handles are inert: drawing with them does nothing rather than crash.
  EXPECT_FALSE(broken.Technique("T").IsValid());
  broken.ApplyPass(broken.Technique("T"), 0);
  broken.SetMatrix(broken.Variable("gWVP"), glm::mat4(1.0f));
  std::remove(path.c_str());

  const std::string shownMissing = CaptureStdout([] { Effect missing("shaders/Nowhere.fx"); });
  EXPECT_EQ(shownMissing, "Effect file shaders/Nowhere.fx could not be opened\n");
}

TEST_F(RendererTest, AMissingTextureFallsBackToTheDefaultWithOneWarning) {
  TextureStore& textures = Renderer().Textures();
  std::string first;
  GLuint texture = 0;
  first = CaptureStdout([&] { texture = textures.Find("NoSuchTexture.png"); });
  const std::string second =
      CaptureStdout([&] { EXPECT_EQ(textures.Find("NoSuchTexture.png"), texture); });
  EXPECT_EQ(texture, textures.DefaultTexture());
  EXPECT_NE(first.find("Assets/Textures/NoSuchTexture.png"), std::string::npos) << first;
  EXPECT_EQ(second, "");
  EXPECT_NE(textures.Find("Crate.png"), textures.DefaultTexture());
}

TEST_F(RendererTest, AnEffectFileWrittenUnderTheWatchedTreeIsRebuilt) {
  namespace fs = std::filesystem;
  const fs::path tree = fs::path(testing::TempDir()) / "grindle_effect_watch";
  fs::remove_all(tree);
  fs::create_directories(tree / "shaders");
  ThreadManager threads(2, 10);
  auto resources = std::make_unique<ResourceManager>(threads, messages_, tree.string());
  Database& systems = *root_.Find<Database>("Systems");
  systems.Add<ResourceManager*>("ResourceManager", resources.get());
  // A renderer made now registers every effect file with the manager.
  Graphics& graphics = *CurrentGraphics();
  const auto restart = [&] {
    CaptureStdout([&] { ASSERT_TRUE(graphics.CreateRenderer()); });
    messages_.Send("FullScreenMSG");
    messages_.Send("LoadShaders");
    Deliver();
  };
  restart();
  const Effect* color = Effects().color.get();
  const Effect* basic = Effects().basic.get();
  std::this_thread::sleep_for(std::chrono::milliseconds(20));
  std::ofstream(tree / "shaders" / "color.fx") << "// saved by a shader author\n";
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(3);
  while (Effects().color.get() == color && std::chrono::steady_clock::now() < deadline) {
    resources->Update();
    Deliver();
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }
  EXPECT_NE(Effects().color.get(), color);
  EXPECT_EQ(Effects().basic.get(), basic);
  // The renderer lets go of its registrations before the manager goes away.
  systems.Remove("ResourceManager");
  restart();
  resources.reset();
  fs::remove_all(tree);
}

TEST_F(RendererTest, BothRenderApisGiveTheOpenGLRendererAndOthersNone) {
  Graphics& graphics = *CurrentGraphics();
  graphics.SetRenderApi(3);
  EXPECT_FALSE(graphics.CreateRenderer());
  EXPECT_EQ(graphics.Renderer(), nullptr);
  EXPECT_EQ(CurrentRenderer(), nullptr);
  Frame();  // the system carries on without a renderer
  graphics.SetRenderApi(kRenderApiSecondary);
  ASSERT_TRUE(CaptureStdout([&] { EXPECT_TRUE(graphics.CreateRenderer()); }).empty());
  EXPECT_EQ(graphics.Renderer(), CurrentRenderer());
  EXPECT_TRUE(Renderer().IsFullScreen());  // a new renderer starts in full screen again
  EXPECT_FALSE(SceneShadersLoaded());
  graphics.SetRenderApi(kRenderApiPrimary);
  messages_.Send("FullScreenMSG");
  messages_.Send("LoadShaders");
  Deliver();
  EXPECT_TRUE(SceneShadersLoaded());
}

using RendererDeathTest = RendererTest;

TEST_F(RendererDeathTest, StartingAMissingLevelStops) {
  EXPECT_DEATH(
      {
        StdoutToStderr();
        messages_.SendArgs("LevelInitializeComplete", std::string("NoSuchLevel"));
        Deliver();
      },
      "DETAILS: Current level not found");
}

TEST_F(RendererDeathTest, SpriteColourWithoutACurrentLevelStops) {
  EXPECT_DEATH(
      {
        StdoutToStderr();
        messages_.SendArgs("SetObjectAlpha", std::string("Button"), 0.5);
        Deliver();
      },
      "DETAILS: Current level not found");
}

}  // namespace
}  // namespace grindle::gfx
