#include "Graphics/RenderInterface/OpenGL/RendererMessages.h"

#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>
#include <string_view>

#include "Core/Assert.h"
#include "Core/Database.h"
#include "Core/MessageHandler.h"
#include "Core/Messages/Catalogue.h"
#include "Core/Messages/RouteTable.h"
#include "Core/WellKnownKeys.h"
#include "Core/DatabaseNumbers.h"
#include "Graphics/RenderInterface/OpenGL/LevelLookup.h"
#include "Graphics/RenderInterface/OpenGL/OpenGLInterface.h"
#include "Graphics/RenderInterface/OpenGL/RenderMath.h"
#include "Input/Keyboard.h"
#include "Input/Mouse.h"

namespace grindle::gfx {

namespace {

// What a handler acts on.
struct Receiver {
  OpenGLInterface& renderer;
  Database& root;
};

using msg::TextOr;

// Sizes and colour components as the renderer keeps them; an absent number reads as 0.
float NumberOr0(const AbstractPointerBase* argument) {
  return static_cast<float>(msg::Real::Read(argument).value_or(0.0));
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

// The alpha and colour messages all carry (object name, numbers...).
template <WellKnown kSprite>
void SpriteAlpha(Receiver& r, MessageArgs args) {
  const float alpha = NumberOr0(args[1]);
  SetSpriteColor(r.root, TextOr(args[0]), kSprite, 3, 1, &alpha);
}

template <WellKnown kSprite>
void SpriteRgb(Receiver& r, MessageArgs args) {
  const float rgb[3] = {NumberOr0(args[1]), NumberOr0(args[2]), NumberOr0(args[3])};
  SetSpriteColor(r.root, TextOr(args[0]), kSprite, 0, 3, rgb);
}

// Both creation messages carry (object, name, level).
void ObjectCreated(Receiver& r, MessageArgs args) {
  r.renderer.AddObject(msg::kObjectCreated.Read<0>(args), TextOr(args[1]));
}

void Screenshot(Receiver& r, MessageArgs args) {
  const std::string file = TextOr(args[0]);
  if (r.renderer.WriteScreenshot(file)) {
    std::printf("Screenshot written to %s\n", file.c_str());
  } else {
    std::printf("Screenshot %s could not be written\n", file.c_str());
  }
}

void ChangeResolution(Receiver& r, MessageArgs args) {
  if (const auto resolution = ResolutionFromText(TextOr(args[0])))
    r.renderer.SetResolution(resolution->width, resolution->height);
}

using R = Receiver;

// The order of this table is the order the renderer listens in.
constexpr msg::Route<R> kRoutes[] = {
    // The renderer reads the name after a level handle; the script bridge sends the name alone,
    // which therefore removes nothing here (kept: that is the renderer's contract).
    {msg::kObjectDestroyed, [](R& r, MessageArgs a) { r.renderer.RemoveObject(TextOr(a[1])); }},
    {msg::kObjectCreated, ObjectCreated},
    {msg::kLevelObjectCreated, ObjectCreated},
    {msg::kMsgUnloadLevel, [](R& r, MessageArgs a) { r.renderer.OnUnloadLevel(TextOr(a[0])); }},
    // Read and discarded: a game shows the potato's explosion with an explosion particle system
    // that it restarts with "SCR:RestartParticles".
    {msg::scr::kPotatoExploded, [](R&, MessageArgs) {}},
    {msg::kLevelInitializeComplete,
     [](R& r, MessageArgs a) { r.renderer.OnLevelStart(TextOr(a[0])); }},
    {msg::kLoadShaders,
     [](R& r, MessageArgs) { r.renderer.Device().LoadSceneShadersAndLayouts(); }},
    {msg::kKeyboard,
     [](R& r, MessageArgs a) {
       if (const Keyboard* keyboard = msg::kKeyboard.Read<0>(a)) r.renderer.OnKeyboard(*keyboard);
     }},
    {msg::kMouse,
     [](R& r, MessageArgs a) {
       if (const Mouse* mouse = msg::kMouse.Read<0>(a)) r.renderer.OnMouse(*mouse);
     }},
    {msg::kOnResize, [](R& r, MessageArgs) { r.renderer.Resize(); }},
    {msg::kSetClientWindow,
     [](R& r, MessageArgs a) {
       r.renderer.SetClientSize(static_cast<int>(NumberOr0(a[0])),
                                static_cast<int>(NumberOr0(a[1])));
     }},
    {msg::kFullScreen,
     [](R& r, MessageArgs) { r.renderer.SetFullScreen(!r.renderer.IsFullScreen()); }},
    {msg::kWindowDeactivated, [](R& r, MessageArgs) { r.renderer.OnWindowDeactivated(); }},
    {msg::kWindowActivated, [](R& r, MessageArgs) { r.renderer.OnWindowActivated(); }},
    {msg::kSetWorldObjectAlpha, SpriteAlpha<WellKnown::SpriteWorld>},
    {msg::kSetObjectAlpha, SpriteAlpha<WellKnown::SpriteHUD>},
    {msg::kSetSpriteWorldObjectAlpha, SpriteAlpha<WellKnown::SpriteWorld>},
    {msg::kSetWorldObjectColor, SpriteRgb<WellKnown::SpriteWorld>},
    {msg::kSetHUDObjectColor, SpriteRgb<WellKnown::SpriteHUD>},
    {msg::kLoadRemainingShaders,
     [](R& r, MessageArgs) { r.renderer.Device().Shaders().LoadScene(); }},
    {msg::kChangeResolution, ChangeResolution},
    {msg::kScreenshot, Screenshot},
    {msg::kSetPostProcessing,
     [](R& r, MessageArgs a) { r.renderer.SetPostProcessing(TextOr(a[0])); }},
    {msg::scr::kRestartParticles,
     [](R& r, MessageArgs a) {
       if (const std::string* name = msg::scr::kRestartParticles.Read<0>(a))
         r.renderer.Particles().Restart(*name);
     }},
    {msg::kSetDebugDraw,
     [](R& r, MessageArgs a) { r.renderer.SetDebugDraw(NumberOr0(a[0]) != 0.0f); }},
};

constexpr msg::RouteTable<R> kTable{"Graphics", kRoutes};

}  // namespace

void RendererMessages::Listen(MessageHandler& messages, Database& root, OpenGLInterface& renderer) {
  kTable.Listen(messages, std::make_shared<Receiver>(Receiver{renderer, root}));
}

void RendererMessages::StopListening(MessageHandler& messages) { kTable.UnListen(messages); }

}  // namespace grindle::gfx
