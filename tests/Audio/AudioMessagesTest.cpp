// The audio system's message protocol end to end: voice-over notices, pausing and the level-driven
// resume, positional sound, sound names and their variants, names nobody loaded, the mute keys.
#include <SDL.h>
#include <gtest/gtest.h>

#include "AudioTestRig.h"
#include "Input/Keyboard.h"

namespace grindle::test {
namespace {

TEST(AudioVoiceOver, EveryLineStartsAndFinishesExactlyOnce) {
  AudioRig rig;
  rig.AddTone("VO/Greeting.wav", 0.15).Track("CurrentVOStarted").Track("CurrentVOFinished");
  rig.Start();
  // Lines that play out get a generous second: the mixer runs late on a loaded machine.
  rig.Send("PlayVO", "Greeting").Run(1.0);
  EXPECT_EQ(rig.counts["CurrentVOStarted"], 1);
  EXPECT_EQ(rig.counts["CurrentVOFinished"], 1) << "a line that plays out";

  // A line cut short by the next one, and a line stopped by "StopVO"; none notices twice.
  rig.Send("PlayVO", "Greeting").Run(0.05);
  rig.Send("PlayVO", "Greeting").Run(1.0);
  rig.Send("PlayVO", "Greeting").Run(0.03);
  rig.Send("StopVO").Run(0.05);
  EXPECT_EQ(rig.counts["CurrentVOStarted"], 4);
  EXPECT_EQ(rig.counts["CurrentVOFinished"], 4);
  EXPECT_FALSE(rig.Sys().IsVoicePlaying());
}

TEST(AudioPause, TitleThemeLoopsUntilPausedAndResumesOnlyWhenAMenuLevelIsActivated) {
  AudioRig rig;
  auto level = rig.root.Add<std::string>("CurrentLevel", "Level1");
  rig.AddTone("Music/TitleTheme.wav", 0.25, 0.4).Start();
  rig.Run(0.6);
  rig.Send("PauseAudio").Run(0.2);
  rig.Send("WindowActivated").Run(0.2);  // in a game level the music stays held
  *level = "LevelTitleScreen";
  rig.Send("WindowActivated").Run(0.2);
  const Mix mix = rig.Finish();

  const std::vector<Span> spans = mix.AudibleSpans();
  ASSERT_EQ(spans.size(), 2u);
  EXPECT_GT(spans[0].Length(), 0.5) << "a 0.25 s theme heard for longer has looped, gapless";
  EXPECT_GT(spans[1].start - spans[0].end, 0.3) << "resumed in a game level";
  EXPECT_LT(spans[1].start - spans[0].end, 0.55) << "not resumed on the title screen";
  EXPECT_NEAR(mix.LevelIn(spans[1]), mix.LevelIn(spans[0]), 0.1 * mix.LevelIn(spans[0]));
}

TEST(AudioPause, GamePausedHoldsEffectsWhileTheMusicPlaysOn) {
  AudioRig rig;
  rig.AddTone("Sounds/Engine.wav", 0.1, 0.4).AddTone("Music/TitleTheme.wav", 0.3, 0.4).Start();
  rig.Send("PlaySound", "Engine", 0.0, 1.0, 1.0).Run(0.15);
  rig.Send("ToggleMusicMuteMSG").Run(0.15);  // the music out of the way: only the effect is heard
  rig.Send("GamePaused").Run(0.2);
  rig.Send("GameUnpaused").Run(0.2);
  EXPECT_EQ(rig.Sys().CurrentSong(), "TitleTheme");
  EXPECT_TRUE(rig.Sys().IsMusicPlaying()) << "muted music still holds its place";

  const std::vector<Span> spans = rig.Finish().AudibleSpans();
  ASSERT_EQ(spans.size(), 2u) << "effect held while paused, resumed after";
  EXPECT_GT(spans[1].start - spans[0].end, 0.12);
  EXPECT_LT(spans[1].start - spans[0].end, 0.35);
}

TEST(AudioPositional, SoundsComeFromWhereTheyAreSeenFromTheListener) {
  AudioRig rig;
  rig.AddTone("Sounds/Ping.wav", 0.2, 0.5).Start();
  rig.Send("Update3DSoundListener", 0.0, 0.0, 0.0, 0.0, 0.0, -1.0);
  rig.Send("PlaySoundAt", "Ping", 3.0, 0.0, 0.0).Run(0.35);
  // Turned round, the same point is on the other side.
  rig.Send("Update3DSoundListener", 0.0, 0.0, 0.0, 0.0, 0.0, 1.0);
  rig.Send("PlaySoundAt", "Ping", 3.0, 0.0, 0.0).Run(0.35);
  const Mix mix = rig.Finish();

  const std::vector<Span> spans = mix.AudibleSpans();
  ASSERT_EQ(spans.size(), 2u);
  EXPECT_GT(mix.Rms(1, spans[0]), 2.0 * mix.Rms(0, spans[0])) << "right of a listener facing -z";
  EXPECT_GT(mix.Rms(0, spans[1]), 2.0 * mix.Rms(1, spans[1])) << "left once it faces +z";
}

TEST(AudioNames, FileNamesLoseExtensionAndVariantNumberAndVariantsArePickedAtRandom) {
  for (const auto& [file, name] : {std::pair{"Jump.wav", "Jump"},
                                   {"Jump_2.wav", "Jump"},
                                   {"Jump_12.ogg", "Jump"},
                                   {"Level_1_Intro.ogg", "Level_1_Intro"},
                                   {"Jump_.wav", "Jump_"},
                                   {"_2.wav", "_2"},
                                   {"Menu.Theme.ogg", "Menu.Theme"},
                                   {"README", "README"}}) {
    EXPECT_EQ(SoundNameOf(file), name);
  }

  AudioRig rig;
  for (const char* file : {"Sounds/Jump.wav", "Sounds/Jump_2.wav", "Sounds/Jump_Big.wav"}) {
    rig.AddTone(file, 0.05, 0.2);
  }
  rig.AddTone("Music/Battle.wav", 0.1, 0.2).AddTone("Music/Battle_2.wav", 0.1, 0.2).Start();
  SoundBank& bank = rig.Sys().Bank();
  ASSERT_NE(bank.FindSound("Jump"), nullptr);
  EXPECT_EQ(bank.FindSound("Jump")->size(), 2u);
  ASSERT_NE(bank.FindSound("Jump_Big"), nullptr);
  EXPECT_EQ(bank.FindSound("Jump_Big")->size(), 1u);
  ASSERT_NE(bank.FindSong("Battle"), nullptr);
  ASSERT_EQ(bank.FindSong("Battle")->VariantCount(), 2u);
  for (int i = 0; i < 24; ++i) rig.Send("PlaySong", "Battle", 0.0).Send("StopSong").Run(0.0);
  EXPECT_GT(bank.FindSong("Battle")->Variant(0).PeakResidentFrames(), 0u);
  EXPECT_GT(bank.FindSong("Battle")->Variant(1).PeakResidentFrames(), 0u);
}

TEST(AudioNames, UnknownNamesAndShortMessagesChangeNothingButAnUnknownSongStopsTheMusic) {
  AudioRig rig;
  rig.AddTone("Music/TitleTheme.wav", 0.3).Track("CurrentVOStarted").Start();
  rig.Send("PlaySound", "NoSuchSound", 1.0);
  rig.Send("PlaySoundAt", "NoSuchSound", 1.0, 2.0, 3.0).Send("StopSound", "NoSuchSound");
  rig.Send("PlayVO", "NoSuchLine").Send("PlaySong").Send("PlaySound");
  rig.Send("PlaySoundAt", "TitleTheme", 1.0).Send("Update3DSoundListener", 1.0, 2.0, 3.0);
  rig.Send("Update3DSoundListener", 0.0, 0.0, 0.0, 0.0, 0.0, 0.0).Run(0.05);
  EXPECT_EQ(rig.Sys().CurrentSong(), "TitleTheme");
  EXPECT_TRUE(rig.Sys().IsMusicPlaying());
  EXPECT_EQ(rig.Sys().PlayingChannelCount(), 1);
  EXPECT_EQ(rig.counts["CurrentVOStarted"], 0);
  // A song that is not loaded still stops the one playing.
  rig.Send("PlaySong", "NoSuchSong", 1.0).Run(0.05);
  EXPECT_FALSE(rig.Sys().IsMusicPlaying());
  EXPECT_EQ(rig.Sys().PlayingChannelCount(), 0);
}

TEST(AudioKeys, F7AndF8ToggleTheMutesOncePerPress) {
  AudioRig rig;
  rig.AddTone("Music/TitleTheme.wav", 0.3).Track("ToggleSoundsMuteMSG").Track("ToggleMusicMuteMSG");
  rig.Start();
  // Keys go in where the platform layer reads them: SDL's own key-state array.
  Uint8* sdlKeys = const_cast<Uint8*>(SDL_GetKeyboardState(nullptr));
  Keyboard keyboard;
  // One frame per entry, naming the keys held: F8 held over two frames toggles once, and M held
  // beside F8 changes nothing. The last frame lets every key go for the tests after this one.
  for (std::string_view held : {"", "8", "8", "7", "", "8M", ""}) {
    sdlKeys[SDL_SCANCODE_F7] = held.find('7') != held.npos;
    sdlKeys[SDL_SCANCODE_F8] = held.find('8') != held.npos;
    sdlKeys[SDL_SCANCODE_M] = held.find('M') != held.npos;
    keyboard.Sample();
    rig.Send("Keyboard", keyboard).Run(0.0);
  }
  EXPECT_EQ(rig.counts["ToggleSoundsMuteMSG"], 1);
  EXPECT_EQ(rig.counts["ToggleMusicMuteMSG"], 2);
  EXPECT_TRUE(rig.Sys().IsMusicPlaying());
}

}  // namespace
}  // namespace grindle::test
