// The renderer end to end on llvmpipe: its messages, the camera state it writes into the level and
// the frame state it keeps, observed through the database, the messages it sends and its accessors.
// Each test runs in a process of its own under CTest and pays for compiling every effect, so the
// cases that share a scene share a test.
#include <chrono>
#include <filesystem>
#include <fstream>
#include <glm/geometric.hpp>
#include <map>
#include <random>
#include <sstream>
#include <thread>

#include "Core/ResourceManager.h"
#include "Core/ThreadManager.h"
#include "Eventually.h"
#include "Graphics/Effects/EffectSlots.h"
#include "Graphics/RenderInterface/OpenGL/ImageMips.h"
#include "Graphics/RenderInterface/OpenGL/LightManager.h"
#include "Graphics/RenderInterface/OpenGL/RenderMath.h"
#include "Input/Keyboard.h"
#include "RendererFixture.h"
#include "TempWorkDir.h"

namespace grindle::gfx {
namespace {

class RendererTest : public RendererFixture {
 protected:
  // Counts every delivery of `name` and keeps the doubles among the last arguments.
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
  // Position, view and up of the level's CurrentCamera, in that order.
  static std::vector<double> CurrentCamera(Database& level) {
    std::vector<double> values;
    for (const char* name :
         {"PositionX", "PositionY", "PositionZ", "ViewX", "ViewY", "ViewZ", "UpX", "UpY", "UpZ"}) {
      values.push_back(*level.Find<Database>("CurrentCamera")->Find<double>(name));
    }
    return values;
  }

  std::map<std::string, Heard> heard_;
};

TEST_F(RendererTest, EveryMessageOfTheRendererHasItsListenerAndOnlyOne) {
  std::istringstream messages(
      "msgObjectDestroyed msgObjectCreated msgLevelObjectCreated msgUnloadLevel SCR:PotatoExploded "
      "LevelInitializeComplete LoadShaders Keyboard Mouse OnResize SetClientWindow FullScreenMSG "
      "WindowDeactivated WindowActivated msgSetWorldObjectAlpha SetObjectAlpha "
      "SetSpriteWorldObjectAlpha SetWorldObjectColor SetHUDObjectColor LoadRemainingShaders "
      "ChangeResolution msgScreenshot msgSetPostProcessing msgSetDebugDraw");
  for (std::string message; messages >> message;) {
    EXPECT_EQ(messages_.ListenerCount(message), 1u) << message;
  }
  // The effect slots listen for reloads on their own.
  EXPECT_EQ(messages_.ListenerCount("ResourceReloaded"), 1u);
}

TEST_F(RendererTest, TheMainCameraDrivesViewAndListenerWhilePausingFreezesAllButTheDrawing) {
  Heard& listener = Hear("Update3DSoundListener");
  Database& level = AddLevel("CameraLevel");
  Database& camera = AddCamera(level, {1, 2, 3}, {0, 0, 4});
  Database& box = AddMeshObject(level, "Box", "Box.mesh", {1, 2, 8}, {1, 1, 1}, {1, 0, 0, 1});
  StartLevel("CameraLevel");
  Frame();
  const RenderTarget* firstGlow = Renderer().CurrentGlow();
  Frame();
  Deliver();
  const RenderTarget* secondGlow = Renderer().CurrentGlow();
  EXPECT_NE(firstGlow, secondGlow);  // the glow targets alternate every update
  EXPECT_EQ(listener.count, 2);
  EXPECT_EQ(listener.numbers, (std::vector<double>{1, 2, 3, 0, 0, 1}));
  const std::vector<double> written = {1, 2, 3, 0, 0, 1, 0, 1, 0};  // the view normalised
  EXPECT_EQ(CurrentCamera(level), written);
  const glm::mat4 view = Renderer().View();
  EXPECT_NEAR(glm::length(glm::vec3(view * glm::vec4(1, 2, 3, 1))), 0.0f, 1e-5f);
  EXPECT_NEAR((view * glm::vec4(1, 2, 13, 1)).z, -10.0f, 1e-4f);
  // The window-sized screenshot shows the red box on the black that was cleared to.
  const Image before = Capture();
  ASSERT_EQ(before.width, kWidth);
  ASSERT_EQ(before.height, kHeight);
  EXPECT_EQ(before.At(0, 0), glm::vec4(0, 0, 0, 1));
  EXPECT_EQ(before.At(kWidth - 1, kHeight - 1), glm::vec4(0, 0, 0, 1));
  EXPECT_GT(before.At(kWidth / 2, kHeight / 2).r, before.At(kWidth / 2, kHeight / 2).g);

  const float clock = Renderer().AnimationClock();
  *root_.Find<bool>("isGamePaused") = true;
  *camera.Find<double>("PositionX") = 50.0;
  *box.Find<Database>("Material")->Find<glm::vec4>("Diffuse") = glm::vec4(0, 1, 0, 1);
  Frame();
  EXPECT_EQ(CurrentCamera(level), written);
  EXPECT_EQ(Renderer().EyePosition().x, 1.0f);
  EXPECT_EQ(Renderer().AnimationClock(), clock);
  EXPECT_EQ(Renderer().CurrentGlow(), secondGlow);
  // The box turned green on screen: the paused frame was drawn, from the same place.
  const glm::vec4 centreAfter = Capture().At(kWidth / 2, kHeight / 2);
  EXPECT_GT(centreAfter.g, centreAfter.r);
  *root_.Find<bool>("isGamePaused") = false;
  Frame();
  EXPECT_EQ(CurrentCamera(level)[0], 50.0);
  EXPECT_EQ(Renderer().CurrentGlow(), firstGlow);

  // A level without a MainCamera keeps the view the last one left.
  const glm::mat4 lastView = Renderer().View();
  AddLevel("NoCamera");
  StartLevel("NoCamera");
  Frame();
  EXPECT_EQ(Renderer().View(), lastView);
}

// The digit keys reach the renderer only as the input system's "Keyboard" payload, sampled here
// from SDL's key state as the input system samples it; the view changes on a key's press edge.
TEST_F(RendererTest, DigitKeysChooseTheDebugViewOnTheirPressEdgeFromTheKeyboardPayload) {
  AddLevel("Keys");
  StartLevel("Keys");
  Uint8* keys = const_cast<Uint8*>(SDL_GetKeyboardState(nullptr));
  Keyboard keyboard;
  const auto hold = [&](std::initializer_list<SDL_Scancode> down, bool send = true) {
    for (SDL_Scancode key :
         {SDL_SCANCODE_0, SDL_SCANCODE_1, SDL_SCANCODE_2, SDL_SCANCODE_3, SDL_SCANCODE_4})
      keys[key] = 0;
    for (SDL_Scancode key : down) keys[key] = 1;
    keyboard.Sample();
    if (send) messages_.SendArgs("Keyboard", keyboard);
    Frame();
    return Renderer().DebugViewIndex();
  };
  const struct {
    std::initializer_list<SDL_Scancode> down;
    bool send;
    int view;
  } steps[] = {
      {{SDL_SCANCODE_0}, true, 0},
      {{}, true, 0},
      // Held in SDL but never sent: the renderer does not look at the keyboard behind input's back.
      {{SDL_SCANCODE_2}, false, 0},
      {{}, true, 0},
      {{SDL_SCANCODE_2}, true, 2},
      {{SDL_SCANCODE_2}, true, 2},
      // 1 goes down while 2 is still held: only 1 has a press edge.
      {{SDL_SCANCODE_1, SDL_SCANCODE_2}, true, 1},
      {{}, true, 1},
      // Two edges in one frame: the later digit wins.
      {{SDL_SCANCODE_0, SDL_SCANCODE_3}, true, 3},
      {{}, true, 3},
      {{SDL_SCANCODE_4}, true, 3},  // only 0..3 choose a view
      {{SDL_SCANCODE_0}, true, 0},
  };
  for (size_t i = 0; i < std::size(steps); ++i) {
    EXPECT_EQ(hold(steps[i].down, steps[i].send), steps[i].view) << "step " << i;
  }
  hold({});
}

TEST_F(RendererTest, ResolutionNamesAndFieldOfViewRebuildTargetsAndProjections) {
  messages_.SendArgs("ChangeResolution", std::string("640X360"));  // not an exact name
  Deliver();
  EXPECT_EQ(Renderer().RenderWidth(), 1280);
  messages_.SendArgs("ChangeResolution", std::string("640x360"));
  Deliver();
  EXPECT_EQ(Renderer().RenderWidth(), 640);
  EXPECT_EQ(Renderer().RenderHeight(), 360);
  EXPECT_EQ(Renderer().SceneTarget()->Width(), 640);
  EXPECT_EQ(Renderer().GlowTargetA()->Height(), 360);
  EXPECT_EQ(Renderer().Orthographic(), OrthographicMatrix(640.0f, 360.0f));
  EXPECT_EQ(Renderer().ClientWidth(), kWidth);  // the window keeps its size
  messages_.SendArgs("ChangeResolution", std::string("1280x720"));
  Deliver();
  EXPECT_EQ(Renderer().SceneTarget()->Width(), 1280);

  const float original = Renderer().FieldOfView();
  Renderer().SetFieldOfView(5.0f);
  EXPECT_FLOAT_EQ(Renderer().FieldOfView(), kPi);
  Renderer().SetFieldOfView(1.2f);
  Renderer().SetFieldOfView(-1.0f);  // keeps the angle, rebuilds the matrices
  EXPECT_EQ(Renderer().Projection(), PerspectiveMatrix(1.2f, 1280.0f / 720.0f));
  Renderer().SetFieldOfView(original);
}

TEST_F(RendererTest, ActivationRestoresLostFullScreenAndUnpausesOnlyTheFrontEndLevels) {
  Heard& minimize = Hear("MinimizeWindow");
  SendNow("FullScreenMSG");
  ASSERT_TRUE(Renderer().IsFullScreen());
  SendNow("WindowDeactivated");
  EXPECT_FALSE(Renderer().IsFullScreen());
  EXPECT_TRUE(Renderer().ShouldRestoreFullScreen());
  EXPECT_EQ(minimize.count, 1);
  SendNow("WindowActivated");
  EXPECT_TRUE(Renderer().IsFullScreen());
  // In a window, losing activation does not arm the return.
  SendNow("FullScreenMSG");
  SendNow("WindowDeactivated");
  SendNow("WindowActivated");
  EXPECT_FALSE(Renderer().IsFullScreen());
  EXPECT_FALSE(Renderer().ShouldRestoreFullScreen());
  EXPECT_EQ(minimize.count, 1);

  for (const auto& [levelName, staysPaused] :
       {std::pair{"Arena", true}, std::pair{"SplashScreens", false},
        std::pair{"LevelTitleScreen", false}, std::pair{"LoadingScreen", false}}) {
    root_.Add<std::string>("CurrentLevel", levelName);
    *root_.Find<bool>("isGamePaused") = true;
    SendNow("WindowActivated");
    EXPECT_EQ(*root_.Find<bool>("isGamePaused"), staysPaused) << levelName;
  }
}

TEST_F(RendererTest, LevelLightsAndThePotatoReplaceTheDefaultsUntilTheLevelUnloads) {
  Database& level = AddLevel("LitLevel");
  AddMeshObject(level, "Potato", "Sphere.mesh", {7, 2, -3}, {1, 1, 1}, {1, 1, 0, 1});
  Database& light =
      *level.Find<Database>("GameObjects")->Add<Database>("Lamp")->Add<Database>("Light");
  light.Add<std::string>("type", "Directional");
  light.Add<Vector4>("Diffuse", {0.1f, 0.2f, 0.3f, 1.0f});
  light.Add<double>("DirectionX", 0.0);
  light.Add<double>("DirectionY", -2.0);
  light.Add<double>("DirectionZ", 0.0);
  StartLevel("LitLevel");
  Frame();
  const LightSet& lights = Renderer().Lights().Lights();
  const LightSet& defaults = Renderer().Lights().DefaultSet();
  // The potato carries the first spot light (at its own height) and the tracked point.
  EXPECT_EQ(lights.spot[0].position, glm::vec3(7.0f, 40.0f, -3.0f));
  EXPECT_EQ(Renderer().TrackedPoint(), glm::vec4(7.0f, 7.0f, -3.0f, 1.0f));
  EXPECT_EQ(lights.directional[0].diffuse, glm::vec4(0.1f, 0.2f, 0.3f, 1.0f));
  EXPECT_EQ(lights.directional[0].direction, glm::vec3(0.0f, -1.0f, 0.0f));
  EXPECT_EQ(lights.directional[1].diffuse, defaults.directional[1].diffuse);
  messages_.SendArgs("msgUnloadLevel", std::string("LitLevel"));
  Frame();
  EXPECT_FALSE(Renderer().Lights().HasObject("Lamp"));
  EXPECT_EQ(lights.directional[0].diffuse, defaults.directional[0].diffuse);
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

TEST_F(RendererTest, AnEffectThatFailsToCompileNamesFileLineAndMessageAndStaysEmpty) {
  const std::string path = ScratchPath("broken", ".fx").string();
  std::ofstream(path) << "// a shader author's typo on line 5\n@common\nuniform mat4 gWVP;\n"
                         "@vertex VS\nvoid main() { gl_Position = gWVP * undeclaredThing; }\n"
                         "@fragment PS\nout vec4 c;\nvoid main() { c = vec4(1); }\n"
                         "@technique T\npass P vertex=VS fragment=PS\n";
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
  EXPECT_EQ(CaptureStdout([] { Effect missing("shaders/Nowhere.fx"); }),
            "Effect file shaders/Nowhere.fx could not be opened\n");
}

TEST_F(RendererTest, ShadersLoadOnceAndAnEffectFileChangedUnderTheWatchedTreeIsRebuiltAlone) {
  namespace fs = std::filesystem;
  const fs::path tree = ScratchPath("grindle_effect_watch");
  fs::remove_all(tree);
  fs::create_directories(tree / "shaders");
  ThreadManager threads(2, 10);
  auto resources = std::make_unique<ResourceManager>(threads, messages_, tree.string());
  Database& systems = *root_.Find<Database>("Systems");
  systems.Add<ResourceManager*>("ResourceManager", resources.get());
  // A renderer made now registers every effect file with the manager.
  const auto restart = [&] {
    CaptureStdout([&] { ASSERT_TRUE(CurrentGraphics()->CreateRenderer()); });
    messages_.Send("FullScreenMSG");
    SendNow("LoadShaders");
  };
  restart();
  const Effect* color = Renderer().Device().Effects().color.get();
  const Effect* basic = Renderer().Device().Effects().basic.get();
  messages_.Send("LoadShaders");
  messages_.Send("LoadRemainingShaders");
  messages_.SendArgs("ResourceReloaded", std::string("Assets/Textures/Asphalt.png"));
  messages_.SendArgs("ResourceReloaded", std::string("shaders/NotAnEffect.fx"));
  Deliver();
  EXPECT_EQ(Renderer().Device().Effects().color.get(), color);
  EXPECT_EQ(Renderer().Device().Effects().basic.get(), basic);

  std::this_thread::sleep_for(std::chrono::milliseconds(20));
  std::ofstream(tree / "shaders" / "color.fx") << "// saved by a shader author\n";
  EXPECT_TRUE(Eventually([&] {
    resources->Update();
    Deliver();
    return Renderer().Device().Effects().color.get() != color;
  }));
  EXPECT_TRUE(
      Renderer().Device().Effects().color->IsLoaded());  // rebuilt from the file the game reads
  EXPECT_EQ(Renderer().Device().Effects().basic.get(), basic);
  // The renderer lets go of its registrations before the manager goes away.
  systems.Remove("ResourceManager");
  restart();
  resources.reset();
  fs::remove_all(tree);
}

// A shader author saves a broken basic.fx while the game runs: the compiler's text is shown once,
// although every technique uses the broken stage, and the scene keeps the programs it had until a
// good file is saved.
TEST_F(RendererTest, AnEffectThatFailsToCompileOnReloadKeepsTheOneInUse) {
  namespace fs = std::filesystem;
  SendNow("LoadShaders");
  const Effect* basic = Renderer().Device().Effects().basic.get();
  ASSERT_TRUE(basic != nullptr && basic->IsLoaded());
  const std::string original = ReadFile("shaders/basic.fx");
  const fs::path game = fs::current_path();
  const fs::path tree = ScratchPath("grindle_broken_effect");
  fs::create_directories(tree / "shaders");
  for (const char* include : {"Lighting.fxh"}) {
    fs::copy_file(game / "shaders" / include, tree / "shaders" / include,
                  fs::copy_options::overwrite_existing);
  }
  std::string broken = original;
  broken.insert(broken.find("@vertex VS") + std::string("@vertex VS\n").size(), "not glsl;\n");
  std::ofstream(tree / "shaders" / "basic.fx") << broken;
  fs::current_path(tree);
  testing::internal::CaptureStderr();
  const std::string out = CaptureStdout([&] { Renderer().Device().Shaders().Reload("shaders/basic.fx"); });
  const std::string errors = testing::internal::GetCapturedStderr();
  EXPECT_EQ(Renderer().Device().Effects().basic.get(), basic);
  EXPECT_EQ(out, "shaders/basic.fx did not load; the effect in use stays\n");
  EXPECT_EQ(CountOf(errors, "shaders/basic.fx: pass"), 1u) << errors;
  std::ofstream(tree / "shaders" / "basic.fx") << original;
  CaptureStdout([&] { Renderer().Device().Shaders().Reload("shaders/basic.fx"); });
  EXPECT_NE(Renderer().Device().Effects().basic.get(), basic);
  EXPECT_TRUE(Renderer().Device().Effects().basic->IsLoaded());
  fs::current_path(game);
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
  EXPECT_FALSE(Renderer().Device().SceneShadersLoaded());
  graphics.SetRenderApi(kRenderApiPrimary);
  messages_.Send("FullScreenMSG");
  SendNow("LoadShaders");
  EXPECT_TRUE(Renderer().Device().SceneShadersLoaded());
}

// Mip chains and presenting use the renderer's own copy program (the driver's glGenerateMipmap and
// glBlitFramebuffer compile shaders in every process). From one odd-sized random image: the copy's
// chain is the driver's to the bit, the chain made on the CPU for file textures is within rounding
// of it, the flipped copy is the image upside down, and the GL state around a copy is as it was.
TEST_F(RendererTest, OwnMipChainsMatchTheDriversAndACopyLeavesTheStateAsFound) {
  constexpr int kWidth = 37, kHeight = 22;
  const int levels = MipLevelCount(kWidth, kHeight);
  ASSERT_EQ(levels, 6);
  std::vector<uint8_t> pixels(kWidth * kHeight * 4);
  std::mt19937 random(16);
  for (uint8_t& value : pixels) value = static_cast<uint8_t>(random());
  const auto makeTexture = [&](int levelCount) {
    GLuint texture = 0;
    glCreateTextures(GL_TEXTURE_2D, 1, &texture);
    glTextureStorage2D(texture, levelCount, GL_RGBA8, kWidth, kHeight);
    glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
    glTextureSubImage2D(texture, 0, 0, 0, kWidth, kHeight, GL_RGBA, GL_UNSIGNED_BYTE,
                        pixels.data());
    return texture;
  };
  const auto readLevel = [](GLuint texture, int level) {
    GLint width = 0, height = 0;
    glGetTextureLevelParameteriv(texture, level, GL_TEXTURE_WIDTH, &width);
    glGetTextureLevelParameteriv(texture, level, GL_TEXTURE_HEIGHT, &height);
    std::vector<uint8_t> texels(static_cast<size_t>(width * height * 4));
    glPixelStorei(GL_PACK_ALIGNMENT, 1);
    glGetTextureImage(texture, level, GL_RGBA, GL_UNSIGNED_BYTE,
                      static_cast<GLsizei>(texels.size()), texels.data());
    return texels;
  };
  const GLuint driver = makeTexture(levels);
  glGenerateTextureMipmap(driver);
  const GLuint own = makeTexture(levels);

  // What a pass may have left behind; each would spoil a copy that did not switch it off.
  GLuint framebuffer = 0;
  glCreateFramebuffers(1, &framebuffer);
  glBindFramebuffer(GL_DRAW_FRAMEBUFFER, framebuffer);
  glViewport(3, 4, 5, 6);
  glColorMask(GL_TRUE, GL_FALSE, GL_TRUE, GL_FALSE);
  glPolygonMode(GL_FRONT_AND_BACK, GL_LINE);
  const GLenum switchedOn[] = {GL_BLEND, GL_DEPTH_TEST, GL_CULL_FACE, GL_SCISSOR_TEST};
  for (GLenum capability : switchedOn) glEnable(capability);
  Renderer().Device().Copier().GenerateMips(own, kWidth, kHeight, levels);
  GLint bound = 0, viewport[4] = {}, polygonMode[2] = {};
  GLboolean mask[4] = {};
  glGetIntegerv(GL_DRAW_FRAMEBUFFER_BINDING, &bound);
  glGetIntegerv(GL_VIEWPORT, viewport);
  glGetIntegerv(GL_POLYGON_MODE, polygonMode);
  glGetBooleanv(GL_COLOR_WRITEMASK, mask);
  EXPECT_EQ(bound, static_cast<GLint>(framebuffer));
  EXPECT_EQ(std::vector<GLint>(viewport, viewport + 4), (std::vector<GLint>{3, 4, 5, 6}));
  EXPECT_EQ(polygonMode[0], GL_LINE);
  EXPECT_EQ(std::vector<GLboolean>(mask, mask + 4),
            (std::vector<GLboolean>{GL_TRUE, GL_FALSE, GL_TRUE, GL_FALSE}));
  for (GLenum capability : switchedOn) {
    EXPECT_TRUE(glIsEnabled(capability)) << capability;
    glDisable(capability);
  }
  glColorMask(GL_TRUE, GL_TRUE, GL_TRUE, GL_TRUE);
  glPolygonMode(GL_FRONT_AND_BACK, GL_FILL);
  GLint baseLevel = -1;
  glGetTextureParameteriv(own, GL_TEXTURE_BASE_LEVEL, &baseLevel);
  EXPECT_EQ(baseLevel, 0) << "the level range is put back";

  ImageLevel cpu{kWidth, kHeight, pixels};
  for (int level = 1; level < levels; ++level) {
    SCOPED_TRACE(level);
    const std::vector<uint8_t> expected = readLevel(driver, level);
    EXPECT_EQ(readLevel(own, level), expected);
    cpu = HalveImage(cpu.rgba.data(), cpu.width, cpu.height);
    ASSERT_EQ(cpu.rgba.size(), expected.size());
    int worst = 0;
    for (size_t i = 0; i < expected.size(); ++i)
      worst = std::max(worst, std::abs(int(cpu.rgba[i]) - int(expected[i])));
    EXPECT_LE(worst, 2);
  }

  const GLuint flipped = makeTexture(1);
  glNamedFramebufferTexture(framebuffer, GL_COLOR_ATTACHMENT0, flipped, 0);
  Renderer().Device().Copier().CopyFlipped(driver, framebuffer, kWidth, kHeight);
  const std::vector<uint8_t> copy = readLevel(flipped, 0);
  const size_t row = kWidth * 4;
  for (int y = 0; y < kHeight; ++y) {
    ASSERT_TRUE(std::equal(copy.begin() + y * row, copy.begin() + (y + 1) * row,
                           pixels.begin() + (kHeight - 1 - y) * row))
        << "row " << y;
  }
  glBindFramebuffer(GL_FRAMEBUFFER, 0);
  glDeleteFramebuffers(1, &framebuffer);
  const GLuint textures[] = {driver, own, flipped};
  glDeleteTextures(3, textures);
}

using RendererDeathTest = RendererTest;

TEST_F(RendererDeathTest, StartingAMissingLevelOrColouringWithoutOneStops) {
  for (const bool starting : {true, false}) {
    EXPECT_DEATH(
        {
          StdoutToStderr();
          if (starting) {
            messages_.SendArgs("LevelInitializeComplete", std::string("NoSuchLevel"));
          } else {
            messages_.SendArgs("SetObjectAlpha", std::string("Button"), 0.5);
          }
          Deliver();
        },
        "DETAILS: Current level not found");
  }
}

}  // namespace
}  // namespace grindle::gfx
