// The content tools' command lines: asking for help prints the usage and writes nothing; an
// unknown option is refused before any file is made.
#include <gtest/gtest.h>

#include <filesystem>

#include "ProcessRun.h"
#include "TempWorkDir.h"

namespace grindle {
namespace {

TEST(ToolCommandLine, HelpAndUnknownOptionsPrintTheUsageAndCreateNothing) {
  struct Case {
    const char* arguments;
    int status;
    const char* printed;
  };
  const Case cases[] = {{"--help", 0, "usage: "},
                        {"-h", 0, "usage: "},
                        {"--fast game", 2, "unknown option --fast\nusage: "},
                        {"", 2, "usage: "},
                        {"a b", 2, "usage: "}};
  for (const char* tool : {GRINDLE_TEXGEN, GRINDLE_SYNTH, GRINDLE_FONTBAKE, GRINDLE_MODELGEN}) {
    for (const Case& c : cases) {
      SCOPED_TRACE(std::string(tool) + " " + c.arguments);
      TempWorkDir dir;
      const ProcessResult run = RunProcess(std::string("'") + tool + "' " + c.arguments + " 2>&1");
      EXPECT_EQ(run.status, c.status);
      EXPECT_EQ(run.output.rfind(c.printed, 0), 0u) << run.output;
      EXPECT_TRUE(std::filesystem::is_empty(dir.path)) << "the tool wrote into its folder";
    }
  }
}

}  // namespace
}  // namespace grindle
