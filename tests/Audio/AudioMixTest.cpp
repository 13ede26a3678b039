// What reaches the speakers, checked on the mix OpenAL Soft's wave backend wrote.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "Audio/AudioSys.h"
#include "Audio/SoundBank.h"
#include "Audio/Stream.h"
#include "AudioTestRig.h"

namespace grindle::test {
namespace {

// Six 0.2 s steps of rising loudness: a restart shows as a fall back to the first step.
double Staircase(double t) { return 0.08 * (1.0 + std::floor(t / 0.2)); }
constexpr double kStaircaseSeconds = 1.2;

TEST(AudioMix, TitleThemePlaysFromStartAndLoopsWithoutAGap) {
  AudioRig rig;
  rig.AddTone("Music", "TitleTheme.wav", 0.25, [](double) { return 0.5; });
  rig.Start();
  rig.Run(0.7);
  const Mix mix = rig.Finish();

  const std::vector<Span> spans = mix.AudibleSpans();
  ASSERT_EQ(spans.size(), 1u) << "the looping title theme must not break off";
  EXPECT_GT(spans[0].Length(), 0.5) << "a 0.25 s theme heard for longer has looped";
  EXPECT_GT(mix.LevelIn(spans[0]), 0.05);
}

TEST(AudioMix, PlaySongOfThePlayingSongKeepsItGoingFromWhereItIs) {
  AudioRig rig;
  rig.AddTone("Music", "Staircase.ogg", kStaircaseSeconds, Staircase);
  rig.Start();
  rig.Messages().SendArgs("PlaySong", "Staircase", 0.0);
  rig.Run(0.5);
  rig.Messages().SendArgs("PlaySong", "Staircase", 0.0);
  rig.Run(1.2);
  const Mix mix = rig.Finish();

  const std::vector<Span> spans = mix.AudibleSpans();
  ASSERT_EQ(spans.size(), 1u);
  EXPECT_NEAR(spans[0].Length(), kStaircaseSeconds, 0.08) << "played once, start to end";
  // The level never falls back by more than window noise while the song plays.
  const std::vector<double>& levels = mix.Levels();
  const size_t first = static_cast<size_t>(spans[0].start / Mix::kWindow) + 3;
  const size_t last = static_cast<size_t>(spans[0].end / Mix::kWindow) - 3;
  double loudest = 0.0;
  for (size_t i = first; i < last; ++i) {
    EXPECT_GT(levels[i], loudest * 0.8) << "restarted at " << double(i) * Mix::kWindow << " s";
    loudest = std::max(loudest, levels[i]);
  }
  EXPECT_GT(loudest, 4.0 * levels[first]) << "the last step is six times the first";
}

TEST(AudioMix, StreamedSongIsHeardWholeThroughAFewSmallBuffers) {
  AudioRig rig;
  rig.AddTone("Music", "Staircase.wav", kStaircaseSeconds, Staircase);
  rig.Start();
  rig.Messages().SendArgs("PlaySong", "Staircase", 0.0);
  rig.Run(1.5);
  const Stream& stream = rig.Audio().Audio()->Bank().FindSong("Staircase")->Variant(0);
  const size_t peak = stream.PeakResidentFrames();
  const size_t total = stream.TotalFrames();
  const Mix mix = rig.Finish();

  EXPECT_EQ(total, static_cast<size_t>(kStaircaseSeconds * 48000));
  EXPECT_LE(peak, kStreamChunkFrames * kStreamBufferCount);
  EXPECT_LT(peak, total) << "the whole song was decoded at once";
  const std::vector<Span> spans = mix.AudibleSpans();
  ASSERT_EQ(spans.size(), 1u) << "a refill came too late or in the wrong place";
  EXPECT_NEAR(spans[0].Length(), kStaircaseSeconds, 0.08);
}

TEST(AudioMix, MuteSilencesMusicAndUnmuteRestoresTheConfiguredLevel) {
  AudioRig rig;
  rig.AddTone("Music", "Drone.wav", 0.3, [](double) { return 0.5; });
  rig.Start();
  rig.Messages().SendArgs("PlaySong", "Drone", 1.0, 0.5);  // started at half the configured level
  rig.Run(0.4);
  rig.Messages().Send("ToggleMusicMuteMSG");
  rig.Run(0.4);
  rig.Messages().Send("ToggleMusicMuteMSG");
  rig.Run(0.4);
  const Mix mix = rig.Finish();

  const std::vector<Span> spans = mix.AudibleSpans();
  ASSERT_EQ(spans.size(), 2u);
  const Span gap{spans[0].end, spans[1].start};
  EXPECT_GT(gap.Length(), 0.3);
  EXPECT_EQ(mix.PeakIn(gap), 0.0) << "muted music must be silent, not quiet";
  EXPECT_NEAR(mix.LevelIn(spans[1]) / mix.LevelIn(spans[0]), 2.0, 0.15)
      << "unmuting gives the configured volume, not the scale in force before";
}

// A looping effect plays until it is stopped, by name or together with all the others.
class AudioLoopStop : public testing::TestWithParam<const char*> {};

TEST_P(AudioLoopStop, LoopingSoundPlaysUntilStopped) {
  AudioRig rig;
  rig.AddTone("Sounds", "Hum.wav", 0.1, [](double) { return 0.4; });
  rig.Start();
  rig.Messages().SendArgs("PlaySound", "Hum", 0.0, 1.0, 1.0);
  rig.Run(0.6);
  rig.Messages().SendArgs(GetParam(), "Hum");
  rig.Run(0.3);
  const Mix mix = rig.Finish();

  const std::vector<Span> spans = mix.AudibleSpans();
  ASSERT_EQ(spans.size(), 1u);
  EXPECT_GT(spans[0].Length(), 0.5) << "a 0.1 s sound heard this long has looped";
  EXPECT_GT(double(mix.Levels().size()) * Mix::kWindow - spans[0].end, 0.2)
      << "it went on after being stopped";
}

INSTANTIATE_TEST_SUITE_P(ByNameOrAll, AudioLoopStop, testing::Values("StopSound", "StopAllSounds"));

// Only a loop value of exactly 1.0 loops a song.
class AudioSongLoop : public testing::TestWithParam<std::pair<double, bool>> {};

TEST_P(AudioSongLoop, OnlyExactlyOneLoops) {
  const auto [loop, isLooping] = GetParam();
  AudioRig rig;
  rig.AddTone("Music", "Jingle.wav", 0.2, [](double) { return 0.4; });
  rig.Start();
  rig.Messages().SendArgs("PlaySong", "Jingle", loop);
  rig.Run(0.6);
  const Mix mix = rig.Finish();

  const std::vector<Span> spans = mix.AudibleSpans();
  ASSERT_EQ(spans.size(), 1u);
  if (isLooping) {
    EXPECT_GT(spans[0].Length(), 0.45);
  } else {
    EXPECT_NEAR(spans[0].Length(), 0.2, 0.05);
  }
}

INSTANTIATE_TEST_SUITE_P(LoopValues, AudioSongLoop,
                         testing::Values(std::pair{1.0, true}, std::pair{0.5, false},
                                         std::pair{0.0, false}));

// The committed demo content: every file decodes, the title theme plays at start and the menu
// theme takes over when asked.
TEST(AudioMix, DemoContentLoadsAndItsThemesPlay) {
  AudioRig rig(GRINDLE_GAME_DIR);
  rig.Start();
  SoundBank& bank = rig.Audio().Audio()->Bank();
  EXPECT_NE(bank.FindSong("MenuTheme"), nullptr);
  EXPECT_NE(bank.FindSound("Jump"), nullptr);
  rig.Run(0.3);
  EXPECT_EQ(rig.Audio().Audio()->CurrentSong(), "TitleTheme");
  rig.Messages().SendArgs("PlaySong", 1.0, "MenuTheme");  // the window's order: loop, then name
  rig.Run(0.3);
  EXPECT_EQ(rig.Audio().Audio()->CurrentSong(), "MenuTheme");
  EXPECT_EQ(rig.Audio().Audio()->PlayingChannelCount(), 1) << "the title theme gave way";
  const Mix mix = rig.Finish();

  const std::vector<Span> spans = mix.AudibleSpans(0.01, 0.3);
  ASSERT_FALSE(spans.empty());
  EXPECT_GT(spans.front().Length(), 0.4);
}

}  // namespace
}  // namespace grindle::test
