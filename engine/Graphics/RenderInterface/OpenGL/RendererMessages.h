// The renderer's message handlers, registered in the fixed order the renderer listens in, plus
// "msgScreenshot" (file name), "msgSetPostProcessing" (comma-separated effect names) and
// "SCR:RestartParticles" (object name) for tools, scripts and games. Each handler decodes its
// arguments and calls one public operation of the renderer it was registered for (or writes a
// sprite colour into the root database). Main thread.
#pragma once

namespace grindle {
class Database;
class MessageHandler;
}  // namespace grindle

namespace grindle::gfx {

class OpenGLInterface;

class RendererMessages {
 public:
  // The handlers act on `renderer` until StopListening; the renderer calls both.
  static void Listen(MessageHandler& messages, Database& root, OpenGLInterface& renderer);
  static void StopListening(MessageHandler& messages);
};

}  // namespace grindle::gfx
