// Makes a running engine draw a small picture: out of full screen (the desktop size differs between
// machines), the smallest render resolution, in a 320 x 180 window. Whole-engine tests call it from
// a system of their own on the first frame, so that llvmpipe has little to fill.
#pragma once

#include <SDL.h>

#include <string>

#include "Core/Database.h"
#include "Core/MessageHandler.h"
#include "Core/Messages/Catalogue.h"

namespace grindle {

inline constexpr int kSmallWindowWidth = 320;
inline constexpr int kSmallWindowHeight = 180;

inline void UseSmallPicture(Database& root) {
  MessageHandler& messages =
      **root.Find<Database>("Systems")->Find<MessageHandler*>("MessageHandler");
  msg::Post(messages, msg::kFullScreen);
  msg::Post(messages, msg::kChangeResolution, std::string("640x360"));
  messages.Deliver(MessageHandler::kDeliverAll);
  SDL_SetWindowSize(*root.Find<SDL_Window*>("MainWindowHandle"), kSmallWindowWidth,
                    kSmallWindowHeight);
}

}  // namespace grindle
