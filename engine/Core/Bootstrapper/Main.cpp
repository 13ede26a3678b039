// The `grindle` entry point: reads the automation options, moves to the game data folder when
// asked, and runs the engine (or only checks a level's files).
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <string>

#include "Core/Bootstrapper/Engine.h"
#include "levelcheck/LevelCheck.h"

int main(int argc, char** argv) {
  grindle::EngineOptions options;
  std::string error;
  if (!grindle::ParseCommandLine(argc, argv, options, error)) {
    std::fprintf(stderr, "grindle: %s\n%s", error.c_str(), grindle::UsageText());
    return 2;
  }
  if (options.showHelp) {
    std::fputs(grindle::UsageText(), stdout);
    return 0;
  }
  if (!options.dataDir.empty() && chdir(options.dataDir.c_str()) != 0) {
    std::fprintf(stderr, "grindle: cannot use '%s' as the working directory: %s\n",
                 options.dataDir.c_str(), std::strerror(errno));
    return 2;
  }
  if (!options.checkLevel.empty()) return grindle::levelcheck::CheckLevel(options.checkLevel);
  return grindle::RunEngine(options);
}
