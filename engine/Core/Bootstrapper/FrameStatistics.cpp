#include "Core/Bootstrapper/FrameStatistics.h"

#include <cstdio>

#include "Core/KeyInterning.h"

namespace grindle {

bool FrameStatistics::FrameDone(double totalTime, uint32_t messagesThisFrame) {
  ++uFrameCount_;
  uMessageSum_ += messagesThisFrame;
  if (totalTime - dMark_ < 1.0) return false;
  const DatabaseCounters& counters = Counters();
  snapshot_.framesPerSecond = uFrameCount_;
  snapshot_.messagesPerSecond = uMessageSum_;
  snapshot_.lookupsPerSecond = counters.lookups - uLastLookups_;
  snapshot_.internedPerSecond = counters.hashCalls - uLastHashCalls_;
  uLastLookups_ = counters.lookups;
  uLastHashCalls_ = counters.hashCalls;
  uFrameCount_ = 0;
  uMessageSum_ = 0;
  dMark_ += 1.0;
  return true;
}

std::string FrameStatistics::Title(const std::string& caption) const {
  char text[160];
  std::snprintf(text, sizeof(text), "%s - %u fps, %u messages/s, %u lookups/s, %u names interned/s",
                caption.c_str(), snapshot_.framesPerSecond, snapshot_.messagesPerSecond,
                snapshot_.lookupsPerSecond, snapshot_.internedPerSecond);
  return text;
}

void FrameStatistics::Print() const {
  std::printf("Statistics: %u fps, %u messages/s, %u lookups/s, %u names interned/s\n",
              snapshot_.framesPerSecond, snapshot_.messagesPerSecond, snapshot_.lookupsPerSecond,
              snapshot_.internedPerSecond);
  std::fflush(stdout);
}

}  // namespace grindle
