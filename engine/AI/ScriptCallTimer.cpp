#include "AI/ScriptCallTimer.h"

#include <algorithm>
#include <cstdio>

#include "Core/Assert.h"

namespace grindle {

ScriptCallTimer::ScriptCallTimer(std::chrono::milliseconds limit)
    : limit_(limit), watcher_([this] { Watch(); }) {}

ScriptCallTimer::~ScriptCallTimer() {
  {
    std::lock_guard lock(mutex_);
    isStopping_ = true;
  }
  stop_.notify_one();
  watcher_.join();
}

void ScriptCallTimer::SetLimit(std::chrono::milliseconds limit) {
  std::lock_guard lock(mutex_);
  limit_ = limit;
}

void ScriptCallTimer::Begin(std::string_view fileName, std::string_view componentPath) {
  std::lock_guard lock(mutex_);
  sScript_.assign("Scripts/").append(fileName).append(" (").append(componentPath).append(")");
  started_ = std::chrono::steady_clock::now();
  isCalling_ = true;
}

void ScriptCallTimer::End() {
  std::lock_guard lock(mutex_);
  isCalling_ = false;
}

void ScriptCallTimer::Watch() {
  std::unique_lock lock(mutex_);
  while (!isStopping_) {
    // Polled rather than woken by every call, so that a call costs the main thread no system call.
    const auto tick =
        std::clamp(limit_ / 20, std::chrono::milliseconds(10), std::chrono::milliseconds(250));
    stop_.wait_for(lock, tick, [this] { return isStopping_; });
    if (isStopping_ || !isCalling_) continue;
    const auto elapsed = std::chrono::steady_clock::now() - started_;
    if (elapsed < limit_) continue;
    // The main thread is stuck inside the script and cannot be unwound from here: stop the
    // program the way a failed script call does, naming the script.
    std::printf("Error executing lua function : %s has not returned from one call in %.1f s\n",
                sScript_.c_str(), std::chrono::duration<double>(elapsed).count());
    std::fflush(stdout);
    std::fprintf(stderr, "%s: stuck for %.1f s in one call (a C function that never returns?)\n",
                 sScript_.c_str(), std::chrono::duration<double>(elapsed).count());
    GRINDLE_ASSERT_TEXT(true, "true", "Lua Error!");
  }
}

}  // namespace grindle
