#include <gtest/gtest.h>

#include <vector>

#include "Core/Bootstrapper/CommandLine.h"

namespace grindle {
namespace {

bool Parse(std::vector<const char*> args, EngineOptions& options, std::string& error) {
  args.insert(args.begin(), "grindle");
  return ParseCommandLine(static_cast<int>(args.size()), args.data(), options, error);
}

TEST(CommandLine, NoArgumentKeepsTheEngineDefaults) {
  EngineOptions options;
  std::string error;
  ASSERT_TRUE(Parse({}, options, error));
  EXPECT_EQ(options.frameLimit, -1);
  EXPECT_EQ(options.firstLevel, "SplashScreens");
  EXPECT_FALSE(options.runUnitTests);
  EXPECT_FALSE(options.printDatabase);
  EXPECT_TRUE(options.dataDir.empty());
}

TEST(CommandLine, ReadsEveryOptionAndUnitTestsAloneRunNoFrames) {
  EngineOptions options;
  std::string error;
  ASSERT_TRUE(Parse({"--frames", "600", "--level", "Arena", "--print-database", "--data", "game",
                     "--screenshot", "last.png"},
                    options, error));
  EXPECT_EQ(options.frameLimit, 600);
  EXPECT_EQ(options.firstLevel, "Arena");
  EXPECT_TRUE(options.printDatabase);
  EXPECT_EQ(options.dataDir, "game");
  EXPECT_EQ(options.screenshotFile, "last.png");

  EngineOptions tests;
  ASSERT_TRUE(Parse({"--run-unit-tests"}, tests, error));
  EXPECT_EQ(tests.frameLimit, 0);
  EngineOptions testsThenPlay;
  ASSERT_TRUE(Parse({"--run-unit-tests", "--frames", "3"}, testsThenPlay, error));
  EXPECT_EQ(testsThenPlay.frameLimit, 3);
}

TEST(CommandLine, RejectsBadArgumentsNamingThem) {
  const std::vector<std::vector<const char*>> bad = {
      {"--frames"}, {"--frames", "-3"}, {"--frames", "10x"}, {"--level", ""}, {"--fast"}};
  for (const auto& args : bad) {
    EngineOptions options;
    std::string error;
    EXPECT_FALSE(Parse(args, options, error)) << args[0];
    EXPECT_NE(error.find(args[0]), std::string::npos) << error;
  }
}

}  // namespace
}  // namespace grindle
