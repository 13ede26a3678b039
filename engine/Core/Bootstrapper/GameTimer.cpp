#include "Core/Bootstrapper/GameTimer.h"

#include "Platform/Clock.h"
#include "Platform/Dialogs.h"

namespace grindle {

GameTimer::GameTimer() {
  const int64_t frequency = platform::PerformanceFrequency();
  if (frequency == 0) {
    platform::ShowMessageBox("", "Sorry, your machine does not support a high frequency timer");
  }
  // A zero frequency gives an infinite scale; the engine carries on regardless.
  dSecondsPerCount_ = 1.0 / static_cast<double>(frequency);
}

void GameTimer::Reset() {
  const int64_t now = platform::PerformanceCounter();
  iBaseTime_ = now;
  iPrevTime_ = now;
  iStopTime_ = 0;
  isStopped_ = false;
}

void GameTimer::Tick() {
  if (isStopped_) {
    dFrameTime_ = 0.0;
    return;
  }
  iCurrTime_ = platform::PerformanceCounter();
  dFrameTime_ = static_cast<double>(iCurrTime_ - iPrevTime_) * dSecondsPerCount_;
  iPrevTime_ = iCurrTime_;
  if (dFrameTime_ < 0.0) dFrameTime_ = 0.0;
}

double GameTimer::TotalTime() const {
  const int64_t end = isStopped_ ? iStopTime_ : iCurrTime_;
  return static_cast<double>(end - iPausedTime_ - iBaseTime_) * dSecondsPerCount_;
}

double GameTimer::SinceLastTick() {
  if (isStopped_) return 0.0;
  iCurrTime_ = platform::PerformanceCounter();
  const double elapsed = static_cast<double>(iCurrTime_ - iPrevTime_) * dSecondsPerCount_;
  return elapsed < 0.0 ? 0.0 : elapsed;
}

}  // namespace grindle
