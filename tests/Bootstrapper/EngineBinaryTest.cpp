// Runs the real `grindle` binary headless on the demo game and on broken game folders.
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <array>
#include <cstdio>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

#include "TempWorkDir.h"

namespace {

struct RunResult {
  int status = -1;
  std::string output;
};

// Standard output only unless `withErrors`; the game runs headless without sound hardware. In
// sanitizer builds a leak at exit fails the run like any other error.
RunResult RunGrindle(const std::string& arguments, bool withErrors = false) {
  const std::string command =
      "SDL_VIDEODRIVER=offscreen ALSOFT_DRIVERS=null '" GRINDLE_BINARY "' " +
      arguments + (withErrors ? " 2>&1" : " 2>/dev/null");
  RunResult result;
  FILE* pipe = popen(command.c_str(), "r");
  if (pipe == nullptr) return result;
  std::array<char, 4096> buffer;
  size_t read = 0;
  while ((read = fread(buffer.data(), 1, buffer.size(), pipe)) > 0) result.output.append(buffer.data(), read);
  const int status = pclose(pipe);
  result.status = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
  return result;
}

std::vector<std::string> LifeCycleLines(const std::string& output) {
  static const std::regex line("(Load|Start|Exit|Unload)(AI|Physics|Networking|Graphics|Audio|Input)");
  std::vector<std::string> lines;
  std::istringstream in(output);
  for (std::string text; std::getline(in, text);) {
    if (std::regex_match(text, line)) lines.push_back(text);
  }
  return lines;
}

TEST(EngineBinary, RunsTheWholeLifeCycleInOrderAndExitsCleanly) {
  const RunResult run = RunGrindle("--frames 5 --data '" GRINDLE_GAME_DIR "'");
  ASSERT_EQ(run.status, 0) << run.output;
  const std::vector<std::string> expected = {
      "LoadAI",   "LoadPhysics",   "LoadNetworking",   "LoadGraphics",   "LoadAudio",   "LoadInput",
      "StartAI",  "StartPhysics",  "StartNetworking",  "StartGraphics",  "StartInput",
      "ExitAI",   "ExitPhysics",   "ExitNetworking",   "ExitGraphics",   "ExitAudio",   "ExitInput",
      "UnloadAI", "UnloadPhysics", "UnloadNetworking", "UnloadGraphics", "UnloadAudio", "UnloadInput"};
  EXPECT_EQ(LifeCycleLines(run.output), expected) << run.output;
}

TEST(EngineBinary, StartsOnTheRequestedLevelAndDumpsTheDatabaseAtExit) {
  const RunResult run = RunGrindle("--frames 3 --level MainMenu --print-database --data '" GRINDLE_GAME_DIR "'");
  ASSERT_EQ(run.status, 0) << run.output;
  EXPECT_NE(run.output.find("string (CurrentLevel) = MainMenu"), std::string::npos) << run.output;
  EXPECT_NE(run.output.find("Database (MainMenu) ="), std::string::npos);
  EXPECT_EQ(run.output.find("Database (SplashScreens) ="), std::string::npos);
}

TEST(EngineBinary, RunsTheBuiltInUnitTestsBeforeAnySystemLoads) {
  const RunResult run = RunGrindle("--run-unit-tests --data '" GRINDLE_GAME_DIR "'");
  ASSERT_EQ(run.status, 0) << run.output;
  size_t passed = 0;
  for (size_t at = run.output.find("[PASSED]"); at != std::string::npos;
       at = run.output.find("[PASSED]", at + 1)) {
    ++passed;
  }
  EXPECT_EQ(passed, 19u);
  EXPECT_EQ(run.output.find("[FAILED]"), std::string::npos);
  EXPECT_GT(run.output.find("LoadAI"), run.output.rfind("[PASSED]"));
  EXPECT_NE(run.output.find("UnloadInput"), std::string::npos);
}

TEST(EngineBinary, BrokenInvocationsFailWithAReason) {
  const RunResult badOption = RunGrindle("--frames many", true);
  EXPECT_EQ(badOption.status, 2);
  EXPECT_NE(badOption.output.find("--frames expects a whole number"), std::string::npos);

  // A folder without game data stops at the archetypes with the parser's assertion.
  TempWorkDir empty;
  const RunResult noData = RunGrindle("--frames 1 --data '" + empty.Path().string() + "'", true);
  EXPECT_NE(noData.status, 0);
  EXPECT_NE(noData.output.find("Missing FileAssets/GameObjects/Archetypes.xml"), std::string::npos)
      << noData.output;
}

}  // namespace
