// The renderer's message handlers, registered in the fixed order the renderer listens in, plus
// "msgScreenshot" (file name) and "msgSetPostProcessing" (comma-separated effect names) for tools
// and games. Main thread; every handler acts on the current renderer and does nothing without one.
#pragma once

#include <cstdint>
#include <string_view>

#include "Core/WellKnownKeys.h"

namespace grindle {
class MessageHandler;
class Database;
struct MessageArgs;
}  // namespace grindle

namespace grindle::gfx {

class OpenGLInterface;

class RendererMessages {
 public:
  static void Listen(MessageHandler& messages);
  static void StopListening(MessageHandler& messages);

  // Level start-up ("LevelInitializeComplete").
  static void LevelStartUp(OpenGLInterface& renderer, std::string_view levelName);
  static void WindowActivated(OpenGLInterface& renderer);
  static void WindowDeactivated(OpenGLInterface& renderer);
  static void ChangeResolution(OpenGLInterface& renderer, std::string_view text);
  // The sprite colour handlers: components [first, first + count) of `<sprite>.Color`.
  static void SetSpriteColor(OpenGLInterface& renderer, std::string_view objectName,
                             uint32_t spriteKey, int first, int count, const float* values);

 private:
  struct Registration;
  static const Registration* Registrations(size_t& count);
  static void ObjectCreated(OpenGLInterface& renderer, const MessageArgs& args);
  static void ObjectDestroyed(OpenGLInterface& renderer, const MessageArgs& args);
  static void UnloadLevel(OpenGLInterface& renderer, const MessageArgs& args);
  static void SpriteAlpha(OpenGLInterface& renderer, const MessageArgs& args, WellKnown sprite);
  static void SpriteRgb(OpenGLInterface& renderer, const MessageArgs& args, WellKnown sprite);
};

}  // namespace grindle::gfx
