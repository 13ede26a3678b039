// What reaches the speakers, checked on the mix OpenAL Soft's wave backend wrote; and what happens
// when nothing can: bad sound files stop the start-up with the audio system's assertion and the
// file's name, while a machine without any sound output still runs the game, silently, with
// voice-over timing intact.
#include <gtest/gtest.h>

#include "AudioTestRig.h"
#include "TestOutput.h"

namespace grindle::test {
namespace {

// Six 0.2 s steps of rising loudness: a restart shows as a fall back to the first step.
double Staircase(double t) { return 0.08 * (1.0 + std::floor(t / 0.2)); }
constexpr double kStaircaseSeconds = 1.2;

// A streamed Vorbis song asked for again while it plays goes on from where it is, through a few
// small buffers refilled in time, and ends: only a loop value of exactly 1.0 loops.
TEST(AudioMix, StreamedSongAskedForAgainPlaysOnOnceThroughAFewSmallBuffers) {
  AudioRig rig;
  rig.AddTone("Music/Staircase.ogg", kStaircaseSeconds, Staircase).Start();
  rig.Send("PlaySong", "Staircase", 0.5).Run(0.5);
  rig.Send("PlaySong", "Staircase", 0.5).Run(1.0);
  const Stream& stream = rig.Sys().Bank().FindSong("Staircase")->Variant(0);
  EXPECT_EQ(stream.TotalFrames(), static_cast<size_t>(kStaircaseSeconds * kRate));
  EXPECT_LE(stream.PeakResidentFrames(), kStreamChunkFrames * kStreamBufferCount);
  EXPECT_LT(stream.PeakResidentFrames(), stream.TotalFrames()) << "decoded whole at once";
  const Mix mix = rig.Finish();

  const std::vector<Span> spans = mix.AudibleSpans();
  ASSERT_EQ(spans.size(), 1u) << "a refill came too late or in the wrong place";
  EXPECT_NEAR(spans[0].Length(), kStaircaseSeconds, 0.08) << "played once, start to end";
  // The level never falls back by more than window noise while the song plays.
  const size_t first = static_cast<size_t>(spans[0].start / Mix::kWindow) + 3;
  const size_t last = static_cast<size_t>(spans[0].end / Mix::kWindow) - 3;
  double loudest = 0.0;
  for (size_t i = first; i < last; ++i) {
    EXPECT_GT(mix.levels[i], loudest * 0.8) << "restarted at " << double(i) * Mix::kWindow << " s";
    loudest = std::max(loudest, mix.levels[i]);
  }
  EXPECT_GT(loudest, 4.0 * mix.levels[first]) << "the last step is six times the first";
}

TEST(AudioMix, MuteSilencesMusicAndUnmuteRestoresTheConfiguredLevel) {
  AudioRig rig;
  rig.AddTone("Music/Drone.wav", 0.3, 0.5).Start();
  rig.Send("PlaySong", "Drone", 1.0, 0.5).Run(0.4);  // started at half the configured level
  rig.Send("ToggleMusicMuteMSG").Run(0.4);
  rig.Send("ToggleMusicMuteMSG").Run(0.4);
  const Mix mix = rig.Finish();

  const std::vector<Span> spans = mix.AudibleSpans();
  ASSERT_EQ(spans.size(), 2u);
  const Span gap{spans[0].end, spans[1].start};
  EXPECT_GT(gap.Length(), 0.3);
  EXPECT_EQ(mix.Level(gap), 0.0) << "muted music must be silent, not quiet";
  EXPECT_NEAR(mix.LevelIn(spans[1]) / mix.LevelIn(spans[0]), 2.0, 0.15)
      << "unmuting gives the configured volume, not the scale in force before";
}

TEST(AudioMix, LoopingSoundPlaysUntilStoppedByNameOrWithAllTheOthers) {
  AudioRig rig;
  rig.AddTone("Sounds/Hum.wav", 0.1, 0.4).Start();
  for (const char* stop : {"StopSound", "StopAllSounds"}) {
    rig.Send("PlaySound", "Hum", 0.0, 1.0, 1.0).Run(0.6);
    rig.Send(stop, "Hum").Run(0.3);
  }
  const Mix mix = rig.Finish();

  const std::vector<Span> spans = mix.AudibleSpans();
  ASSERT_EQ(spans.size(), 2u);
  for (const Span& span : spans) EXPECT_GT(span.Length(), 0.5) << "a 0.1 s sound has looped";
  EXPECT_GT(spans[1].start - spans[0].end, 0.2) << "it went on after StopSound";
  EXPECT_GT(double(mix.levels.size()) * Mix::kWindow - spans[1].end, 0.2)
      << "it went on after StopAllSounds";
}

// Effects are decoded when first played, not at start. A Vorbis effect (a float source) is still
// scaled up to its own loudest sample: a quiet one plays as loud as a full-scale WAV.
TEST(AudioMix, EffectsDecodeWhenFirstPlayedAndQuietVorbisStillPlaysAtFullScale) {
  AudioRig rig;
  rig.AddTone("Sounds/Quiet.ogg", 0.3, 0.25).AddTone("Sounds/Loud.wav", 0.3, 0.99).Start();
  const auto decoded = [&rig](const char* name) {
    return rig.Sys().Bank().FindSound(name)->front().sUndecodedPath.empty();
  };
  EXPECT_FALSE(decoded("Quiet"));
  EXPECT_FALSE(decoded("Loud"));
  rig.Send("PlaySound", "Quiet", 0.0).Run(0.5);
  EXPECT_TRUE(decoded("Quiet"));
  EXPECT_FALSE(decoded("Loud"));
  rig.Send("PlaySound", "Loud", 0.0).Run(0.5);
  const Mix mix = rig.Finish();

  const std::vector<Span> spans = mix.AudibleSpans();
  ASSERT_EQ(spans.size(), 2u);
  EXPECT_NEAR(spans[0].Length(), 0.3, 0.05);
  EXPECT_NEAR(mix.LevelIn(spans[0]) / mix.LevelIn(spans[1]), 1.0, 0.1);
}

// The committed demo content: every file decodes, the title theme plays at start and the menu
// theme takes over when asked.
TEST(AudioMix, DemoContentLoadsAndItsThemesPlay) {
  AudioRig rig(GRINDLE_GAME_DIR);
  rig.Start();
  EXPECT_NE(rig.Sys().Bank().FindSound("Jump"), nullptr);
  rig.Run(0.3);
  EXPECT_EQ(rig.Sys().CurrentSong(), "TitleTheme");
  rig.Send("PlaySong", 1.0, "MenuTheme").Run(0.3);  // the window's order: loop, then name
  EXPECT_EQ(rig.Sys().CurrentSong(), "MenuTheme");
  EXPECT_EQ(rig.Sys().PlayingChannelCount(), 1) << "the title theme gave way";

  const std::vector<Span> spans = rig.Finish().AudibleSpans(0.01, 0.3);
  ASSERT_FALSE(spans.empty());
  EXPECT_GT(spans.front().Length(), 0.4);
}

TEST(AudioBadFileDeathTest, UndecodableFileStopsStartNamingTheFile) {
  const std::pair<std::string, std::string> folders[] = {{"Sounds", "Failed to allocate sound"},
                                                         {"VO", "Failed to allocate VO"},
                                                         {"Music", "Failed to allocate song"}};
  for (const auto& [folder, details] : folders) {
    SCOPED_TRACE(folder);
    EXPECT_DEATH(
        {
          StdoutToStderr();
          AudioRig rig;
          rig.AddTone("Sounds/Fine.wav", 0.05, 0.1);
          rig.AddFile(folder + "/Broken.wav", "RIFF, but not really a sound").Start();
        },
        "cannot decode \"[^\"]*/Assets/Audio/" + folder + "/Broken\\.wav\"(.|\n)*DETAILS: " +
            details + "(.|\n)*The expression result != AL_NO_ERROR failed\\.");
  }
}

// OpenAL reads its driver list once per process, so each case runs in a child of its own.
TEST(AudioNoOutput, GameRunsAndLinesStillFinish) {
  const std::pair<const char*, std::string> outputs[] = {
      {"null", "LoadAudio"}, {"no-such-backend", "no output device, mixing silently"}};
  for (const auto& [drivers, notice] : outputs) {
    SCOPED_TRACE(drivers);
    EXPECT_EXIT(
        {
          StdoutToStderr();
          setenv("ALSOFT_DRIVERS", drivers, 1);
          {
            // Scoped so that the rig is gone before exit, which skips the destructors.
            AudioRig rig;
            rig.AddTone("VO/Line.wav", 0.1).AddTone("Music/TitleTheme.wav", 0.2);
            rig.Track("CurrentVOFinished").Start();
            rig.Send("PlayVO", "Line").Run(0.3);
            std::printf("finished %d, title %d\n", rig.counts["CurrentVOFinished"],
                        rig.Sys().IsMusicPlaying() ? 1 : 0);
          }
          std::exit(0);
        },
        testing::ExitedWithCode(0), notice + "(.|\n)*finished 1, title 1");
  }
}

}  // namespace
}  // namespace grindle::test
