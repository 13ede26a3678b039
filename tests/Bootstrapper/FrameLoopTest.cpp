#include <SDL.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <string>
#include <vector>

#include "Core/Bootstrapper/FrameLoop.h"
#include "Core/Bootstrapper/GameTimer.h"
#include "Core/Bootstrapper/LevelManager.h"
#include "Core/Bootstrapper/MainWindow.h"
#include "Core/Database.h"
#include "Core/MessageHandler.h"
#include "Core/ResourceManager.h"
#include "Core/SystemBase.h"
#include "Core/ThreadManager.h"
#include "Core/WellKnownKeys.h"
#include "TempWorkDir.h"
#include "TestOutput.h"

namespace grindle {
namespace {

struct UpdateRecord {
  float dt;
  double dtEntry;
  std::string level;
};

// Records every Update with what the database said at that moment; can ask to end the game.
class RecordingSystem final : public SystemBase {
 public:
  RecordingSystem(Database& root, MessageHandler& messages)
      : SystemBase("Recorder"), root_(root), messages_(messages) {}
  void Update(float dt) override {
    updates.push_back({dt, *root_.Find<double>("DT"), *root_.Find<std::string>("CurrentLevel")});
    if (updates.size() == exitAfter) messages_.Send("ExitGameMSG");
  }

  std::vector<UpdateRecord> updates;
  size_t exitAfter = 0;

 private:
  Database& root_;
  MessageHandler& messages_;
};

class FrameLoopTest : public testing::Test {
 protected:
  static void SetUpTestSuite() { setenv("SDL_VIDEODRIVER", "offscreen", 1); }

  FrameLoopTest() {
    InternWellKnownKeys();
    dir.Write("Assets/Levels/LoadingScreen.xml", "<int name=\"Spinner\">1</int>\n");
    dir.Write("Assets/Levels/Arena.xml", "<Database name=\"GameObjects\"></Database>\n");
    root.Add<GameTimer>("GameTimer");
    root.Add<double>("DT", 0.0);
    window.Create(messages);
    levels.Initialize("Arena");
    SDL_PumpEvents();
    SDL_FlushEvents(SDL_FIRSTEVENT, SDL_LASTEVENT);
  }
  ~FrameLoopTest() override { platform::QuitVideo(); }

  void PushKey(SDL_Keycode key) {
    SDL_Event event{};
    event.type = SDL_KEYDOWN;
    event.key.keysym.sym = key;
    SDL_PushEvent(&event);
  }

  TempWorkDir dir;
  Database root;
  MessageHandler messages;
  ThreadManager threads{1, 10};
  ResourceManager resources{threads, messages};
  MainWindow window{root};
  LevelManager levels{root, messages};
  RecordingSystem system{root, messages};
  std::vector<ISystem*> systems{&system};
  FrameLoop loop{{root, messages, resources, levels, window, systems}};
};

TEST_F(FrameLoopTest, EachFrameWritesDTBeforeTheUpdatesAndSleepsOutTheFrame) {
  loop.Run(3);
  ASSERT_EQ(system.updates.size(), 4u);
  // The first frame's level request shows the loading screen with the fixed step.
  EXPECT_EQ(system.updates[0].dt, 16.0f);
  EXPECT_EQ(system.updates[0].level, "LoadingScreen");
  for (size_t i = 1; i < 4; ++i) {
    EXPECT_EQ(system.updates[i].level, "Arena");
    EXPECT_EQ(system.updates[i].dt, static_cast<float>(system.updates[i].dtEntry));
  }
  // Frames after the first follow a capped frame: at least the 60 Hz budget less the truncated
  // millisecond.
  EXPECT_GE(system.updates[2].dtEntry, 0.0155);
  EXPECT_GE(system.updates[3].dtEntry, 0.0155);
}

TEST_F(FrameLoopTest, WaitingWindowMessagesAreTakenBeforeAnyFrameAndQuitEndsTheLoop) {
  PushKey(SDLK_a);
  PushKey(SDLK_b);
  platform::PostQuit();
  loop.Run(-1);
  EXPECT_TRUE(system.updates.empty());
  EXPECT_EQ(*root.Find<std::string>("NextLevel"), "Arena");  // no frame ran the level change
}

TEST_F(FrameLoopTest, AnExitRequestEndsTheLoopAfterTheFrameInProgress) {
  system.exitAfter = 3;  // the loading screen's update, then two frames
  loop.Run(-1);
  // Sent in frame 2, delivered in frame 3, which still completes; then the quit message is taken.
  EXPECT_EQ(system.updates.size(), 4u);
}

TEST_F(FrameLoopTest, FunctionKeysPrintTheStatisticsAndTheDatabase) {
  PushKey(SDLK_F12);
  PushKey(SDLK_F11);
  const std::string out = CaptureStdout([&] { loop.Run(1); });
  EXPECT_NE(out.find("Statistics: 0 fps"), std::string::npos) << out;
  EXPECT_NE(out.find("Database (Levels) ="), std::string::npos) << out;
  EXPECT_NE(out.find("int (WindowWidth) = 1280"), std::string::npos) << out;
}

}  // namespace
}  // namespace grindle
