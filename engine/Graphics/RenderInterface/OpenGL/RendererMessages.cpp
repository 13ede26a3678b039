#include "Graphics/RenderInterface/OpenGL/RendererMessages.h"

#include <array>
#include <cstdint>
#include <cstdio>
#include <string>

#include "Core/Database.h"
#include "Core/MessageHandler.h"
#include "Core/WellKnownKeys.h"
#include "Graphics/Effects/EffectSlots.h"
#include "Graphics/Effects/InputLayouts.h"
#include "Graphics/RenderInterface/OpenGL/DatabaseValues.h"
#include "Graphics/RenderInterface/OpenGL/LightManager.h"
#include "Graphics/RenderInterface/OpenGL/MeshPass.h"
#include "Graphics/RenderInterface/OpenGL/OpenGLInterface.h"
#include "Graphics/RenderInterface/OpenGL/PostProcessChain.h"
#include "Graphics/RenderInterface/OpenGL/RenderMath.h"
#include "Input/Keyboard.h"
#include "Input/Mouse.h"

namespace grindle::gfx {

namespace {

constexpr std::string_view kOwner = "Graphics";

std::string TextArgument(const MessageArgs& args, uint32_t index) {
  const std::string* text = args.Get<std::string>(index);
  return text != nullptr ? *text : std::string();
}

// Scripts and files send doubles; the window procedure sends its sizes as unsigned integers.
float NumberArgument(const MessageArgs& args, uint32_t index) {
  if (const double* number = args.Get<double>(index)) return static_cast<float>(*number);
  if (const unsigned int* number = args.Get<unsigned int>(index))
    return static_cast<float>(*number);
  if (const int* number = args.Get<int>(index)) return static_cast<float>(*number);
  return 0.0f;
}

DataHandle<Database> ObjectArgument(const MessageArgs& args, uint32_t index) {
  const DataHandle<Database>* handle = args.Get<DataHandle<Database>>(index);
  return handle != nullptr ? *handle : DataHandle<Database>();
}

DataHandle<Database> FindLevel(const Database& root, std::string_view levelName) {
  const DataHandle<Database> levels = root.Find<Database>(KeyOf(WellKnown::Levels));
  return levels ? levels->Find<Database>(levelName) : DataHandle<Database>();
}

}  // namespace

void RendererMessages::ObjectDestroyed(OpenGLInterface& renderer, const MessageArgs& args) {
  const std::string name = TextArgument(args, 1);
  if (MeshPass* meshes = renderer.Meshes()) meshes->RemoveObject(name);
  renderer.models_.RemoveObject(name);
  renderer.lights_->RemoveObject(name);
  renderer.particles_.RemoveObject(name);
}

void RendererMessages::ObjectCreated(OpenGLInterface& renderer, const MessageArgs& args) {
  const DataHandle<Database> object = ObjectArgument(args, 0);
  const std::string name = TextArgument(args, 1);
  if (!object) return;
  if (MeshPass* meshes = renderer.Meshes()) meshes->AddObject(object, name);
  renderer.models_.AddObject(*object, name);
  renderer.lights_->AddObject(*object, name);
  renderer.particles_.AddObject(*object, name);
}

void RendererMessages::UnloadLevel(OpenGLInterface& renderer, const MessageArgs& args) {
  const DataHandle<Database> level = FindLevel(renderer.root_, TextArgument(args, 0));
  if (!level) return;
  const DataHandle<Database> objects = level->Find<Database>(KeyOf(WellKnown::GameObjects));
  if (!objects) return;
  for (const Database::Record& record : objects->Records())
    renderer.lights_->RemoveObject(record.name);
}

void RendererMessages::SpriteAlpha(OpenGLInterface& renderer, const MessageArgs& args,
                                   WellKnown sprite) {
  const float alpha = NumberArgument(args, 1);
  RendererMessages::SetSpriteColor(renderer, TextArgument(args, 0), KeyOf(sprite), 3, 1, &alpha);
}

void RendererMessages::SpriteRgb(OpenGLInterface& renderer, const MessageArgs& args,
                                 WellKnown sprite) {
  const float rgb[3] = {NumberArgument(args, 1), NumberArgument(args, 2), NumberArgument(args, 3)};
  RendererMessages::SetSpriteColor(renderer, TextArgument(args, 0), KeyOf(sprite), 0, 3, rgb);
}

struct RendererMessages::Registration {
  const char* message;
  void (*handler)(OpenGLInterface&, const MessageArgs&);
};

// The order of this table is the order the renderer listens in.
const RendererMessages::Registration* RendererMessages::Registrations(size_t& count) {
  static const std::array<Registration, 24> table = {{
      {"msgObjectDestroyed", ObjectDestroyed},
      {"msgObjectCreated", ObjectCreated},
      {"msgLevelObjectCreated", ObjectCreated},
      {"msgUnloadLevel", UnloadLevel},
      // Read and discarded: explosions belong to the particle manager's later work.
      {"SCR:PotatoExploded", [](OpenGLInterface&, const MessageArgs&) {}},
      {"LevelInitializeComplete",
       [](OpenGLInterface& r, const MessageArgs& a) {
         RendererMessages::LevelStartUp(r, TextArgument(a, 0));
       }},
      {"LoadShaders",
       [](OpenGLInterface&, const MessageArgs&) {
         LoadSceneShaders();
         CreateSceneLayouts();
       }},
      {"Keyboard",
       [](OpenGLInterface& r, const MessageArgs& a) {
         if (const Keyboard* keyboard = a.Get<Keyboard>(0)) r.freeCamera_.OnKeyboard(*keyboard);
       }},
      {"Mouse",
       [](OpenGLInterface& r, const MessageArgs& a) {
         if (const Mouse* mouse = a.Get<Mouse>(0))
           r.freeCamera_.OnMouse(*mouse, r.clientWidth_, r.clientHeight_);
       }},
      {"OnResize", [](OpenGLInterface& r, const MessageArgs&) { r.Resize(); }},
      {"SetClientWindow",
       [](OpenGLInterface& r, const MessageArgs& a) {
         r.clientWidth_ = static_cast<int32_t>(NumberArgument(a, 0));
         r.clientHeight_ = static_cast<int32_t>(NumberArgument(a, 1));
       }},
      {"FullScreenMSG",
       [](OpenGLInterface& r, const MessageArgs&) { r.SetFullScreen(!r.fullScreen_); }},
      {"WindowDeactivated",
       [](OpenGLInterface& r, const MessageArgs&) { RendererMessages::WindowDeactivated(r); }},
      {"WindowActivated",
       [](OpenGLInterface& r, const MessageArgs&) { RendererMessages::WindowActivated(r); }},
      {"msgSetWorldObjectAlpha",
       [](OpenGLInterface& r, const MessageArgs& a) { SpriteAlpha(r, a, WellKnown::SpriteWorld); }},
      {"SetObjectAlpha",
       [](OpenGLInterface& r, const MessageArgs& a) { SpriteAlpha(r, a, WellKnown::SpriteHUD); }},
      {"SetSpriteWorldObjectAlpha",
       [](OpenGLInterface& r, const MessageArgs& a) { SpriteAlpha(r, a, WellKnown::SpriteWorld); }},
      {"SetWorldObjectColor",
       [](OpenGLInterface& r, const MessageArgs& a) { SpriteRgb(r, a, WellKnown::SpriteWorld); }},
      {"SetHUDObjectColor",
       [](OpenGLInterface& r, const MessageArgs& a) { SpriteRgb(r, a, WellKnown::SpriteHUD); }},
      {"LoadRemainingShaders", [](OpenGLInterface&, const MessageArgs&) { LoadSceneShaders(); }},
      {"ChangeResolution",
       [](OpenGLInterface& r, const MessageArgs& a) {
         RendererMessages::ChangeResolution(r, TextArgument(a, 0));
       }},
      {"msgScreenshot",
       [](OpenGLInterface& r, const MessageArgs& a) {
         const std::string file = TextArgument(a, 0);
         if (r.WriteScreenshot(file)) {
           std::printf("Screenshot written to %s\n", file.c_str());
         } else {
           std::printf("Screenshot %s could not be written\n", file.c_str());
         }
       }},
      {"msgSetPostProcessing",
       [](OpenGLInterface& r, const MessageArgs& a) {
         r.postProcessing_->SetOrder(TextArgument(a, 0));
       }},
      {"msgSetDebugDraw",
       [](OpenGLInterface& r, const MessageArgs& a) {
         r.debugDraw_ = NumberArgument(a, 0) != 0.0f;
       }},
  }};
  count = table.size();
  return table.data();
}

void RendererMessages::Listen(MessageHandler& messages) {
  size_t count = 0;
  const Registration* table = Registrations(count);
  for (size_t i = 0; i < count; ++i) {
    const auto handler = table[i].handler;
    const Registration& registration = table[i];
    messages.Listen(registration.message, kOwner, [handler](MessageArgs args) {
      if (OpenGLInterface* renderer = CurrentRenderer()) handler(*renderer, args);
    });
  }
}

void RendererMessages::StopListening(MessageHandler& messages) {
  size_t count = 0;
  const Registration* table = Registrations(count);
  for (size_t i = 0; i < count; ++i) messages.UnListen(table[i].message, kOwner);
}

void RendererMessages::LevelStartUp(OpenGLInterface& renderer, std::string_view levelName) {
  const DataHandle<Database> dhCurLevel = FindLevel(renderer.root_, levelName);
  GRINDLE_ASSERT(!dhCurLevel.IsValid(), "Current level not found");
  Database& level = *dhCurLevel;
  renderer.sprites_.SetLevel(level);
  const DataHandle<Database> camera = level.Add<Database>("CurrentCamera");
  for (const char* name :
       {"PositionX", "PositionY", "PositionZ", "ViewX", "ViewY", "ViewZ", "UpX", "UpY", "UpZ"}) {
    camera->Add<double>(name);
  }
  if (const DataHandle<Database> objects = level.Find<Database>(KeyOf(WellKnown::GameObjects))) {
    for (const Database::Record& record : objects->Records()) {
      if (record.name != "Potato") continue;
      if (const DataHandle<Database> potato = objects->Find<Database>(record.name)) {
        renderer.trackedTransform_ = potato->Find<Database>(KeyOf(WellKnown::Transform));
      }
    }
  }
  if (MeshPass* meshes = renderer.Meshes()) meshes->BuildLevelLists(level);
}

void RendererMessages::WindowActivated(OpenGLInterface& renderer) {
  renderer.minimized_ = false;
  if (renderer.restoreFullScreen_) renderer.SetFullScreen(true);
  const DataHandle<std::string> current =
      renderer.root_.Find<std::string>(KeyOf(WellKnown::CurrentLevel));
  if (current && (*current == "LevelTitleScreen" || *current == "LoadingScreen" ||
                  *current == "SplashScreens")) {
    if (const DataHandle<bool> paused = renderer.root_.Find<bool>(KeyOf(WellKnown::isGamePaused)))
      *paused = false;
    else
      renderer.root_.Add<bool>("isGamePaused", false);
  }
  renderer.messages_.Send("ShowWindow");
}

void RendererMessages::WindowDeactivated(OpenGLInterface& renderer) {
  if (renderer.fullScreen_) {
    renderer.restoreFullScreen_ = true;
    renderer.messages_.Send("MinimizeWindow");
    renderer.SetFullScreen(false);
  } else {
    renderer.restoreFullScreen_ = false;
  }
}

void RendererMessages::ChangeResolution(OpenGLInterface& renderer, std::string_view text) {
  if (const auto resolution = ResolutionFromText(text)) {
    renderer.SetResolution(resolution->width, resolution->height);
  }
}

void RendererMessages::SetSpriteColor(OpenGLInterface& renderer, std::string_view objectName,
                                      uint32_t spriteKey, int first, int count,
                                      const float* values) {
  const DataHandle<std::string> current =
      renderer.root_.Find<std::string>(KeyOf(WellKnown::CurrentLevel));
  const DataHandle<Database> dhCurLevel =
      current ? FindLevel(renderer.root_, *current) : DataHandle<Database>();
  GRINDLE_ASSERT(!dhCurLevel.IsValid(), "Current level not found");
  const DataHandle<Database> objects = dhCurLevel->Find<Database>(KeyOf(WellKnown::GameObjects));
  const DataHandle<Database> object =
      objects ? objects->Find<Database>(objectName) : DataHandle<Database>();
  if (!object) return;
  const DataHandle<Database> sprite = object->Find<Database>(spriteKey);
  if (sprite) WriteFourComponents(*sprite, KeyOf(WellKnown::Color), first, count, values);
}

}  // namespace grindle::gfx
