#include "Core/Bootstrapper/CommandLine.h"

#include <charconv>
#include <cstring>

namespace grindle {

namespace {

bool ParseCount(const char* text, int64_t& value) {
  const char* end = text + std::strlen(text);
  const auto [last, status] = std::from_chars(text, end, value);
  return status == std::errc() && last == end && value >= 0;
}

// A frame time for replays: positive and at most a second.
bool ParseFrameTime(const char* text, double& seconds) {
  const char* end = text + std::strlen(text);
  const auto [last, status] = std::from_chars(text, end, seconds);
  return status == std::errc() && last == end && seconds > 0.0 && seconds <= 1.0;
}

bool ParseSeed(const char* text, std::optional<uint32_t>& seed) {
  const char* end = text + std::strlen(text);
  uint32_t value = 0;
  const auto [last, status] = std::from_chars(text, end, value);
  if (status != std::errc() || last != end || last == text) return false;
  seed = value;
  return true;
}

}  // namespace

const char* UsageText() {
  return "usage: grindle [options]\n"
         "  --frames N          quit after N frames\n"
         "  --level NAME        first level instead of SplashScreens\n"
         "  --run-unit-tests    run the built-in unit test drivers at start-up (implies --frames "
         "0\n"
         "                      unless --frames is given); a failure stops with an assertion\n"
         "  --print-database    print the whole database when the frame loop ends\n"
         "  --data DIR          run with DIR as the working directory (the game data folder)\n"
         "  --screenshot FILE   ask the renderer to save the last frame as a PNG\n"
         "  --check-level NAME  check the level NAME and the archetypes without running the game:\n"
         "                      'file:line: message' for each problem, exit status 1 if any\n"
         "  --autoplay          set GlobalVariables.AutoPlay to 1 before the first level: the game\n"
         "                      fills every player slot with the computer and plays by itself\n"
         "  --frame-time SEC    count every frame as SEC seconds (above 0, at most 1) instead of\n"
         "                      the measured time, whatever the machine's speed\n"
         "  --seed N            start the random generator from N instead of the clock; with\n"
         "                      --frame-time a run plays the same way every time\n"
         "  --help              this text\n";
}

bool ParseCommandLine(int argc, const char* const* argv, EngineOptions& options,
                      std::string& error) {
  bool hasFrameLimit = false;
  for (int i = 1; i < argc; ++i) {
    const std::string option = argv[i];
    const bool takesValue = option == "--frames" || option == "--level" || option == "--data" ||
                            option == "--screenshot" || option == "--check-level" ||
                            option == "--frame-time" || option == "--seed";
    if (takesValue && i + 1 >= argc) {
      error = option + " expects a value";
      return false;
    }
    if (option == "--frames") {
      if (!ParseCount(argv[++i], options.frameLimit)) {
        error = std::string("--frames expects a whole number of frames, not '") + argv[i] + "'";
        return false;
      }
      hasFrameLimit = true;
    } else if (option == "--frame-time") {
      if (!ParseFrameTime(argv[++i], options.fixedFrameSeconds)) {
        error = std::string("--frame-time expects seconds above 0 and at most 1, not '") + argv[i] +
                "'";
        return false;
      }
    } else if (option == "--seed") {
      if (!ParseSeed(argv[++i], options.seed)) {
        error = std::string("--seed expects a whole number from 0 to 4294967295, not '") +
                argv[i] + "'";
        return false;
      }
    } else if (option == "--level") {
      options.firstLevel = argv[++i];
    } else if (option == "--data") {
      options.dataDir = argv[++i];
    } else if (option == "--check-level") {
      options.checkLevel = argv[++i];
    } else if (option == "--screenshot") {
      options.screenshotFile = argv[++i];
    } else if (option == "--run-unit-tests") {
      options.runUnitTests = true;
    } else if (option == "--autoplay") {
      options.autoPlay = true;
    } else if (option == "--print-database") {
      options.printDatabase = true;
    } else if (option == "--help" || option == "-h") {
      options.showHelp = true;
    } else {
      error = "unknown option '" + option + "'";
      return false;
    }
  }
  if (options.firstLevel.empty()) {
    error = "--level expects a level name";
    return false;
  }
  if (options.runUnitTests && !hasFrameLimit) options.frameLimit = 0;
  return true;
}

}  // namespace grindle
