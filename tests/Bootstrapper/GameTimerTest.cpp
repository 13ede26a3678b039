#include <gtest/gtest.h>

#include <thread>

#include "Core/Bootstrapper/FrameLoop.h"
#include "Core/Bootstrapper/GameTimer.h"

namespace grindle {
namespace {

using std::chrono::milliseconds;

TEST(GameTimer, ReportsMinusOneUntilTheFirstTickThenRealFrameTimes) {
  GameTimer timer;
  EXPECT_EQ(timer.DeltaTime(), -1.0);
  timer.Reset();
  std::this_thread::sleep_for(milliseconds(5));
  timer.Tick();
  EXPECT_GE(timer.DeltaTime(), 0.005);
  EXPECT_LT(timer.DeltaTime(), 1.0);
  // A second tick measures from the first, not from the reset.
  timer.Tick();
  EXPECT_LT(timer.DeltaTime(), 0.005);
  EXPECT_GE(timer.DeltaTime(), 0.0);
}

TEST(GameTimer, TotalTimeCountsFromResetAndFollowsTheTimeSinceTheLastTick) {
  GameTimer timer;
  timer.Reset();
  timer.Tick();
  const double atTick = timer.TotalTime();
  std::this_thread::sleep_for(milliseconds(5));
  EXPECT_EQ(timer.TotalTime(), atTick);  // only reading the counter moves it

  const double since = timer.SinceLastTick();
  EXPECT_GE(since, 0.005);
  // Reading the time since the tick overwrote the current time.
  EXPECT_NEAR(timer.TotalTime(), atTick + since, 1e-9);
  // ... but not the previous time: the next frame still measures from the tick.
  timer.Tick();
  EXPECT_GE(timer.DeltaTime(), since);

  timer.Reset();
  timer.Tick();
  EXPECT_LT(timer.TotalTime(), 0.005);
}

TEST(FrameSleep, SleepsTheRestOfTheFrameInWholeMillisecondsAndNeverAfterASlowFrame) {
  EXPECT_EQ(FrameSleepMilliseconds(0.0), 16u);
  EXPECT_EQ(FrameSleepMilliseconds(0.004), 12u);   // 12.67 ms left, truncated
  EXPECT_EQ(FrameSleepMilliseconds(0.0166), 0u);   // less than a millisecond left
  EXPECT_EQ(FrameSleepMilliseconds(1.0 / 60.0), 0u);
  EXPECT_EQ(FrameSleepMilliseconds(0.020), 0u);
  EXPECT_EQ(FrameSleepMilliseconds(5.0), 0u);
}

}  // namespace
}  // namespace grindle
