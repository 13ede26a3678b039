// The wall-clock half of the script watchdog. The instruction count stops endless loops in Lua
// code, but a script can also sit inside one C function (a pattern match that backtracks for
// ever) where no instruction is counted. A thread of its own watches the outermost call into a
// script and, once that call has run past the time limit, stops the program naming the script.
// Begin/End are called by the main thread only; the watching thread only reads.
#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>

namespace grindle {

class ScriptCallTimer {
 public:
  explicit ScriptCallTimer(std::chrono::milliseconds limit);
  ~ScriptCallTimer();
  ScriptCallTimer(const ScriptCallTimer&) = delete;
  ScriptCallTimer& operator=(const ScriptCallTimer&) = delete;

  void SetLimit(std::chrono::milliseconds limit);
  // The outermost call into a script starts: its file (within the script folder) and component
  // path, as the error names them. Reuses one buffer, so a call allocates nothing.
  void Begin(std::string_view fileName, std::string_view componentPath);
  void End();

 private:
  void Watch();

  std::mutex mutex_;
  std::condition_variable stop_;
  std::string sScript_;
  std::chrono::steady_clock::time_point started_;
  std::chrono::milliseconds limit_;
  bool isCalling_ = false;
  bool isStopping_ = false;
  std::thread watcher_;
};

}  // namespace grindle
