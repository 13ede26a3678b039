// The frame loop: one window message per pass, otherwise one frame (tick, hot reload, statistics,
// level change, message delivery, DT, every system's Update, sleep out the rest of 1/60 s). Main
// thread only. The loop never looks at `isGamePaused`; pausing is each system's business.
#pragma once

#include <cstdint>
#include <vector>

#include "Core/Bootstrapper/FrameStatistics.h"

namespace grindle {

class Database;
class GameTimer;
class LevelManager;
class MainWindow;
class MessageHandler;
class ResourceManager;
class ISystem;

// The frame budget, as the float the sleep rule computes with.
inline constexpr float kFrameSeconds = 0.016666668f;

// Whole milliseconds left of the frame budget after `elapsedSeconds`; 0 once the frame ran long.
uint32_t FrameSleepMilliseconds(double elapsedSeconds);

struct FrameLoopServices {
  Database& root;
  MessageHandler& messages;
  ResourceManager& resources;
  LevelManager& levels;
  MainWindow& window;
  const std::vector<ISystem*>& systems;
};

class FrameLoop {
 public:
  // A positive `fixedFrameSeconds` replaces the measured frame time in `DT` and every Update
  // (automation, for runs that must replay alike); the loop's pacing stays the same.
  explicit FrameLoop(const FrameLoopServices& services, double fixedFrameSeconds = 0.0)
      : services_(services), fixedFrameSeconds_(fixedFrameSeconds) {}

  // Runs until the quit message; with a non-negative `frameLimit`, also stops after that many
  // frames (automation only: the engine itself runs without a limit).
  void Run(int64_t frameLimit);

 private:
  // Takes one window message if one waits. Sets `quit` when it was the quit message.
  bool TakeWindowMessage(bool& quit);
  void RunFrame(GameTimer& timer);
  // F10-F12 (see Input/DebugKeys.h), from the window's key-down events.
  void OnDebugKey(int key);

  FrameLoopServices services_;
  FrameStatistics statistics_;
  double fixedFrameSeconds_;
};

}  // namespace grindle
