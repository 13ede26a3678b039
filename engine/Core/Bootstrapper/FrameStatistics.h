// The once-a-second statistics: frames, messages handled, database lookups and interned names per
// second. The frame loop feeds it every frame on the main thread; a new snapshot is taken each
// time the timer's total passes the next whole-second mark, which then advances by exactly 1 s.
#pragma once

#include <cstdint>
#include <string>

namespace grindle {

struct StatisticsSnapshot {
  uint32_t framesPerSecond = 0;
  uint32_t messagesPerSecond = 0;
  uint32_t lookupsPerSecond = 0;
  uint32_t internedPerSecond = 0;
};

class FrameStatistics {
 public:
  // One frame done. True when this frame completed a second and a new snapshot was taken.
  bool FrameDone(double totalTime, uint32_t messagesThisFrame);

  const StatisticsSnapshot& Snapshot() const { return snapshot_; }
  // "Grindle - 60 fps, 240 messages/s, 5100 lookups/s, 3 names interned/s"
  std::string Title(const std::string& caption) const;
  void Print() const;

 private:
  uint32_t uFrameCount_ = 0;
  uint32_t uMessageSum_ = 0;
  double dMark_ = 0.0;
  // The database counters only ever grow; rates are differences between snapshots.
  uint32_t uLastLookups_ = 0;
  uint32_t uLastHashCalls_ = 0;
  StatisticsSnapshot snapshot_;
};

}  // namespace grindle
