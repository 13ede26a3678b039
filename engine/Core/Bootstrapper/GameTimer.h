// The frame clock, read from the high-frequency counter. The frame loop owns the ticking; anyone
// may read it through the root entry `GameTimer`. Main thread only. Reset deliberately keeps the
// paused time, and SinceLastTick overwrites the current time (TotalTime then reflects it).
#pragma once

#include <cstdint>

namespace grindle {

class GameTimer {
 public:
  GameTimer();

  void Reset();
  void Tick();
  // Seconds of the last Tick; -1.0 until the first one.
  double DeltaTime() const { return dFrameTime_; }
  double TotalTime() const;
  // Seconds since the last Tick, never negative; 0 while stopped.
  double SinceLastTick();

 private:
  double dSecondsPerCount_ = 0.0;
  double dFrameTime_ = -1.0;
  int64_t iBaseTime_ = 0;
  int64_t iPausedTime_ = 0;
  int64_t iStopTime_ = 0;
  int64_t iPrevTime_ = 0;
  int64_t iCurrTime_ = 0;
  bool isStopped_ = false;
};

}  // namespace grindle
