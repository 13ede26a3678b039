// The game's screens driven the way a player drives them: key presses injected into SDL (the
// key-state bytes the platform layer reads, and the matching key events) while the real engine runs
// the game in this process. From the splash through the main menu and the lobby into a round, a
// few steps to the right, then through the pause menu back to the main menu.
#include <SDL.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "Core/Bootstrapper/Engine.h"
#include "Core/Database.h"
#include "Core/ISystem.h"

#pragma GCC diagnostic ignored "-Wmissing-field-initializers"

namespace grindle {
namespace {

// One step of the script: runs once a frame until it returns true.
using Step = std::function<bool(Database& root)>;

const Database* Find(const Database& root, const std::string& path) {
  const Database* at = &root;
  size_t start = 0;
  for (size_t dot; at != nullptr && (dot = path.find('.', start)) != std::string::npos; start = dot + 1)
    at = at->Find<Database>(path.substr(start, dot - start)).Get();
  return at;
}

template <class T>
T Value(const Database& root, const std::string& path, T fallback) {
  const Database* at = Find(root, path);
  if (at == nullptr) return fallback;
  const auto entry = at->Find<T>(path.substr(path.rfind('.') + 1));
  return entry ? *entry : fallback;
}

std::string CurrentLevel(const Database& root) {
  const auto level = root.Find<std::string>("CurrentLevel");
  return level ? *level : std::string();
}

void SetKey(SDL_Scancode key, bool down) {
  // SDL hands the array out read-only, but it is SDL's own state, the bytes its event handling
  // writes; the event goes with it for whoever watches events.
  const_cast<Uint8*>(SDL_GetKeyboardState(nullptr))[key] = down ? 1 : 0;
  SDL_Event event{.key = {.type = static_cast<Uint32>(down ? SDL_KEYDOWN : SDL_KEYUP),
                          .state = static_cast<Uint8>(down ? SDL_PRESSED : SDL_RELEASED),
                          .keysym = {.scancode = key, .sym = SDL_GetKeyFromScancode(key)}}};
  SDL_PushEvent(&event);
}

// Runs the steps in order, one a frame, and ends the engine when they are done or the frame budget
// is spent.
class Player final : public ISystem {
 public:
  Player(Database& root, std::vector<std::pair<std::string, Step>> steps, int budget)
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
    if (steps_[next_].second(root_)) ++next_;
  }

  std::string Stuck() const { return next_ < steps_.size() ? steps_[next_].first : std::string(); }

 private:
  Database& root_;
  std::vector<std::pair<std::string, Step>> steps_;
  int budget_;
  size_t next_ = 0;
  bool quitSent_ = false;
};

Step WaitForLevel(const std::string& level) {
  return [level](Database& root) { return CurrentLevel(root) == level; };
}

// Down for two frames, up for two: the game sees one trigger.
Step Tap(SDL_Scancode key) {
  return [key, frame = 0](Database&) mutable {
    ++frame;
    if (frame == 1) SetKey(key, true);
    if (frame == 3) SetKey(key, false);
    return frame == 5;
  };
}

Step Hold(SDL_Scancode key, int frames) {
  return [key, frames, frame = 0](Database&) mutable {
    if (frame == 0) SetKey(key, true);
    if (++frame < frames) return false;
    SetKey(key, false);
    return true;
  };
}

Step Check(std::function<bool(Database&)> test) { return test; }

class MenuFlowTest : public ::testing::Test {
 protected:
  void SetUp() override {
    setenv("SDL_VIDEODRIVER", "offscreen", 1);
    setenv("ALSOFT_DRIVERS", "null", 1);
    ASSERT_EQ(chdir(GRINDLE_GAME_DIR), 0);
  }
};

TEST_F(MenuFlowTest, SplashToARoundAndThroughThePauseMenuBackToTheMainMenu) {
  double startX = 0.0;
  bool sawPause = false, sawSceneOverMenu = false;
  const std::string player0 = "Levels.Arena.GameObjects.Player0.Transform.PositionX";
  std::vector<std::pair<std::string, Step>> steps = {
      {"splash", WaitForLevel("SplashScreens")},
      {"leave splash", Tap(SDL_SCANCODE_RETURN)},
      {"main menu", WaitForLevel("LevelTitleScreen")},
      {"play", Tap(SDL_SCANCODE_RETURN)},
      {"lobby", WaitForLevel("Lobby")},
      {"join on WASD", Tap(SDL_SCANCODE_SPACE)},
      {"joined", Check([](Database& root) {
         return Value<std::string>(root, "GlobalVariables.PlayerInput0", "") == "WASD";
       })},
      {"ready", Tap(SDL_SCANCODE_SPACE)},
      {"to start match", Tap(SDL_SCANCODE_DOWN)},
      {"to start match", Tap(SDL_SCANCODE_DOWN)},
      {"start", Tap(SDL_SCANCODE_RETURN)},
      {"round", WaitForLevel("Arena")},
      {"play begins", Check([](Database& root) {
         return Value<double>(root, "GlobalVariables.ExplosionTimeRemaining", 0.0) > 0.0;
       })},
      {"remember where player 1 is", Check([&](Database& root) {
         startX = Value<double>(root, player0, 0.0);
         return true;
       })},
      // Right on the screen: the camera looks along +z, so that is towards -x in the world.
      {"walk right", Hold(SDL_SCANCODE_D, 12)},
      {"moved right on the screen", Check([&](Database& root) {
         EXPECT_LT(Value<double>(root, player0, 0.0), startX - 0.5);
         return true;
       })},
      {"pause", Tap(SDL_SCANCODE_ESCAPE)},
      {"paused", Check([&](Database& root) {
         sawPause = Value<bool>(root, "isGamePaused", false);
         sawSceneOverMenu = Value<double>(root, "GlobalVariables.DrawSceneOverMenu", 0.0) == 1.0;
         return sawPause;
       })},
      {"to main menu", Tap(SDL_SCANCODE_DOWN)},
      {"choose main menu", Tap(SDL_SCANCODE_RETURN)},
      {"back at the main menu", WaitForLevel("LevelTitleScreen")},
      {"unpaused", Check([](Database& root) {
         EXPECT_EQ(Value<double>(root, "GlobalVariables.DrawSceneOverMenu", 1.0), 0.0);
         return !Value<bool>(root, "isGamePaused", true);
       })},
  };
  std::unique_ptr<Player> player;
  EngineOptions options;
  options.frameLimit = 3000;
  const int status = RunEngine(options, [&](const std::vector<ISystem*>& systems, Database& root) {
    player = std::make_unique<Player>(root, std::move(steps), 2500);
    std::vector<ISystem*> loop = systems;
    loop.push_back(player.get());
    return loop;
  });
  EXPECT_EQ(status, 0);
  ASSERT_NE(player, nullptr);
  EXPECT_EQ(player->Stuck(), "") << "the run stopped waiting for this step";
  EXPECT_TRUE(sawPause);
  EXPECT_TRUE(sawSceneOverMenu);
}

}  // namespace
}  // namespace grindle
