#include "Graphics/RenderInterface/OpenGL/RendererMessages.h"

#include <array>
#include <cstdint>
#include <cstdio>
#include <string>
#include <string_view>

#include "Core/Assert.h"
#include "Core/Database.h"
#include "Core/MessageHandler.h"
#include "Core/WellKnownKeys.h"
#include "Graphics/RenderInterface/OpenGL/DatabaseValues.h"
#include "Graphics/RenderInterface/OpenGL/LevelLookup.h"
#include "Graphics/RenderInterface/OpenGL/OpenGLInterface.h"
#include "Graphics/RenderInterface/OpenGL/RenderMath.h"
#include "Input/Keyboard.h"
#include "Input/Mouse.h"

namespace grindle::gfx {

namespace {

constexpr std::string_view kOwner = "Graphics";

// What a handler acts on.
struct Receiver {
  OpenGLInterface& renderer;
  Database& root;
};

struct Route {
  const char* message;
  void (*handler)(Receiver&, const MessageArgs&);
};

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

// Components [first, first + count) of `<sprite>.Color` of the named object of the current level.
void SetSpriteColor(Database& root, std::string_view objectName, WellKnown sprite, int first,
                    int count, const float* values) {
  const DataHandle<Database> dhCurLevel = FindCurrentLevel(root);
  GRINDLE_ASSERT(!dhCurLevel.IsValid(), "Current level not found");
  const DataHandle<Database> objects = dhCurLevel->Find<Database>(KeyOf(WellKnown::GameObjects));
  const DataHandle<Database> object =
      objects ? objects->Find<Database>(objectName) : DataHandle<Database>();
  if (!object) return;
  const DataHandle<Database> spriteComponent = object->Find<Database>(KeyOf(sprite));
  if (spriteComponent)
    WriteFourComponents(*spriteComponent, KeyOf(WellKnown::Color), first, count, values);
}

template <WellKnown kSprite>
void SpriteAlpha(Receiver& r, const MessageArgs& args) {
  const float alpha = NumberArgument(args, 1);
  SetSpriteColor(r.root, TextArgument(args, 0), kSprite, 3, 1, &alpha);
}

template <WellKnown kSprite>
void SpriteRgb(Receiver& r, const MessageArgs& args) {
  const float rgb[3] = {NumberArgument(args, 1), NumberArgument(args, 2), NumberArgument(args, 3)};
  SetSpriteColor(r.root, TextArgument(args, 0), kSprite, 0, 3, rgb);
}

void ObjectCreated(Receiver& r, const MessageArgs& args) {
  r.renderer.AddObject(ObjectArgument(args, 0), TextArgument(args, 1));
}

void Screenshot(Receiver& r, const MessageArgs& args) {
  const std::string file = TextArgument(args, 0);
  if (r.renderer.WriteScreenshot(file)) {
    std::printf("Screenshot written to %s\n", file.c_str());
  } else {
    std::printf("Screenshot %s could not be written\n", file.c_str());
  }
}

void ChangeResolution(Receiver& r, const MessageArgs& args) {
  if (const auto resolution = ResolutionFromText(TextArgument(args, 0)))
    r.renderer.SetResolution(resolution->width, resolution->height);
}

// The order of this table is the order the renderer listens in.
const std::array<Route, 24> kRoutes = {{
    {"msgObjectDestroyed",
     [](Receiver& r, const MessageArgs& a) { r.renderer.RemoveObject(TextArgument(a, 1)); }},
    {"msgObjectCreated", ObjectCreated},
    {"msgLevelObjectCreated", ObjectCreated},
    {"msgUnloadLevel",
     [](Receiver& r, const MessageArgs& a) { r.renderer.OnUnloadLevel(TextArgument(a, 0)); }},
    // Read and discarded: explosions belong to the particle manager's later work.
    {"SCR:PotatoExploded", [](Receiver&, const MessageArgs&) {}},
    {"LevelInitializeComplete",
     [](Receiver& r, const MessageArgs& a) { r.renderer.OnLevelStart(TextArgument(a, 0)); }},
    {"LoadShaders",
     [](Receiver& r, const MessageArgs&) { r.renderer.Device().LoadSceneShadersAndLayouts(); }},
    {"Keyboard",
     [](Receiver& r, const MessageArgs& a) {
       if (const Keyboard* keyboard = a.Get<Keyboard>(0)) r.renderer.OnKeyboard(*keyboard);
     }},
    {"Mouse",
     [](Receiver& r, const MessageArgs& a) {
       if (const Mouse* mouse = a.Get<Mouse>(0)) r.renderer.OnMouse(*mouse);
     }},
    {"OnResize", [](Receiver& r, const MessageArgs&) { r.renderer.Resize(); }},
    {"SetClientWindow",
     [](Receiver& r, const MessageArgs& a) {
       r.renderer.SetClientSize(static_cast<int>(NumberArgument(a, 0)),
                                static_cast<int>(NumberArgument(a, 1)));
     }},
    {"FullScreenMSG",
     [](Receiver& r, const MessageArgs&) { r.renderer.SetFullScreen(!r.renderer.IsFullScreen()); }},
    {"WindowDeactivated",
     [](Receiver& r, const MessageArgs&) { r.renderer.OnWindowDeactivated(); }},
    {"WindowActivated", [](Receiver& r, const MessageArgs&) { r.renderer.OnWindowActivated(); }},
    {"msgSetWorldObjectAlpha", SpriteAlpha<WellKnown::SpriteWorld>},
    {"SetObjectAlpha", SpriteAlpha<WellKnown::SpriteHUD>},
    {"SetSpriteWorldObjectAlpha", SpriteAlpha<WellKnown::SpriteWorld>},
    {"SetWorldObjectColor", SpriteRgb<WellKnown::SpriteWorld>},
    {"SetHUDObjectColor", SpriteRgb<WellKnown::SpriteHUD>},
    {"LoadRemainingShaders",
     [](Receiver& r, const MessageArgs&) { r.renderer.Device().Shaders().LoadScene(); }},
    {"ChangeResolution", ChangeResolution},
    {"msgScreenshot", Screenshot},
    {"msgSetPostProcessing",
     [](Receiver& r, const MessageArgs& a) { r.renderer.SetPostProcessing(TextArgument(a, 0)); }},
    {"msgSetDebugDraw",
     [](Receiver& r, const MessageArgs& a) {
       r.renderer.SetDebugDraw(NumberArgument(a, 0) != 0.0f);
     }},
}};

}  // namespace

void RendererMessages::Listen(MessageHandler& messages, Database& root, OpenGLInterface& renderer) {
  for (const Route& route : kRoutes) {
    messages.Listen(route.message, kOwner,
                    [receiver = Receiver{renderer, root}, handler = route.handler](
                        MessageArgs args) mutable { handler(receiver, args); });
  }
}

void RendererMessages::StopListening(MessageHandler& messages) {
  for (const Route& route : kRoutes) messages.UnListen(route.message, kOwner);
}

}  // namespace grindle::gfx
