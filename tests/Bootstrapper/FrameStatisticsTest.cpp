#include <gtest/gtest.h>

#include "Core/Bootstrapper/FrameStatistics.h"
#include "Core/Database.h"

namespace grindle {
namespace {

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

}  // namespace
}  // namespace grindle
