// The audio system's message protocol end to end: voice-over notices, pausing and the level-driven
// resume, positional sound, sound names and their variants, names nobody loaded.
#include <SDL.h>
#include <gtest/gtest.h>

#include "Audio/AudioSys.h"
#include "Audio/SoundBank.h"
#include "AudioTestRig.h"
#include "Input/Keyboard.h"

namespace grindle::test {
namespace {

TEST(AudioVoiceOver, EveryLineStartsAndFinishesExactlyOnce) {
  AudioRig rig;
  rig.AddTone("VO", "Greeting.wav", 0.15, [](double) { return 0.3; });
  rig.Track("CurrentVOStarted");
  rig.Track("CurrentVOFinished");
  rig.Start();
  rig.Run(0.05);
  EXPECT_EQ(rig.Count("CurrentVOFinished"), 0) << "no line was started";

  rig.Messages().SendArgs("PlayVO", "Greeting");
  rig.Run(0.35);
  EXPECT_EQ(rig.Count("CurrentVOStarted"), 1);
  EXPECT_EQ(rig.Count("CurrentVOFinished"), 1) << "a line that plays out";
  rig.Run(0.05);
  EXPECT_EQ(rig.Count("CurrentVOFinished"), 1) << "and only once";

  // A line cut short by the next one, and a line stopped by "StopVO".
  rig.Messages().SendArgs("PlayVO", "Greeting");
  rig.Run(0.05);
  rig.Messages().SendArgs("PlayVO", "Greeting");
  rig.Run(0.35);
  rig.Messages().SendArgs("PlayVO", "Greeting");
  rig.Run(0.03);
  rig.Messages().Send("StopVO");
  rig.Run(0.05);
  EXPECT_EQ(rig.Count("CurrentVOStarted"), 4);
  EXPECT_EQ(rig.Count("CurrentVOFinished"), 4);
  EXPECT_FALSE(rig.Audio().Audio()->IsVoicePlaying());
  rig.Finish();
}

TEST(AudioPause, PauseAudioHoldsMusicUntilAMenuLevelIsActivatedAgain) {
  AudioRig rig;
  rig.AddTone("Music", "TitleTheme.wav", 0.3, [](double) { return 0.4; });
  auto level = rig.RootDatabase().Add<std::string>("CurrentLevel", "Level1");
  rig.Start();
  rig.Run(0.2);
  rig.Messages().Send("PauseAudio");
  rig.Run(0.2);
  rig.Messages().Send("WindowActivated");  // in a game level the music stays held
  rig.Run(0.2);
  *level = "LevelTitleScreen";
  rig.Messages().Send("WindowActivated");
  rig.Run(0.2);
  const Mix mix = rig.Finish();

  const std::vector<Span> spans = mix.AudibleSpans();
  ASSERT_EQ(spans.size(), 2u);
  EXPECT_GT(spans[1].start - spans[0].end, 0.3) << "resumed in a game level";
  EXPECT_LT(spans[1].start - spans[0].end, 0.55) << "not resumed on the title screen";
  EXPECT_NEAR(mix.LevelIn(spans[1]), mix.LevelIn(spans[0]), 0.1 * mix.LevelIn(spans[0]));
}

TEST(AudioPause, GamePausedHoldsEffectsWhileTheMusicPlaysOn) {
  AudioRig rig;
  rig.AddTone("Sounds", "Engine.wav", 0.1, [](double) { return 0.4; });
  rig.AddTone("Music", "TitleTheme.wav", 0.3, [](double) { return 0.4; });
  rig.Start();
  rig.Messages().SendArgs("PlaySound", "Engine", 0.0, 1.0, 1.0);
  rig.Run(0.15);
  rig.Messages().Send("ToggleMusicMuteMSG");  // the music out of the way: only the effect is heard
  rig.Run(0.15);
  rig.Messages().Send("GamePaused");
  rig.Run(0.2);
  rig.Messages().Send("GameUnpaused");
  rig.Run(0.2);
  EXPECT_EQ(rig.Audio().Audio()->CurrentSong(), "TitleTheme");
  EXPECT_TRUE(rig.Audio().Audio()->IsMusicPlaying()) << "muted music still holds its place";
  const Mix mix = rig.Finish();

  const std::vector<Span> spans = mix.AudibleSpans();
  ASSERT_EQ(spans.size(), 2u) << "effect held while paused, resumed after";
  EXPECT_GT(spans[1].start - spans[0].end, 0.12);
  EXPECT_LT(spans[1].start - spans[0].end, 0.35);
}

TEST(AudioPositional, SoundsComeFromWhereTheyAreSeenFromTheListener) {
  AudioRig rig;
  rig.AddTone("Sounds", "Ping.wav", 0.2, [](double) { return 0.5; });
  rig.Start();
  rig.Messages().SendArgs("Update3DSoundListener", 0.0, 0.0, 0.0, 0.0, 0.0, -1.0);
  rig.Messages().SendArgs("PlaySoundAt", "Ping", 3.0, 0.0, 0.0);
  rig.Run(0.35);
  // Turned round, the same point is on the other side.
  rig.Messages().SendArgs("Update3DSoundListener", 0.0, 0.0, 0.0, 0.0, 0.0, 1.0);
  rig.Messages().SendArgs("PlaySoundAt", "Ping", 3.0, 0.0, 0.0);
  rig.Run(0.35);
  const Mix mix = rig.Finish();

  const std::vector<Span> spans = mix.AudibleSpans();
  ASSERT_EQ(spans.size(), 2u);
  const auto [left0, right0] = mix.SidesIn(spans[0]);
  const auto [left1, right1] = mix.SidesIn(spans[1]);
  EXPECT_GT(right0, 2.0 * left0) << "to the right of a listener facing -z";
  EXPECT_GT(left1, 2.0 * right1) << "to the left once the listener faces +z";
}

TEST(AudioNames, FileNamesLoseTheirExtensionAndVariantNumber) {
  EXPECT_EQ(SoundNameOf("Jump.wav"), "Jump");
  EXPECT_EQ(SoundNameOf("Jump_2.wav"), "Jump");
  EXPECT_EQ(SoundNameOf("Jump_12.ogg"), "Jump");
  EXPECT_EQ(SoundNameOf("Level_1_Intro.ogg"), "Level_1_Intro");
  EXPECT_EQ(SoundNameOf("Jump_.wav"), "Jump_");
  EXPECT_EQ(SoundNameOf("_2.wav"), "_2");
  EXPECT_EQ(SoundNameOf("Menu.Theme.ogg"), "Menu.Theme");
  EXPECT_EQ(SoundNameOf("README"), "README");
}

TEST(AudioNames, VariantsFormOneNameAndArePickedAtRandom) {
  AudioRig rig;
  rig.AddTone("Sounds", "Jump.wav", 0.05, [](double) { return 0.2; });
  rig.AddTone("Sounds", "Jump_2.wav", 0.05, [](double) { return 0.2; });
  rig.AddTone("Sounds", "Jump_Big.wav", 0.05, [](double) { return 0.2; });
  rig.AddTone("Music", "Battle.wav", 0.1, [](double) { return 0.2; });
  rig.AddTone("Music", "Battle_2.wav", 0.1, [](double) { return 0.2; });
  rig.Start();
  SoundBank& bank = rig.Audio().Audio()->Bank();
  ASSERT_NE(bank.FindSound("Jump"), nullptr);
  EXPECT_EQ(bank.FindSound("Jump")->size(), 2u);
  ASSERT_NE(bank.FindSound("Jump_Big"), nullptr);
  EXPECT_EQ(bank.FindSound("Jump_Big")->size(), 1u);
  ASSERT_NE(bank.FindSong("Battle"), nullptr);
  ASSERT_EQ(bank.FindSong("Battle")->VariantCount(), 2u);

  for (int i = 0; i < 24; ++i) {
    rig.Messages().SendArgs("PlaySong", "Battle", 0.0);
    rig.Messages().Send("StopSong");
    rig.Run(0.0);
  }
  const Song& battle = *bank.FindSong("Battle");
  EXPECT_GT(battle.Variant(0).PeakResidentFrames(), 0u);
  EXPECT_GT(battle.Variant(1).PeakResidentFrames(), 0u);
  rig.Finish();
}

TEST(AudioNames, UnknownNamesAndShortMessagesChangeNothing) {
  AudioRig rig;
  rig.AddTone("Music", "TitleTheme.wav", 0.3, [](double) { return 0.3; });
  rig.Track("CurrentVOStarted");
  rig.Start();
  MessageHandler& messages = rig.Messages();
  messages.SendArgs("PlaySong", "NoSuchSong", 1.0);
  messages.SendArgs("PlaySound", "NoSuchSound", 1.0);
  messages.SendArgs("PlaySoundAt", "NoSuchSound", 1.0, 2.0, 3.0);
  messages.SendArgs("StopSound", "NoSuchSound");
  messages.SendArgs("PlayVO", "NoSuchLine");
  messages.Send("PlaySong");
  messages.Send("PlaySound");
  messages.SendArgs("PlaySoundAt", "TitleTheme", 1.0);
  messages.SendArgs("Update3DSoundListener", 1.0, 2.0, 3.0);
  messages.SendArgs("Update3DSoundListener", 0.0, 0.0, 0.0, 0.0, 0.0, 0.0);
  rig.Run(0.05);
  AudioSys& audio = *rig.Audio().Audio();
  EXPECT_EQ(audio.CurrentSong(), "TitleTheme");
  EXPECT_TRUE(audio.IsMusicPlaying());
  EXPECT_EQ(audio.PlayingChannelCount(), 1);
  EXPECT_EQ(rig.Count("CurrentVOStarted"), 0);
  rig.Finish();
}

TEST(AudioKeys, F7AndF8ToggleTheMutesOncePerPress) {
  AudioRig rig;
  rig.AddTone("Music", "TitleTheme.wav", 0.3, [](double) { return 0.3; });
  rig.Track("ToggleSoundsMuteMSG");
  rig.Track("ToggleMusicMuteMSG");
  rig.Start();
  // Keys go in where the platform layer reads them: SDL's own key-state array.
  Uint8* sdlKeys = const_cast<Uint8*>(SDL_GetKeyboardState(nullptr));
  Keyboard keyboard;
  auto frame = [&](std::initializer_list<SDL_Scancode> held) {
    for (SDL_Scancode key : {SDL_SCANCODE_F7, SDL_SCANCODE_F8, SDL_SCANCODE_M}) sdlKeys[key] = 0;
    for (SDL_Scancode key : held) sdlKeys[key] = 1;
    keyboard.Sample();
    rig.Messages().SendArgs("Keyboard", keyboard);
    rig.Run(0.0);
  };
  frame({});
  frame({SDL_SCANCODE_F8});
  frame({SDL_SCANCODE_F8});  // held, not pressed again
  EXPECT_EQ(rig.Count("ToggleMusicMuteMSG"), 1);
  EXPECT_EQ(rig.Count("ToggleSoundsMuteMSG"), 0);
  frame({SDL_SCANCODE_F7});
  frame({});
  frame({SDL_SCANCODE_F8, SDL_SCANCODE_M});
  EXPECT_EQ(rig.Count("ToggleSoundsMuteMSG"), 1);
  EXPECT_EQ(rig.Count("ToggleMusicMuteMSG"), 2);
  EXPECT_TRUE(rig.Audio().Audio()->IsMusicPlaying());
  frame({});
  rig.Finish();
}

}  // namespace
}  // namespace grindle::test
