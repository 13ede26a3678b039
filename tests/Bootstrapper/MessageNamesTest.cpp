// Holds the whole engine to its message catalogue: once every system has started, each name that
// anything listens to must be a catalogued one (a misspelt name would be a message nobody hears).
#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>

#include "Core/Bootstrapper/Engine.h"
#include "Core/Database.h"
#include "Core/MessageHandler.h"
#include "Core/Messages/Catalogue.h"
#include "Core/WellKnownKeys.h"

namespace grindle {
namespace {

// Runs in a child: the engine installs and removes the process's memory registry.
int UncataloguedListenedNames() {
  setenv("SDL_VIDEODRIVER", "offscreen", 1);
  setenv("ALSOFT_DRIVERS", "null", 1);
  std::filesystem::current_path(GRINDLE_GAME_DIR);
  EngineOptions options;
  options.firstLevel = "Arena";
  options.frameLimit = 0;
  int missing = -1;
  RunEngine(options, [&missing](const std::vector<ISystem*>& systems, Database& root) {
    const Database& services = *root.Find<Database>("Systems");
    const MessageHandler& handler = **services.Find<MessageHandler*>("MessageHandler");
    missing = 0;
    for (std::string_view name : handler.ListenedNames()) {
      if (msg::FindMessage(name) != nullptr) continue;
      std::fprintf(stderr, "listened to but not catalogued: \"%.*s\"\n",
                   static_cast<int>(name.size()), name.data());
      ++missing;
    }
    return systems;
  });
  return missing;
}

TEST(MessageNames, EveryNameTheStartedEngineListensToIsCatalogued) {
  EXPECT_EXIT(std::exit(UncataloguedListenedNames()), testing::ExitedWithCode(0), "");
}

}  // namespace
}  // namespace grindle
