#include "Graphics/RenderInterface/OpenGL/OpenGLInterface.h"

#include <cmath>

#include "Core/Assert.h"
#include "Core/Database.h"
#include "Core/MessageHandler.h"
#include "Core/Messages/Catalogue.h"
#include "Core/WellKnownKeys.h"
#include "Graphics/Effects/EffectFileWatch.h"
#include "Graphics/RenderInterface/OpenGL/LevelLookup.h"
#include "Graphics/RenderInterface/OpenGL/LightManager.h"
#include "Graphics/RenderInterface/OpenGL/MeshPass.h"
#include "Graphics/RenderInterface/OpenGL/Models/ModelManager.h"
#include "Graphics/RenderInterface/OpenGL/PostProcessChain.h"
#include "Graphics/RenderInterface/OpenGL/RenderMath.h"
#include "Graphics/RenderInterface/OpenGL/RendererMessages.h"
#include "Graphics/RenderInterface/OpenGL/Sprites/SpriteManager.h"
#include "Platform/Dialogs.h"

namespace grindle::gfx {

namespace {

// The one process-wide pointer to the renderer, as the graphics system's contract names it.
OpenGLInterface* gCurrentRenderer = nullptr;

bool IsMenuLevel(std::string_view name) {
  return name == "LevelTitleScreen" || name == "LoadingScreen" || name == "SplashScreens";
}

}  // namespace

OpenGLInterface* CurrentRenderer() { return gCurrentRenderer; }

OpenGLInterface::OpenGLInterface(Database& root, MessageHandler& messages, int clientWidth,
                                 int clientHeight)
    : RenderInterface(clientWidth, clientHeight),
      root_(root),
      messages_(messages),
      device_(messages),
      frame_(root),
      particles_(device_, root) {
  gCurrentRenderer = this;
}

OpenGLInterface::~OpenGLInterface() {
  if (device_.IsCreated()) RendererMessages::StopListening(messages_);
  if (gCurrentRenderer == this) gCurrentRenderer = nullptr;
}

bool OpenGLInterface::Initialize(SDL_Window* window) {
  windowHandle_ = window;
  if (!device_.Create(window)) {
    platform::ShowMessageBox("", "OpenGL Device Creation Failed.");
    return false;
  }
  device_.Context().ResizeBackBuffer(clientWidth_, clientHeight_);
  device_.Context().SetFullScreen(fullScreen_);
  ResourceManager* resources = FindResourceManager(root_);
  effectFiles_ = std::make_unique<EffectFileWatch>(resources);
  sprites_ = std::make_unique<SpriteManager>(device_, root_, frame_.View(), resources);

  meshes_ = CreateMeshPass(root_, device_);
  lights_ = std::make_unique<LightManager>(root_, device_);
  models_ = std::make_unique<ModelManager>(root_, device_, resources);
  postProcessing_ = std::make_unique<PostProcessChain>(device_);

  SetResolution(renderWidth_, renderHeight_);
  // The matrices are rebuilt at once rather than left as identity until the first resize arrives.
  SetFieldOfView(-1.0f);

  RendererMessages::Listen(messages_, root_, *this);
  msg::Post(messages_, msg::kShowWindow);
  msg::Post(messages_, msg::kWindowActivated);
  OnClientSize(clientWidth_, clientHeight_);
  return true;
}

void OpenGLInterface::Resize() {
  if (minimized_) return;
  GRINDLE_ASSERT_TEXT(!device_.IsCreated(), "!pDevice_", "OpenGL device pointer is NULL!");
  GRINDLE_ASSERT_TEXT(windowHandle_ == nullptr, "!pSwapChain_", "OpenGL swap chain is NULL!");
  device_.Context().ResizeBackBuffer(clientWidth_, clientHeight_);
  device_.Context().BindBackBuffer();
  SetFieldOfView(-1.0f);
  OnClientSize(clientWidth_, clientHeight_);
}

void OpenGLInterface::SetFieldOfView(float radians) {
  fieldOfView_ = ClampFieldOfView(fieldOfView_, radians);
  frame_.SetLens(fieldOfView_, renderWidth_, renderHeight_);
}

void OpenGLInterface::SetResolution(int width, int height) {
  renderWidth_ = width;
  renderHeight_ = height;
  targets_.Create(width, height);
  postProcessing_->Resize(width, height);
  Resize();
}

void OpenGLInterface::SetFullScreen(bool on) {
  fullScreen_ = on;
  device_.Context().SetFullScreen(on);
  Resize();
  msg::Post(messages_, msg::kShowWindow);
}

void OpenGLInterface::SetClientSize(int width, int height) {
  clientWidth_ = width;
  clientHeight_ = height;
}

bool OpenGLInterface::WriteScreenshot(const std::string& fileName) const {
  return device_.Context().WriteBackBufferPng(fileName);
}

void OpenGLInterface::SetPostProcessing(std::string_view names) {
  postProcessing_->SetOrder(names);
}

void OpenGLInterface::AddObject(const DataHandle<Database>& object, std::string_view objectName) {
  if (!object) return;
  meshes_->AddObject(object, objectName);
  models_->AddObject(object, objectName);
  lights_->AddObject(*object, objectName);
  particles_.AddObject(*object, objectName);
}

void OpenGLInterface::RemoveObject(std::string_view objectName) {
  meshes_->RemoveObject(objectName);
  models_->RemoveObject(objectName);
  lights_->RemoveObject(objectName);
  particles_.RemoveObject(objectName);
}

void OpenGLInterface::OnLevelStart(std::string_view levelName) {
  const DataHandle<Database> dhCurLevel = FindLevel(root_, levelName);
  GRINDLE_ASSERT(!dhCurLevel.IsValid(), "Current level not found");
  Database& level = *dhCurLevel;
  sprites_->SetLevel(level);
  frame_.OnLevelStart(level);
  meshes_->BuildLevelLists(level);
  models_->BuildLevelLists(level);
  // Each level chooses its own chain; one that names none runs the glow alone.
  const DataHandle<std::string> chain = level.Find<std::string>(kPostProcessingEntry);
  postProcessing_->SetOrder(chain ? *chain : std::string());
}

void OpenGLInterface::OnUnloadLevel(std::string_view levelName) {
  const DataHandle<Database> level = FindLevel(root_, levelName);
  if (!level) return;
  const DataHandle<Database> objects = level->Find<Database>(KeyOf(WellKnown::GameObjects));
  if (!objects) return;
  for (const Database::Record& record : objects->Records()) {
    lights_->RemoveObject(record.name);
    particles_.RemoveObject(record.name);
  }
}

void OpenGLInterface::OnWindowActivated() {
  minimized_ = false;
  if (restoreFullScreen_) SetFullScreen(true);
  const DataHandle<std::string> current = root_.Find<std::string>(KeyOf(WellKnown::CurrentLevel));
  if (current && IsMenuLevel(*current)) {
    if (const DataHandle<bool> paused = root_.Find<bool>(KeyOf(WellKnown::isGamePaused)))
      *paused = false;
    else
      root_.Add<bool>("isGamePaused", false);
  }
  msg::Post(messages_, msg::kShowWindow);
}

void OpenGLInterface::OnWindowDeactivated() {
  if (fullScreen_) {
    restoreFullScreen_ = true;
    msg::Post(messages_, msg::kMinimizeWindow);
    SetFullScreen(false);
  } else {
    restoreFullScreen_ = false;
  }
}

void OpenGLInterface::Update(float dt) {
  if (!frame_.Advance(dt)) return;
  const float clock = frame_.AnimationClock();
  lights_->SetAnimationAngles(std::sin(clock * 0.2f) * 90.0f, std::cos(clock * 0.2f) * 90.0f);
  if (frame_.FoundTrackedObject())
    lights_->SetTrackedSpotPosition(frame_.TrackedPoint().x, frame_.TrackedPoint().z);
  targets_.SwapGlow();
  particles_.SetEyePosition(frame_.EyePosition());
}

}  // namespace grindle::gfx
