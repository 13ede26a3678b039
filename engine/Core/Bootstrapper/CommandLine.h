// The automation options of the `grindle` binary. With no argument the engine behaves exactly as
// it always does (first level "SplashScreens", no frame limit, working directory unchanged); each
// option only adds a limit or an extra step for scripts and tests.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace grindle {

struct EngineOptions {
  int64_t frameLimit = -1;
  std::string firstLevel = "SplashScreens";
  bool runUnitTests = false;
  bool printDatabase = false;
  std::string dataDir;
  std::string screenshotFile;
  // The game plays itself: root GlobalVariables.AutoPlay is 1.0 before the first level loads.
  bool autoPlay = false;
  // Replaying a run: every frame counts as `fixedFrameSeconds` (0: the measured time) and the
  // random generator starts from `seed` instead of the clock.
  double fixedFrameSeconds = 0.0;
  std::optional<uint32_t> seed;
  bool showHelp = false;
  std::string checkLevel;  // check this level's files instead of running the game
};

// Fills `options`; on a bad argument returns false with `error` naming it and what was expected.
bool ParseCommandLine(int argc, const char* const* argv, EngineOptions& options,
                      std::string& error);

const char* UsageText();

}  // namespace grindle
