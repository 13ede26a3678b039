#include "RendererFixture.h"

#include <stb_image.h>
#include <unistd.h>

#include <cstdlib>

#include "Core/MathTypes.h"
#include "Core/MemoryManager.h"
#include "Core/WellKnownKeys.h"
#include "Graphics/Graphics.h"
#include "Graphics/RenderInterface/OpenGL/OpenGLInterface.h"
#include "Platform/LeakReports.h"
#include "TestOutput.h"

namespace grindle::gfx {

glm::vec4 Image::At(int x, int y) const {
  const unsigned char* p =
      &rgba[(static_cast<size_t>(y) * static_cast<size_t>(width) + static_cast<size_t>(x)) * 4u];
  return glm::vec4(p[0], p[1], p[2], p[3]) / 255.0f;
}

std::unique_ptr<Database> RendererFixture::sRoot_;
std::unique_ptr<MessageHandler> RendererFixture::sMessages_;
SDL_Window* RendererFixture::sWindow_ = nullptr;
std::unique_ptr<GraphicsInterface> RendererFixture::sGraphics_;

void RendererFixture::SetUpTestSuite() {
  InternWellKnownKeys();
  setenv("SDL_VIDEODRIVER", "offscreen", 1);
  ASSERT_EQ(chdir(GRINDLE_GAME_DIR), 0);
  ASSERT_EQ(SDL_InitSubSystem(SDL_INIT_VIDEO), 0) << SDL_GetError();
  sWindow_ = SDL_CreateWindow("grindle test", 0, 0, kWidth, kHeight,
                              SDL_WINDOW_OPENGL | SDL_WINDOW_HIDDEN);
  ASSERT_NE(sWindow_, nullptr) << SDL_GetError();
  sRoot_ = std::make_unique<Database>();
  sMessages_ = std::make_unique<MessageHandler>();
  sRoot_->Add<Database>("Systems")->Add<MessageHandler*>("MessageHandler", sMessages_.get());
  sRoot_->Add<SDL_Window*>("MainWindowHandle", sWindow_);
  sRoot_->Add<double>("WindowWidth", kWidth);
  sRoot_->Add<double>("WindowHeight", kHeight);
  sGraphics_ = std::make_unique<GraphicsInterface>();
  void* args[kSynchronizeArgCount] = {sRoot_.get(), &CurrentMemoryRegistry(), nullptr, nullptr};
  ISystem& system = *sGraphics_;
  CaptureStdout([&] {
    system.synchronize(args, kSynchronizeArgCount);
    system.Load();
    system.Start();
  });
  ASSERT_NE(CurrentRenderer(), nullptr);
  // Tests look at a window, not the desktop: leave full screen as a player would.
  sMessages_->Send("FullScreenMSG");
  sMessages_->Send("LoadShaders");
  sMessages_->Deliver(MessageHandler::kDeliverAll);
}

void RendererFixture::TearDownTestSuite() {
  if (sGraphics_) {
    ISystem& system = *sGraphics_;
    CaptureStdout([&] {
      system.Exit();
      system.Unload();
    });
  }
  sGraphics_.reset();
  sMessages_.reset();
  sRoot_.reset();
  if (sWindow_ != nullptr) {
    platform::KeepDriverMappedForLeakReports();
    SDL_DestroyWindow(sWindow_);
  }
  sWindow_ = nullptr;
}

void RendererFixture::SetUp() {
  ASSERT_NE(CurrentRenderer(), nullptr);
  root_.Add<Database>("Levels");
  root_.Remove("CurrentLevel");
  root_.Remove("GlobalVariables");
  root_.Add<bool>("isGamePaused", false);
  messages_.SendArgs("msgSetPostProcessing", std::string());
  Deliver();
}

OpenGLInterface& RendererFixture::Renderer() { return *CurrentRenderer(); }

void RendererFixture::Frame(float dt) {
  Deliver();
  graphics_.Update(dt);
}

Database& RendererFixture::AddLevel(const std::string& name) {
  Database& level = *root_.Find<Database>("Levels")->Add<Database>(name);
  level.Add<Database>("GameObjects");
  level.Add<Database>("ComponentLists")->Add<Database>("Meshes");
  root_.Add<std::string>("CurrentLevel", name);
  return level;
}

void RendererFixture::StartLevel(const std::string& name) {
  Database& level = *root_.Find<Database>("Levels")->Find<Database>(name);
  const DataHandle<Database> objects = level.Find<Database>("GameObjects");
  for (const Database::Record& record : objects->Records()) {
    messages_.SendArgs("msgLevelObjectCreated", objects->Find<Database>(record.name), record.name,
                       name);
  }
  messages_.SendArgs("LevelInitializeComplete", name);
  Deliver();
}

Database& RendererFixture::AddCamera(Database& level, const glm::vec3& eye,
                                     const glm::vec3& direction) {
  Database& camera =
      *level.Find<Database>("GameObjects")->Add<Database>("MainCamera")->Add<Database>("Camera");
  camera.Add<double>("PositionX", eye.x);
  camera.Add<double>("PositionY", eye.y);
  camera.Add<double>("PositionZ", eye.z);
  camera.Add<double>("viewX", direction.x);
  camera.Add<double>("viewY", direction.y);
  camera.Add<double>("viewZ", direction.z);
  return camera;
}

Database& RendererFixture::AddMeshObject(Database& level, const std::string& name,
                                         const char* fileName, const glm::vec3& position,
                                         const glm::vec3& scale, const glm::vec4& diffuse) {
  Database& object = *level.Find<Database>("GameObjects")->Add<Database>(name);
  Database& mesh = *object.Add<Database>("Mesh");
  mesh.Add<std::string>("Filename", fileName);
  mesh.Add<double>("HasTexture", 0.0);
  Database& transform = *object.Add<Database>("Transform");
  transform.Add<double>("PositionX", position.x);
  transform.Add<double>("PositionY", position.y);
  transform.Add<double>("PositionZ", position.z);
  transform.Add<glm::mat4>("Rotation", glm::mat4(1.0f));
  transform.Add<Vector4>("Scale", {scale.x, scale.y, scale.z, 0.0f});
  Database& material = *object.Add<Database>("Material");
  material.Add<glm::vec4>("Ambient", diffuse);
  material.Add<glm::vec4>("Diffuse", diffuse);
  material.Add<glm::vec4>("Specular", glm::vec4(0.2f, 0.2f, 0.2f, 16.0f));
  return object;
}

Image RendererFixture::Capture() {
  const std::string path = testing::TempDir() + "grindle_capture.png";
  messages_.SendArgs("msgScreenshot", path);
  Deliver();
  int channels = 0;
  Image image;
  unsigned char* pixels = stbi_load(path.c_str(), &image.width, &image.height, &channels, 4);
  if (pixels != nullptr) {
    image.rgba.assign(
        pixels, pixels + static_cast<size_t>(image.width) * static_cast<size_t>(image.height) * 4u);
    stbi_image_free(pixels);
  }
  std::remove(path.c_str());
  return image;
}

}  // namespace grindle::gfx
