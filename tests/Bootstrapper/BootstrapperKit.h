// What the bootstrapper tests share: a temporary working directory (level files are read by
// relative path), a log of engine messages, a system that runs the test's code in its Update, and
// a fixture owning the main window on SDL's offscreen driver.
#pragma once

#include <SDL.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "Core/Bootstrapper/MainWindow.h"
#include "Core/Database.h"
#include "Core/MessageHandler.h"
#include "Core/SystemBase.h"
#include "Core/WellKnownKeys.h"
#include "TempWorkDir.h"

// SDL events are written with designated initializers; the fields left out are zero, as wanted.
#pragma GCC diagnostic ignored "-Wmissing-field-initializers"

namespace grindle {

// Lines such as "SetClientWindow(800,600)" for every message of the given names, in delivery
// order; a database argument shows as "@" and its name. Tests may add lines of their own.
struct MessageLog {
  MessageLog(MessageHandler& messages, std::initializer_list<const char*> names)
      : handler(messages) {
    for (const char* name : names) {
      handler.Listen(name, "Test", [this, name](MessageArgs args) {
        std::string text = std::string(name) + "(";
        for (uint32_t i = 0; i < args.count; ++i) {
          if (i > 0) text += ",";
          if (const auto* s = args.Get<std::string>(i)) text += *s;
          if (const auto* u = args.Get<unsigned int>(i)) text += std::to_string(*u);
          if (const auto* d = args.Get<double>(i)) text += std::to_string(*d);
          if (const auto* object = args.Get<DataHandle<Database>>(i))
            text += "@" + (*object)->Name();
        }
        lines.push_back(text + ")");
      });
    }
  }
  // Delivers everything queued and hands over the lines logged so far.
  std::vector<std::string> Take() {
    handler.Deliver(MessageHandler::kDeliverAll);
    return std::exchange(lines, {});
  }

  MessageHandler& handler;
  std::vector<std::string> lines;
};
using Log = std::vector<std::string>;

struct UpdateHook final : SystemBase {
  explicit UpdateHook(std::function<void(float)> body)
      : SystemBase("Hook"), body(std::move(body)) {}
  void Update(float dt) override { body(dt); }
  std::function<void(float)> body;
};

class WindowTest : public testing::Test {
 protected:
  static void SetUpTestSuite() { setenv("SDL_VIDEODRIVER", "offscreen", 1); }
  WindowTest() { InternWellKnownKeys(); }
  ~WindowTest() override { platform::QuitVideo(); }

  // Whatever the driver queued while the window appeared is not part of any test.
  void OpenWindow() {
    window.Create(messages);
    SDL_PumpEvents();
    SDL_FlushEvents(SDL_FIRSTEVENT, SDL_LASTEVENT);
  }

  Database root;
  MessageHandler messages;
  MainWindow window{root};
};

}  // namespace grindle
