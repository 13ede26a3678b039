#include "Audio/AudioLibraryInterface.h"

#include <cstdio>
#include <string_view>
#include <vector>

#include "Audio/AudioSys.h"
#include "Core/Database.h"
#include "Core/MessageHandler.h"
#include "Core/WellKnownKeys.h"
#include "Input/Keyboard.h"

namespace grindle {
namespace {

constexpr std::string_view kOwner = "Audio";

constexpr std::string_view kMessages[] = {"PlaySong",
                                          "StopSong",
                                          "StopAllSounds",
                                          "PlaySound",
                                          "PlaySoundAt",
                                          "StopSound",
                                          "PlayVO",
                                          "StopVO",
                                          "GamePaused",
                                          "PauseAudio",
                                          "UnpauseMusic",
                                          "GameUnpaused",
                                          "ToggleSoundsMuteMSG",
                                          "ToggleMusicMuteMSG",
                                          "WindowActivated",
                                          "Update3DSoundListener",
                                          "Keyboard"};

// The mute keys, clear of the cheat keys (F1-F5) and the free camera (F9).
constexpr int kSoundsMuteKey = vk::kF1 + 6;
constexpr int kMusicMuteKey = vk::kF1 + 7;

constexpr std::string_view kMenuLevels[] = {"LevelTitleScreen", "LoadingScreen", "SplashScreens"};

// The name a message carries: its first string argument, wherever it stands (the window puts
// the loop flag before the song name, scripts put the name first).
const std::string* NameIn(MessageArgs args) {
  for (uint32_t i = 0; i < args.count; ++i) {
    if (const std::string* name = args.Get<std::string>(i)) return name;
  }
  return nullptr;
}

// The numeric arguments in order; scripts send doubles, engine code may send bools or integers.
std::vector<double> NumbersIn(MessageArgs args) {
  std::vector<double> numbers;
  for (uint32_t i = 0; i < args.count; ++i) {
    if (const double* d = args.Get<double>(i)) {
      numbers.push_back(*d);
    } else if (const float* f = args.Get<float>(i)) {
      numbers.push_back(*f);
    } else if (const int* n = args.Get<int>(i)) {
      numbers.push_back(*n);
    } else if (const bool* b = args.Get<bool>(i)) {
      numbers.push_back(*b ? 1.0 : 0.0);
    }
  }
  return numbers;
}

double NumberOr(const std::vector<double>& numbers, size_t index, double fallback) {
  return index < numbers.size() ? numbers[index] : fallback;
}

}  // namespace

AudioInterface::AudioInterface(std::string assetRoot)
    : SystemBase("Audio", StartLine::kSilent), sAssetRoot_(std::move(assetRoot)) {
  if (!sAssetRoot_.empty() && sAssetRoot_.back() != '/') sAssetRoot_ += '/';
}

AudioInterface::~AudioInterface() = default;

void AudioInterface::OnStart() {
  pAudio_ = std::make_unique<AudioSys>(Messages(), sAssetRoot_);
  ListenAll();
  Messages().SendArgs("PlaySong", "TitleTheme", 1.0);
}

void AudioInterface::OnExit() {
  for (std::string_view name : kMessages) Messages().UnListen(name, kOwner);
}

void AudioInterface::Update(float dt) {
  if (pAudio_ != nullptr) pAudio_->Update(dt);
}

void AudioInterface::ListenAll() {
  MessageHandler& messages = Messages();
  AudioSys& audio = *pAudio_;
  auto on = [&](std::string_view name, auto handler) { messages.Listen(name, kOwner, handler); };
  on("PlaySong", [this](MessageArgs args) { OnPlaySong(args); });
  on("StopSong", [&audio](MessageArgs) { audio.StopSong(); });
  on("StopAllSounds", [&audio](MessageArgs) { audio.StopAllSounds(); });
  on("PlaySound", [this](MessageArgs args) { OnPlaySound(args); });
  on("PlaySoundAt", [this](MessageArgs args) { OnPlaySoundAt(args); });
  on("StopSound", [&audio](MessageArgs args) {
    if (const std::string* name = NameIn(args)) audio.StopSound(*name);
  });
  on("PlayVO", [this](MessageArgs args) { OnPlayVO(args); });
  on("StopVO", [&audio](MessageArgs) { audio.StopVO(); });
  // The pause menu silences effects and voice; its music plays on.
  on("GamePaused", [&audio](MessageArgs) {
    audio.PauseSounds();
    audio.PauseVoice();
  });
  // The window went away: everything holds.
  on("PauseAudio", [&audio](MessageArgs) {
    audio.PauseSounds();
    audio.PauseMusic();
    audio.PauseVoice();
  });
  on("UnpauseMusic", [&audio](MessageArgs) { audio.ResumeMusic(); });
  on("GameUnpaused", [&audio](MessageArgs) {
    audio.ResumeSounds();
    audio.ResumeMusic();
    audio.ResumeVoice();
  });
  on("ToggleSoundsMuteMSG", [&audio](MessageArgs) { audio.ToggleSoundsMute(); });
  on("ToggleMusicMuteMSG", [&audio](MessageArgs) { audio.ToggleMusicMute(); });
  on("WindowActivated", [this](MessageArgs) { ResumeOnMenuLevels(); });
  on("Update3DSoundListener", [this](MessageArgs args) { OnListener(args); });
  // Sent on as the toggle messages, so that whatever shows the mute state hears of it too.
  on("Keyboard", [&messages](MessageArgs args) {
    const Keyboard* keyboard = args.Get<Keyboard>(0);
    if (keyboard == nullptr) return;
    if (keyboard->IsTriggered(kSoundsMuteKey)) messages.Send("ToggleSoundsMuteMSG");
    if (keyboard->IsTriggered(kMusicMuteKey)) messages.Send("ToggleMusicMuteMSG");
  });
}

void AudioInterface::OnPlaySong(MessageArgs args) {
  std::printf(" arg count is %d\n", static_cast<int>(args.count));
  const std::string* name = NameIn(args);
  if (name == nullptr) return;
  const std::vector<double> numbers = NumbersIn(args);
  const double scale = args.count == 3 ? NumberOr(numbers, 1, 1.0) : 1.0;
  pAudio_->PlaySong(*name, NumberOr(numbers, 0, 0.0), static_cast<float>(scale));
}

void AudioInterface::OnPlaySound(MessageArgs args) {
  const std::string* name = NameIn(args);
  if (name == nullptr) return;
  const std::vector<double> numbers = NumbersIn(args);
  pAudio_->PlaySound(*name, NumberOr(numbers, 0, 0.0) != 0.0,
                     static_cast<float>(NumberOr(numbers, 1, 1.0)),
                     NumberOr(numbers, 2, 0.0) == 1.0);
}

void AudioInterface::OnPlaySoundAt(MessageArgs args) {
  const std::string* name = NameIn(args);
  const std::vector<double> numbers = NumbersIn(args);
  if (name == nullptr || numbers.size() < 3) return;
  const Vec3 position{static_cast<float>(numbers[0]), static_cast<float>(numbers[1]),
                      static_cast<float>(numbers[2])};
  pAudio_->PlaySoundAt(*name, position, static_cast<float>(NumberOr(numbers, 3, 1.0)));
}

void AudioInterface::OnPlayVO(MessageArgs args) {
  const std::string* name = NameIn(args);
  if (name == nullptr) return;
  pAudio_->PlayVO(*name, static_cast<float>(NumberOr(NumbersIn(args), 0, 1.0)));
}

void AudioInterface::OnListener(MessageArgs args) {
  const std::vector<double> n = NumbersIn(args);
  if (n.size() < 6) return;
  pAudio_->SetListener(
      {static_cast<float>(n[0]), static_cast<float>(n[1]), static_cast<float>(n[2])},
      {static_cast<float>(n[3]), static_cast<float>(n[4]), static_cast<float>(n[5])});
}

void AudioInterface::ResumeOnMenuLevels() {
  const DataHandle<std::string> level = Root().Find<std::string>(KeyOf(WellKnown::CurrentLevel));
  if (!level) return;
  for (std::string_view menu : kMenuLevels) {
    if (*level == menu) {
      pAudio_->ResumeMusic();
      pAudio_->ResumeVoice();
      return;
    }
  }
}

}  // namespace grindle
