// The frame loop and its parts: the frame clock, the sleep rule and the statistics.
#include <thread>

#include "BootstrapperKit.h"
#include "Core/Bootstrapper/FrameLoop.h"
#include "Core/Bootstrapper/FrameStatistics.h"
#include "Core/Bootstrapper/GameTimer.h"
#include "Core/Bootstrapper/LevelManager.h"
#include "Core/ResourceManager.h"
#include "Core/ThreadManager.h"
#include "TestOutput.h"

namespace grindle {
namespace {

using namespace std::chrono_literals;

TEST(GameTimer, MeasuresFromTheLastTickAndTotalTimeMovesOnlyWhenTheCounterIsRead) {
  GameTimer timer;
  EXPECT_EQ(timer.DeltaTime(), -1.0);  // until the first tick
  timer.Reset();
  std::this_thread::sleep_for(5ms);
  timer.Tick();
  const double atTick = timer.TotalTime();
  EXPECT_GE(atTick, 0.005);
  std::this_thread::sleep_for(5ms);
  EXPECT_EQ(timer.TotalTime(), atTick);

  const double since = timer.SinceLastTick();
  EXPECT_GE(since, 0.005);
  // Reading the time since the tick overwrote the current time...
  EXPECT_NEAR(timer.TotalTime(), atTick + since, 1e-9);
  // ... but not the previous time: the next frame still measures from the tick, not the reset.
  timer.Tick();
  EXPECT_GE(timer.DeltaTime(), since);
  EXPECT_LE(timer.DeltaTime(), timer.TotalTime() - 0.005);
}

TEST(FrameSleep, SleepsTheRestOfTheFrameInWholeMillisecondsAndNeverAfterASlowFrame) {
  EXPECT_EQ(FrameSleepMilliseconds(0.0), 16u);
  EXPECT_EQ(FrameSleepMilliseconds(0.004), 12u);  // 12.67 ms left, truncated
  EXPECT_EQ(FrameSleepMilliseconds(0.0166), 0u);  // less than a millisecond left
  EXPECT_EQ(FrameSleepMilliseconds(0.020), 0u);
}

TEST(FrameStatistics, SnapshotsOncePerSecondWithTheMarkAdvancingByExactlyOneSecond) {
  FrameStatistics statistics;
  Database database;
  database.Add<int>("Counted", 1);

  EXPECT_FALSE(statistics.FrameDone(0.3, 2));
  for (int i = 0; i < 5; ++i) database.Find<int>("Counted");
  EXPECT_FALSE(statistics.FrameDone(0.9, 3));
  ASSERT_TRUE(statistics.FrameDone(1.2, 4));
  EXPECT_EQ(statistics.Snapshot().framesPerSecond, 3u);
  EXPECT_EQ(statistics.Snapshot().messagesPerSecond, 9u);
  EXPECT_GE(statistics.Snapshot().lookupsPerSecond, 5u);

  // The mark is now 1.0, not 1.2: 2.0 completes the next second.
  EXPECT_FALSE(statistics.FrameDone(1.9, 1));
  ASSERT_TRUE(statistics.FrameDone(2.0, 1));
  EXPECT_EQ(statistics.Snapshot().framesPerSecond, 2u);
  EXPECT_EQ(statistics.Snapshot().messagesPerSecond, 2u);
  EXPECT_EQ(statistics.Snapshot().lookupsPerSecond, 0u);  // rates, not running totals

  // A long stall catches up one second per frame.
  EXPECT_TRUE(statistics.FrameDone(4.5, 0));
  EXPECT_TRUE(statistics.FrameDone(4.5, 0));
  EXPECT_FALSE(statistics.FrameDone(4.5, 0));
  EXPECT_EQ(statistics.Title("Grindle").rfind("Grindle - 1 fps, 0 messages/s", 0), 0u);
}

struct UpdateRecord {
  float dt;
  double dtEntry;
  std::string level;
};

class FrameLoopTest : public WindowTest {
 protected:
  FrameLoopTest() {
    dir.Write("Assets/Levels/LoadingScreen.xml", "<int name=\"Spinner\">1</int>\n");
    dir.Write("Assets/Levels/Arena.xml", "<Database name=\"GameObjects\"></Database>\n");
    root.Add<GameTimer>("GameTimer");
    root.Add<double>("DT", 0.0);
    levels.Initialize("Arena");
    OpenWindow();
  }
  void PushKey(SDL_Keycode key, bool isRepeat = false) {
    SDL_Event event{.key = {.type = SDL_KEYDOWN,
                            .repeat = static_cast<Uint8>(isRepeat ? 1 : 0),
                            .keysym = {.sym = key}}};
    SDL_PushEvent(&event);
  }

  TempWorkDir dir;
  ThreadManager threads{1, 10};
  ResourceManager resources{threads, messages};
  LevelManager levels{root, messages};
  // Every Update with what the database said at that moment; the one numbered `exitAfter` asks
  // to end the game.
  std::vector<UpdateRecord> updates;
  size_t exitAfter = 0;
  UpdateHook system{[this](float dt) {
    updates.push_back({dt, *root.Find<double>("DT"), *root.Find<std::string>("CurrentLevel")});
    if (updates.size() == exitAfter) messages.Send("ExitGameMSG");
  }};
  std::vector<ISystem*> systems{&system};
  FrameLoop loop{{root, messages, resources, levels, window, systems}};
};

TEST_F(FrameLoopTest, EachFrameWritesDTBeforeTheUpdatesAndSleepsOutTheFrame) {
  loop.Run(3);
  ASSERT_EQ(updates.size(), 4u);
  // The first frame's level request shows the loading screen with the fixed step.
  EXPECT_EQ(updates[0].dt, 16.0f);
  EXPECT_EQ(updates[0].level, "LoadingScreen");
  for (size_t i = 1; i < 4; ++i) {
    EXPECT_EQ(updates[i].level, "Arena");
    EXPECT_EQ(updates[i].dt, static_cast<float>(updates[i].dtEntry));
  }
  // Frames after the first follow a capped frame: at least the 60 Hz budget less the truncated
  // millisecond.
  EXPECT_GE(updates[2].dtEntry, 0.0155);
  EXPECT_GE(updates[3].dtEntry, 0.0155);
}

TEST_F(FrameLoopTest, WaitingWindowMessagesAreTakenBeforeAnyFrameAndQuitEndsTheLoop) {
  PushKey(SDLK_a);
  PushKey(SDLK_b);
  platform::PostQuit();
  loop.Run(-1);
  EXPECT_TRUE(updates.empty());
  EXPECT_EQ(*root.Find<std::string>("NextLevel"), "Arena");  // no frame ran the level change
}

TEST_F(FrameLoopTest, AnExitRequestEndsTheLoopAfterTheFrameInProgress) {
  exitAfter = 3;  // the loading screen's update, then two frames
  loop.Run(-1);
  // Sent in frame 2, delivered in frame 3, which still completes; then the quit message is taken.
  EXPECT_EQ(updates.size(), 4u);
}

TEST_F(FrameLoopTest, FunctionKeysPrintTheStatisticsAndTheDatabaseOncePerPress) {
  // A held F12 repeats; only the press counts. A second press prints again.
  PushKey(SDLK_F12);
  for (int i = 0; i < 3; ++i) PushKey(SDLK_F12, true);
  PushKey(SDLK_F11);
  PushKey(SDLK_F11, true);
  PushKey(SDLK_F12);
  const std::string out = CaptureStdout([&] { loop.Run(1); });
  EXPECT_EQ(CountOf(out, "Statistics:"), 2u) << out;
  EXPECT_EQ(CountOf(out, "int (WindowWidth) = 1280"), 1u) << out;
}

}  // namespace
}  // namespace grindle
