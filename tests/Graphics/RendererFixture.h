// A real renderer on a hidden SDL window (offscreen driver, Mesa llvmpipe): the graphics system
// synchronized, loaded and started as start-up does, with the working directory at game/ so the
// effect files and textures are the shipped ones. Helpers build levels and objects by hand and
// read the composited frame back.
#pragma once

#include <SDL.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <glm/mat4x4.hpp>
#include <glm/vec4.hpp>
#include <memory>
#include <string>
#include <vector>

#include "Core/Database.h"
#include "Core/MathTypes.h"
#include "Core/MessageHandler.h"
#include "Core/WellKnownKeys.h"
#include "Graphics/Graphics.h"
#include "Graphics/GraphicsLibraryInterface.h"
#include "Graphics/RenderInterface/OpenGL/OpenGLInterface.h"
#include "GoldenCompare.h"
#include "Platform/LeakReports.h"
#include "SystemRig.h"
#include "TempWorkDir.h"

namespace grindle::gfx {

// One renderer serves a whole suite (compiling every effect on llvmpipe takes a while); each test
// starts with no levels, the default lights and post-processing, and a 320 x 180 window.
class RendererFixture : public testing::Test {
 protected:
  static constexpr int kWidth = 320;
  static constexpr int kHeight = 180;

  static void SetUpTestSuite() {
    InternWellKnownKeys();
    setenv("SDL_VIDEODRIVER", "offscreen", 1);
    ASSERT_EQ(chdir(GRINDLE_GAME_DIR), 0);
    ASSERT_EQ(SDL_InitSubSystem(SDL_INIT_VIDEO), 0) << SDL_GetError();
    sWindow_ = SDL_CreateWindow("grindle test", 0, 0, kWidth, kHeight,
                                SDL_WINDOW_OPENGL | SDL_WINDOW_HIDDEN);
    ASSERT_NE(sWindow_, nullptr) << SDL_GetError();
    sRoot_ = std::make_unique<Database>();
    sMessages_ = std::make_unique<MessageHandler>();
    test::PublishHandler(*sRoot_, *sMessages_);
    sRoot_->Add<SDL_Window*>("MainWindowHandle", sWindow_);
    sRoot_->Add<double>("WindowWidth", kWidth);
    sRoot_->Add<double>("WindowHeight", kHeight);
    sGraphics_ = std::make_unique<GraphicsInterface>();
    test::StartSystem(*sGraphics_, *sRoot_);
    ASSERT_NE(CurrentRenderer(), nullptr);
    // Tests look at a window, not the desktop: leave full screen as a player would.
    sMessages_->Send("FullScreenMSG");
    sMessages_->Send("LoadShaders");
    sMessages_->Deliver(MessageHandler::kDeliverAll);
  }

  static void TearDownTestSuite() {
    if (sGraphics_) test::StopSystem(*sGraphics_);
    sGraphics_.reset();
    sMessages_.reset();
    sRoot_.reset();
    if (sWindow_ != nullptr) {
      platform::KeepDriverMappedForLeakReports();
      SDL_DestroyWindow(sWindow_);
    }
    sWindow_ = nullptr;
  }

  void SetUp() override {
    ASSERT_NE(CurrentRenderer(), nullptr);
    root_.Add<Database>("Levels");
    root_.Remove("CurrentLevel");
    root_.Remove("GlobalVariables");
    root_.Add<bool>("isGamePaused", false);
    messages_.SendArgs("msgSetPostProcessing", std::string());
    Deliver();
  }

  static OpenGLInterface& Renderer() { return *CurrentRenderer(); }
  void Deliver() { messages_.Deliver(MessageHandler::kDeliverAll); }
  void SendNow(const char* message) {
    messages_.Send(message);
    Deliver();
  }
  // Update then Render, as the frame loop does, after delivering queued messages.
  void Frame() {
    Deliver();
    graphics_.Update(1.0f / 60.0f);
  }

  // A level with GameObjects and ComponentLists.Meshes, made current.
  Database& AddLevel(const std::string& name) {
    Database& level = *root_.Find<Database>("Levels")->Add<Database>(name);
    level.Add<Database>("GameObjects");
    level.Add<Database>("ComponentLists")->Add<Database>("Meshes");
    root_.Add<std::string>("CurrentLevel", name);
    return level;
  }

  // Announces every object of the level and completes its start-up.
  void StartLevel(const std::string& name) {
    Database& level = *root_.Find<Database>("Levels")->Find<Database>(name);
    const DataHandle<Database> objects = level.Find<Database>("GameObjects");
    for (const Database::Record& record : objects->Records()) {
      messages_.SendArgs("msgLevelObjectCreated", objects->Find<Database>(record.name), record.name,
                         name);
    }
    messages_.SendArgs("LevelInitializeComplete", name);
    Deliver();
  }

  static Database& AddCamera(Database& level, const glm::vec3& eye, const glm::vec3& direction) {
    Database& camera =
        *level.Find<Database>("GameObjects")->Add<Database>("MainCamera")->Add<Database>("Camera");
    const char* names[] = {"PositionX", "PositionY", "PositionZ", "viewX", "viewY", "viewZ"};
    for (int i = 0; i < 6; ++i) camera.Add<double>(names[i], i < 3 ? eye[i] : direction[i - 3]);
    return camera;
  }

  // A Transform with the position alone, as objects that are only placed carry it.
  static Database& AddTransform(Database& object, const glm::vec3& position) {
    Database& transform = *object.Add<Database>("Transform");
    transform.Add<double>("PositionX", position.x);
    transform.Add<double>("PositionY", position.y);
    transform.Add<double>("PositionZ", position.z);
    return transform;
  }

  // An object with a Mesh component of `fileName`, a transform, a material and no textures.
  static Database& AddMeshObject(Database& level, const std::string& name, const char* fileName,
                                 const glm::vec3& position, const glm::vec3& scale,
                                 const glm::vec4& diffuse) {
    Database& object = *level.Find<Database>("GameObjects")->Add<Database>(name);
    Database& mesh = *object.Add<Database>("Mesh");
    mesh.Add<std::string>("Filename", fileName);
    mesh.Add<double>("HasTexture", 0.0);
    Database& transform = AddTransform(object, position);
    transform.Add<glm::mat4>("Rotation", glm::mat4(1.0f));
    transform.Add<Vector4>("Scale", {scale.x, scale.y, scale.z, 0.0f});
    Database& material = *object.Add<Database>("Material");
    material.Add<glm::vec4>("Ambient", diffuse);
    material.Add<glm::vec4>("Diffuse", diffuse);
    material.Add<glm::vec4>("Specular", glm::vec4(0.2f, 0.2f, 0.2f, 16.0f));
    return object;
  }

  Image Capture() {
    // Every renderer test captures: a name of the process's own keeps parallel cases apart.
    const std::string path = ScratchPath("grindle_capture", ".png").string();
    messages_.SendArgs("msgScreenshot", path);
    Deliver();
    Image image = LoadPng(path);
    std::remove(path.c_str());
    EXPECT_GT(image.width, 0) << "no screenshot was written to " << path;
    return image;
  }

  // Made in SetUpTestSuite, gone after TearDownTestSuite; tests use the references below.
  static inline std::unique_ptr<Database> sRoot_;
  static inline std::unique_ptr<MessageHandler> sMessages_;
  static inline SDL_Window* sWindow_ = nullptr;
  static inline std::unique_ptr<GraphicsInterface> sGraphics_;

  Database& root_ = *sRoot_;
  MessageHandler& messages_ = *sMessages_;
  GraphicsInterface& graphics_ = *sGraphics_;
};

}  // namespace grindle::gfx
