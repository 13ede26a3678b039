#include "Graphics/RenderInterface/OpenGL/OpenGLInterface.h"

#include "Core/Assert.h"
#include "Core/Database.h"
#include "Core/MessageHandler.h"
#include "Core/MetaResource.h"
#include "Core/ResourceManager.h"
#include "Core/WellKnownKeys.h"
#include "Graphics/Effects/EffectSlots.h"
#include "Graphics/RenderInterface/OpenGL/FullScreenQuad.h"
#include "Graphics/RenderInterface/OpenGL/LightManager.h"
#include "Graphics/RenderInterface/OpenGL/MeshPass.h"
#include "Graphics/RenderInterface/OpenGL/PostProcessChain.h"
#include "Graphics/RenderInterface/OpenGL/RenderMath.h"
#include "Graphics/RenderInterface/OpenGL/RenderStates.h"
#include "Graphics/RenderInterface/OpenGL/RendererMessages.h"
#include "Graphics/RenderInterface/OpenGL/TextureStore.h"
#include "Platform/Dialogs.h"

namespace grindle::gfx {

namespace {

OpenGLInterface* gCurrentRenderer = nullptr;

// An effect file the resource manager watches. The wrapper is rebuilt when the "ResourceReloaded"
// announcement is delivered (the effect slots listen to it), so this reload has nothing of its own
// to do; registering is what makes the manager announce the file.
class EffectFileResource final : public MetaResource {
 public:
  using MetaResource::MetaResource;
  void Reload() override {}
};

}  // namespace

OpenGLInterface* CurrentRenderer() { return gCurrentRenderer; }

OpenGLInterface::OpenGLInterface(Database& root, MessageHandler& messages, int clientWidth,
                                 int clientHeight)
    : RenderInterface(clientWidth, clientHeight), root_(root), messages_(messages) {
  gCurrentRenderer = this;
}

// Members that own GL objects are declared after the context, so they go before it.
OpenGLInterface::~OpenGLInterface() {
  if (context_.IsCreated()) {
    RendererMessages::StopListening(messages_);
    for (auto& file : effectFiles_) {
      if (resourceManager_ != nullptr) resourceManager_->Unregister(file.get());
    }
    UnloadAllEffects(messages_);
  }
  if (gCurrentRenderer == this) gCurrentRenderer = nullptr;
}

bool OpenGLInterface::Initialize(SDL_Window* window) {
  windowHandle_ = window;
  if (!context_.Create(window)) {
    platform::ShowMessageBox("", "OpenGL Device Creation Failed.");
    return false;
  }
  context_.ResizeBackBuffer(clientWidth_, clientHeight_);
  context_.SetFullScreen(fullScreen_);
  ResetRenderStates();

  LoadStartupShaders(messages_);
  RegisterEffectFiles();

  textures_ = std::make_unique<TextureStore>(kDefaultTextureName);
  meshes_ = CreateMeshPass(root_);
  lights_ = std::make_unique<LightManager>(root_);
  postProcessing_ = std::make_unique<PostProcessChain>();

  SetResolution(renderWidth_, renderHeight_);

  quad_ = std::make_unique<FullScreenQuad>();
  view_ = glm::mat4(1.0f);
  // The matrices are rebuilt at once rather than left as identity until the first resize arrives.
  SetFieldOfView(-1.0f);

  RendererMessages::Listen(messages_);
  messages_.Send("ShowWindow");
  messages_.Send("WindowActivated");
  OnClientSize(clientWidth_, clientHeight_);
  return true;
}

void OpenGLInterface::RegisterEffectFiles() {
  const DataHandle<Database> systems = root_.Find<Database>(KeyOf(WellKnown::Systems));
  if (!systems) return;
  const DataHandle<ResourceManager*> manager =
      systems->Find<ResourceManager*>(KeyOf(WellKnown::ResourceManager));
  if (!manager || *manager == nullptr) return;
  resourceManager_ = *manager;
  for (const std::string& path : EffectFilePaths()) {
    effectFiles_.push_back(std::make_unique<EffectFileResource>(path));
    resourceManager_->Register(effectFiles_.back().get());
  }
}

void OpenGLInterface::Resize() {
  if (minimized_) return;
  GRINDLE_ASSERT_TEXT(!context_.IsCreated(), "!pDevice_", "OpenGL device pointer is NULL!");
  GRINDLE_ASSERT_TEXT(windowHandle_ == nullptr, "!pSwapChain_", "OpenGL swap chain is NULL!");
  context_.ResizeBackBuffer(clientWidth_, clientHeight_);
  context_.BindBackBuffer();
  SetFieldOfView(-1.0f);
  OnClientSize(clientWidth_, clientHeight_);
}

void OpenGLInterface::SetFieldOfView(float radians) {
  fieldOfView_ = ClampFieldOfView(fieldOfView_, radians);
  const float aspect = static_cast<float>(renderWidth_) / static_cast<float>(renderHeight_);
  projection_ = PerspectiveMatrix(fieldOfView_, aspect);
  orthographic_ =
      OrthographicMatrix(static_cast<float>(renderWidth_), static_cast<float>(renderHeight_));
}

void OpenGLInterface::SetResolution(int width, int height) {
  renderWidth_ = width;
  renderHeight_ = height;
  for (RenderTarget* target :
       {&glowTargetA_, &glowTargetB_, &overlayTarget_, &sceneTarget_, &spareTarget_}) {
    target->Create(width, height, true, GL_RGBA8);
  }
  postProcessing_->Resize(width, height);
  Resize();
}

void OpenGLInterface::SetFullScreen(bool on) {
  fullScreen_ = on;
  context_.SetFullScreen(on);
  Resize();
  messages_.Send("ShowWindow");
}

}  // namespace grindle::gfx
