// Runs the real engine on the game in this process while a list of steps plays it the way a player
// would: key presses injected into SDL, moves of level objects, reads of the database and
// screenshots. The run is made reproducible and cheap: every frame counts as 1/20 s, the random
// generator starts from a fixed seed, and the game draws at 640 x 360 into a 320 x 180 window.
#pragma once

#include <SDL.h>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "Core/Bootstrapper/Engine.h"
#include "Core/Database.h"
#include "Core/ISystem.h"
#include "Core/MessageHandler.h"
#include "Core/Messages/Catalogue.h"
#include "GoldenCompare.h"
#include "SmallPicture.h"
#include "TempWorkDir.h"

#pragma GCC diagnostic ignored "-Wmissing-field-initializers"

namespace grindle::game {

constexpr double kFrameSeconds = 0.05;
constexpr uint32_t kSeed = 20261124;

// One step of the play: runs once a frame until it returns true.
using Step = std::function<bool(Database& root)>;
using Steps = std::vector<std::pair<std::string, Step>>;

inline const Database* FindDatabase(const Database& root, const std::string& path) {
  const Database* at = &root;
  size_t start = 0;
  for (size_t dot; at != nullptr && (dot = path.find('.', start)) != std::string::npos;
       start = dot + 1)
    at = at->Find<Database>(path.substr(start, dot - start)).Get();
  return at;
}

template <class T>
T Value(const Database& root, const std::string& path, T fallback) {
  const Database* at = FindDatabase(root, path);
  if (at == nullptr) return fallback;
  const auto entry = at->Find<T>(path.substr(path.rfind('.') + 1));
  return entry ? *entry : fallback;
}

template <class T>
void Write(Database& root, const std::string& path, T value) {
  Database* at = const_cast<Database*>(FindDatabase(root, path));
  ASSERT_NE(at, nullptr) << path;
  const auto entry = at->Find<T>(path.substr(path.rfind('.') + 1));
  ASSERT_TRUE(entry) << path;
  *entry = value;
}

inline std::string CurrentLevel(const Database& root) {
  const auto level = root.Find<std::string>("CurrentLevel");
  return level ? *level : std::string();
}

inline std::string Global(const std::string& name) { return "GlobalVariables." + name; }

inline std::string Object(const Database& root, const std::string& name) {
  return "Levels." + CurrentLevel(root) + ".GameObjects." + name;
}

inline MessageHandler& Messages(const Database& root) {
  return **FindDatabase(root, "Systems.MessageHandler")->Find<MessageHandler*>("MessageHandler");
}

inline void SetKey(SDL_Scancode key, bool down) {
  // SDL hands the array out read-only, but it is SDL's own state, the bytes its event handling
  // writes; the event goes with it for whoever watches events.
  const_cast<Uint8*>(SDL_GetKeyboardState(nullptr))[key] = down ? 1 : 0;
  SDL_Event event{.key = {.type = static_cast<Uint32>(down ? SDL_KEYDOWN : SDL_KEYUP),
                          .state = static_cast<Uint8>(down ? SDL_PRESSED : SDL_RELEASED),
                          .keysym = {.scancode = key, .sym = SDL_GetKeyFromScancode(key)}}};
  SDL_PushEvent(&event);
}

inline Step WaitForLevel(const std::string& level) {
  return [level](Database& root) { return CurrentLevel(root) == level; };
}

// Down for two frames, up for two: the game sees one trigger.
inline Step Tap(SDL_Scancode key) {
  return [key, frame = 0](Database&) mutable {
    ++frame;
    if (frame == 1) SetKey(key, true);
    if (frame == 3) SetKey(key, false);
    return frame == 5;
  };
}

inline Step Hold(SDL_Scancode key, int frames) {
  return [key, frames, frame = 0](Database&) mutable {
    if (frame == 0) SetKey(key, true);
    if (++frame < frames) return false;
    SetKey(key, false);
    return true;
  };
}

inline Step Wait(int frames) {
  return [frames, frame = 0](Database&) mutable { return ++frame >= frames; };
}

inline Step Check(std::function<bool(Database&)> test) { return test; }

// The frame as the player sees it, through the renderer's own screenshot: asked for in one frame,
// written when the request is delivered at the start of the next, read back in that one.
inline Step Capture(std::map<std::string, gfx::Image>& images, const std::string& name) {
  const std::string file = ScratchPath("grindle_game_" + name, ".png").string();
  return [&images, name, file, frame = 0](Database& root) mutable {
    if (frame++ == 0) {
      msg::Post(Messages(root), msg::kScreenshot, file);
      return false;
    }
    images[name] = gfx::LoadPng(file);
    std::remove(file.c_str());
    return true;
  };
}

inline Step SmallPicture() {
  return [](Database& root) {
    UseSmallPicture(root);
    return true;
  };
}

// Runs the steps in order, one a frame, and ends the engine when they are done or the frame budget
// is spent.
class StepPlayer final : public ISystem {
 public:
  StepPlayer(Database& root, Steps steps, int budget)
      : root_(root), steps_(std::move(steps)), budget_(budget) {}

  void synchronize(void**, int) override {}
  void Load() override {}
  void Start() override {}
  void Exit() override {}
  void Unload() override {}
  void Update(float) override {
    if (--budget_ == 0 || next_ == steps_.size()) {
      if (!quitSent_) {
        SDL_Event quit{.type = SDL_QUIT};
        SDL_PushEvent(&quit);
        quitSent_ = true;
      }
      return;
    }
    SCOPED_TRACE("step: " + steps_[next_].first);
    if (steps_[next_].second(root_)) ++next_;
  }

  std::string Stuck() const { return next_ < steps_.size() ? steps_[next_].first : std::string(); }

 private:
  Database& root_;
  Steps steps_;
  int budget_;
  size_t next_ = 0;
  bool quitSent_ = false;
};

// Standard output of the run, taken from file descriptor 1 while the engine runs in this process.
class StdoutCapture {
 public:
  StdoutCapture() : path_(ScratchPath("grindle_game_stdout", ".txt").string()) {
    std::fflush(stdout);
    saved_ = dup(STDOUT_FILENO);
    const int file = open(path_.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
    dup2(file, STDOUT_FILENO);
    close(file);
  }
  // Also shows what was taken when the test has failed: the failures reported meanwhile are in it.
  std::string Finish() {
    std::fflush(stdout);
    dup2(saved_, STDOUT_FILENO);
    close(saved_);
    const std::string text = ReadFile(path_);
    std::remove(path_.c_str());
    if (::testing::Test::HasFailure()) std::fputs(text.c_str(), stdout);
    return text;
  }

 private:
  std::string path_;
  int saved_ = -1;
};

struct GameRun {
  EngineOptions options;
  // Written into the root before the first frame, as the engine's own options are.
  std::map<std::string, double> numbers;
  std::map<std::string, std::string> texts;
};

// Runs the game from `run.options.firstLevel` with the small picture and the steps; returns the
// step the run was still waiting for when it ended ("" when all were done).
inline std::string PlayGame(GameRun run, Steps steps, int budget) {
  setenv("SDL_VIDEODRIVER", "offscreen", 1);
  setenv("ALSOFT_DRIVERS", "null", 1);
  EXPECT_EQ(chdir(GRINDLE_GAME_DIR), 0);
  run.options.fixedFrameSeconds = kFrameSeconds;
  run.options.seed = kSeed;
  run.options.frameLimit = budget + 100;
  steps.insert(steps.begin(), {"small picture", SmallPicture()});
  std::unique_ptr<StepPlayer> player;
  const int status =
      RunEngine(run.options, [&](const std::vector<ISystem*>& systems, Database& root) {
        DataHandle<Database> globals = root.Find<Database>("GlobalVariables");
        if (!globals) globals = root.Add<Database>("GlobalVariables");
        for (const auto& [name, value] : run.numbers) globals->Add<double>(name, value);
        for (const auto& [name, value] : run.texts) globals->Add<std::string>(name, value);
        player = std::make_unique<StepPlayer>(root, std::move(steps), budget);
        std::vector<ISystem*> loop = systems;
        loop.push_back(player.get());
        return loop;
      });
  EXPECT_EQ(status, 0);
  return player ? player->Stuck() : std::string("engine start");
}

}  // namespace grindle::game
