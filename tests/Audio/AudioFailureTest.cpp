// Bad sound files stop the start-up with the audio system's assertion and the file's name; a
// machine without any sound output still runs the game, silently, with voice-over timing intact.
#include <gtest/gtest.h>

#include <cstdlib>

#include "Audio/AudioSys.h"
#include "AudioTestRig.h"
#include "TestOutput.h"

namespace grindle::test {
namespace {

struct BadFolder {
  const char* folder;
  const char* details;
};

class AudioBadFileDeathTest : public testing::TestWithParam<BadFolder> {};

TEST_P(AudioBadFileDeathTest, UndecodableFileStopsStartNamingTheFile) {
  const BadFolder bad = GetParam();
  auto startWithBrokenFile = [&bad] {
    StdoutToStderr();
    AudioRig rig;
    rig.AddTone("Sounds", "Fine.wav", 0.05, [](double) { return 0.1; });
    rig.AddFile(bad.folder, "Broken.wav", "RIFF, but not really a sound");
    rig.Start();
  };
  EXPECT_DEATH(startWithBrokenFile(), std::string("cannot decode \"[^\"]*/Assets/Audio/") +
                                          bad.folder +
                                          "/Broken\\.wav\"(.|\n)*DETAILS: " + bad.details +
                                          "(.|\n)*The expression result != AL_NO_ERROR failed\\.");
}

INSTANTIATE_TEST_SUITE_P(Folders, AudioBadFileDeathTest,
                         testing::Values(BadFolder{"Sounds", "Failed to allocate sound"},
                                         BadFolder{"VO", "Failed to allocate VO"},
                                         BadFolder{"Music", "Failed to allocate song"}),
                         [](const testing::TestParamInfo<BadFolder>& info) {
                           return std::string(info.param.folder);
                         });

// OpenAL reads its driver list once per process, so each case runs in a child of its own.
struct NoOutput {
  const char* drivers;
  const char* notice;
};

class AudioNoOutputTest : public testing::TestWithParam<NoOutput> {};

TEST_P(AudioNoOutputTest, GameRunsAndLinesStillFinish) {
  const NoOutput output = GetParam();
  auto runWithoutSpeakers = [&output] {
    StdoutToStderr();
    setenv("ALSOFT_DRIVERS", output.drivers, 1);
    int finished = 0;
    bool isTitlePlaying = false;
    {
      AudioRig rig;
      rig.AddTone("VO", "Line.wav", 0.1, [](double) { return 0.3; });
      rig.AddTone("Music", "TitleTheme.wav", 0.2, [](double) { return 0.3; });
      rig.Track("CurrentVOFinished");
      rig.Start();
      rig.Messages().SendArgs("PlayVO", "Line");
      rig.Run(0.3);
      isTitlePlaying = rig.Audio().Audio()->IsMusicPlaying();
      finished = rig.Count("CurrentVOFinished");
      rig.Finish();
    }
    std::printf("finished %d, title %d\n", finished, isTitlePlaying ? 1 : 0);
    std::exit(finished == 1 && isTitlePlaying ? 0 : 1);
  };
  EXPECT_EXIT(runWithoutSpeakers(), testing::ExitedWithCode(0),
              std::string(output.notice) + "(.|\n)*finished 1, title 1");
}

INSTANTIATE_TEST_SUITE_P(
    Drivers, AudioNoOutputTest,
    testing::Values(NoOutput{"null", "LoadAudio"},
                    NoOutput{"no-such-backend", "no output device, mixing silently"}),
    [](const testing::TestParamInfo<NoOutput>& info) {
      return std::string(info.param.drivers[0] == 'n' && info.param.drivers[1] == 'u' ? "Null"
                                                                                      : "None");
    });

}  // namespace
}  // namespace grindle::test
