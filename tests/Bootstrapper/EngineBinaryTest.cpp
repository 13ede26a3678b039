// The command line, and the real `grindle` binary run headless on the demo game and on broken game
// folders.
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <fstream>
#include <functional>
#include <memory>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

#include "BootstrapperKit.h"
#include "Core/Bootstrapper/CommandLine.h"
#include "DemoGameCopy.h"
#include "ProcessRun.h"

namespace grindle {
namespace {

bool Parse(std::vector<const char*> args, EngineOptions& options, std::string& error) {
  args.insert(args.begin(), "grindle");
  return ParseCommandLine(static_cast<int>(args.size()), args.data(), options, error);
}

// The other options are read in the runs of the binary below.
TEST(CommandLine, DefaultsScreenshotAndAutoplayAreReadAndUnitTestsAloneRunNoFrames) {
  EngineOptions plain, shot, tests, testsThenPlay, autoPlay;
  std::string error;
  ASSERT_TRUE(Parse({}, plain, error));
  EXPECT_EQ(plain.frameLimit, -1);
  EXPECT_EQ(plain.firstLevel, "SplashScreens");
  EXPECT_FALSE(plain.autoPlay);
  ASSERT_TRUE(Parse({"--autoplay"}, autoPlay, error));
  EXPECT_TRUE(autoPlay.autoPlay);
  ASSERT_TRUE(Parse({"--screenshot", "last.png"}, shot, error));
  EXPECT_EQ(shot.screenshotFile, "last.png");
  ASSERT_TRUE(Parse({"--run-unit-tests"}, tests, error));
  EXPECT_EQ(tests.frameLimit, 0);
  ASSERT_TRUE(Parse({"--run-unit-tests", "--frames", "3"}, testsThenPlay, error));
  EXPECT_EQ(testsThenPlay.frameLimit, 3);
  EngineOptions replay;
  EXPECT_EQ(plain.fixedFrameSeconds, 0.0);
  EXPECT_FALSE(plain.seed.has_value());
  ASSERT_TRUE(Parse({"--frame-time", "0.05", "--seed", "4294967295"}, replay, error));
  EXPECT_DOUBLE_EQ(replay.fixedFrameSeconds, 0.05);
  EXPECT_EQ(replay.seed, 4294967295u);
}

TEST(CommandLine, RejectsBadArgumentsNamingThem) {
  const std::vector<std::vector<const char*>> bad = {
      {"--frames"},       {"--frames", "-3"},     {"--frames", "10x"},  {"--level", ""},
      {"--fast"},         {"--frame-time", "0"},  {"--frame-time", "2"}, {"--frame-time", "x"},
      {"--seed", "-1"},   {"--seed", "4294967296"}, {"--seed", ""}};
  for (const auto& args : bad) {
    EngineOptions options;
    std::string error;
    EXPECT_FALSE(Parse(args, options, error)) << args[0];
    EXPECT_NE(error.find(args[0]), std::string::npos) << error;
  }
}

// Standard output only unless `withErrors`; the game runs headless without sound hardware. In
// sanitizer builds a leak at exit fails the run like any other error.
ProcessResult RunGrindle(const std::string& arguments, bool withErrors = false) {
  return RunProcess("SDL_VIDEODRIVER=offscreen ALSOFT_DRIVERS=null '" GRINDLE_BINARY "' " +
                    arguments + (withErrors ? " 2>&1" : " 2>/dev/null"));
}

// The first group of every line matching `pattern`.
std::vector<std::string> Matches(const std::string& output, const char* pattern) {
  const std::regex line(pattern);
  std::vector<std::string> found;
  std::istringstream in(output);
  std::smatch match;
  for (std::string text; std::getline(in, text);) {
    if (std::regex_match(text, match, line)) found.push_back(match[1]);
  }
  return found;
}

TEST(EngineBinary, RunsTheUnitTestsThenTheWholeLifeCycleInOrderOnTheRequestedLevel) {
  const ProcessResult run = RunGrindle(
      "--run-unit-tests --frames 3 --level Lobby --print-database --frame-time 0.25 "
      "--data '" GRINDLE_GAME_DIR "'");
  ASSERT_EQ(run.status, 0) << run.output;
  EXPECT_EQ(Matches(run.output, ".*\\[(PASSED)\\].*").size(), 19u);
  EXPECT_EQ(run.output.find("[FAILED]"), std::string::npos);
  EXPECT_GT(run.output.find("LoadAI"), run.output.rfind("[PASSED]"));

  // The colour reset that ends the unit test report opens the first life-cycle line.
  const std::vector<std::string> expected = {
      "LoadAI",         "LoadPhysics", "LoadNetworking", "LoadGraphics",    "LoadAudio",
      "LoadInput",      "StartAI",     "StartPhysics",   "StartNetworking", "StartGraphics",
      "StartInput",     "ExitAI",      "ExitPhysics",    "ExitNetworking",  "ExitGraphics",
      "ExitAudio",      "ExitInput",   "UnloadAI",       "UnloadPhysics",   "UnloadNetworking",
      "UnloadGraphics", "UnloadAudio", "UnloadInput"};
  EXPECT_EQ(Matches(run.output,
                    "(?:\033\\[0m)?((Load|Start|Exit|Unload)"
                    "(AI|Physics|Networking|Graphics|Audio|Input))"),
            expected)
      << run.output;

  EXPECT_NE(run.output.find("string (CurrentLevel) = Lobby"), std::string::npos) << run.output;
  EXPECT_NE(run.output.find("Database (Lobby) ="), std::string::npos);
  EXPECT_EQ(run.output.find("Database (SplashScreens) ="), std::string::npos);
  // Whatever the frames really took, each counted as the given time.
  EXPECT_NE(run.output.find("double (DT) = 0.250000"), std::string::npos);
}

TEST(EngineBinary, BrokenInvocationsFailWithAReason) {
  const ProcessResult badOption = RunGrindle("--frames many", true);
  EXPECT_EQ(badOption.status, 2);
  EXPECT_NE(badOption.output.find("--frames expects a whole number"), std::string::npos);

  // A folder without game data stops at the archetypes with the parser's assertion.
  TempWorkDir empty;
  const ProcessResult noData = RunGrindle("--frames 1 --data '" + empty.path.string() + "'", true);
  EXPECT_NE(noData.status, 0);
  EXPECT_NE(noData.output.find("Missing FileAssets/GameObjects/Archetypes.xml"), std::string::npos)
      << noData.output;
}

// A level that lacks an entry the engine reads: besides the assertion, standard error names the
// missing entry and the level file it belongs in.
TEST(EngineBinary, ANullHandleNamesTheMissingEntryAndItsLevelFile) {
  DemoGameCopy game(GRINDLE_GAME_DIR);
  std::string level = game.DemoLevel("Showcase");
  const std::string hasTexture = "<double name=\"HasTexture\">1</double>";
  level.erase(level.find(hasTexture), hasTexture.size());
  game.WriteLevel("NoTextureFlag", level);
  const ProcessResult run =
      RunGrindle("--frames 3 --level NoTextureFlag --data '" + game.path.string() + "'", true);
  EXPECT_NE(run.status, 0);
  EXPECT_NE(
      run.output.find("Missing database entry: "
                      "Levels.NoTextureFlag.GameObjects.Floor.Mesh.HasTexture (the last lookup "
                      "that found nothing), expected in Assets/Levels/NoTextureFlag.xml\n"),
      std::string::npos)
      << run.output;
  EXPECT_NE(run.output.find("DETAILS: Attempt to dereference null data pointer"),
            std::string::npos);
}

// A script stuck inside one C call holds the frame for ever: the first SIGTERM is a quit request
// the frame loop never reaches, the second ends the process at once.
TEST(EngineBinary, ASecondInterruptEndsAProcessStuckInAScript) {
  TempWorkDir game;
  game.Write("Assets/GameObjects/Archetypes.xml",
             "<Database name=\"GameObjectArchetypes\"></Database>\n");
  game.Write("Assets/Levels/LoadingScreen.xml", "<int name=\"Spinner\">1</int>\n");
  game.Write("Assets/Levels/Stuck.xml",
             "<Database name=\"GameObjects\"><Database name=\"Rock\"><Database name=\"Script\">\n"
             "<string name=\"FileName\">Stuck.lua</string>\n"
             "</Database></Database></Database>\n");
  game.Write("Scripts/Stuck.lua",
             "function Update() end function End() end\n"
             "function Start()\n  print('stuck now') io.stdout:flush()\n"
             "  string.find(string.rep('a', 30) .. 'b', string.rep('a*', 25) .. 'c')\nend\n");
  const std::string log = (game.path / "run.log").string();
  const pid_t child = fork();
  ASSERT_GE(child, 0);
  if (child == 0) {
    setenv("SDL_VIDEODRIVER", "offscreen", 1);
    setenv("ALSOFT_DRIVERS", "null", 1);
    freopen(log.c_str(), "w", stdout);
    dup2(STDOUT_FILENO, STDERR_FILENO);
    execl(GRINDLE_BINARY, GRINDLE_BINARY, "--data", game.path.c_str(), "--level", "Stuck",
          "--frames", "5", static_cast<char*>(nullptr));
    _exit(127);
  }
  const auto output = [&] { return ReadFile(log); };
  const auto waitFor = [&](auto done, int seconds) {
    for (int i = 0; i < seconds * 100; ++i, usleep(10'000)) {
      if (done()) return true;
    }
    return false;
  };
  int status = 0;
  bool isReaped = false;
  const auto ended = [&] {
    return isReaped = isReaped || waitpid(child, &status, WNOHANG) == child;
  };
  // A child that outlives a failed check is not left running.
  const std::unique_ptr<void, std::function<void(void*)>> reaper(&status, [&](void*) {
    if (!isReaped) kill(child, SIGKILL), waitpid(child, nullptr, 0);
  });
  ASSERT_TRUE(waitFor([&] { return output().find("stuck now") != std::string::npos; }, 15))
      << output();
  kill(child, SIGTERM);
  EXPECT_FALSE(waitFor(ended, 1)) << "the first interrupt only asks the frame loop to quit";
  kill(child, SIGTERM);
  ASSERT_TRUE(waitFor(ended, 5));
  EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGTERM) << status;
  EXPECT_NE(output().find("Second interrupt: ending at once"), std::string::npos) << output();
}

}  // namespace
}  // namespace grindle
