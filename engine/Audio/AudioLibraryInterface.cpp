#include "Audio/AudioLibraryInterface.h"

#include <cstdio>
#include <optional>
#include <string_view>
#include <vector>

#include "Audio/AudioSys.h"
#include "Core/Database.h"
#include "Core/MessageHandler.h"
#include "Core/Messages/Catalogue.h"
#include "Core/WellKnownKeys.h"
#include "Input/DebugKeys.h"
#include "Input/Keyboard.h"

namespace grindle {
namespace {

constexpr std::string_view kMenuLevels[] = {"LevelTitleScreen", "LoadingScreen", "SplashScreens"};

// The name a message carries: its first string argument, wherever it stands (the window puts
// the loop flag before the song name, scripts put the name first).
const std::string* NameIn(MessageArgs args) {
  for (uint32_t i = 0; i < args.count; ++i) {
    if (const std::string* name = msg::Text::Read(args[i])) return name;
  }
  return nullptr;
}

// The numeric arguments in order, wherever the name stands among them.
std::vector<double> NumbersIn(MessageArgs args) {
  std::vector<double> numbers;
  for (uint32_t i = 0; i < args.count; ++i) {
    if (const std::optional<double> number = msg::Real::Read(args[i])) numbers.push_back(*number);
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
  Routes().Listen(Messages(), *this);
  // Name first, as scripts write it; the reader takes either order.
  Messages().SendArgs(msg::kPlaySong.name, "TitleTheme", 1.0);
}

void AudioInterface::OnExit() { Routes().UnListen(Messages()); }

void AudioInterface::Update(float dt) {
  if (pAudio_ != nullptr) pAudio_->Update(dt);
}

const msg::RouteTable<AudioInterface>& AudioInterface::Routes() {
  using A = AudioInterface;
  static constexpr msg::Route<A> kRoutes[] = {
      {msg::kPlaySong, [](A& a, MessageArgs args) { a.OnPlaySong(args); }},
      {msg::kStopSong, [](A& a, MessageArgs) { a.pAudio_->StopSong(); }},
      {msg::kStopAllSounds, [](A& a, MessageArgs) { a.pAudio_->StopAllSounds(); }},
      {msg::kPlaySound, [](A& a, MessageArgs args) { a.OnPlaySound(args); }},
      {msg::kPlaySoundAt, [](A& a, MessageArgs args) { a.OnPlaySoundAt(args); }},
      {msg::kStopSound,
       [](A& a, MessageArgs args) {
         if (const std::string* name = NameIn(args)) a.pAudio_->StopSound(*name);
       }},
      {msg::kPlayVO, [](A& a, MessageArgs args) { a.OnPlayVO(args); }},
      {msg::kStopVO, [](A& a, MessageArgs) { a.pAudio_->StopVO(); }},
      // The pause menu silences effects and voice; its music plays on.
      {msg::kGamePaused,
       [](A& a, MessageArgs) {
         a.pAudio_->PauseSounds();
         a.pAudio_->PauseVoice();
       }},
      // The window went away: everything holds.
      {msg::kPauseAudio,
       [](A& a, MessageArgs) {
         a.pAudio_->PauseSounds();
         a.pAudio_->PauseMusic();
         a.pAudio_->PauseVoice();
       }},
      {msg::kUnpauseMusic, [](A& a, MessageArgs) { a.pAudio_->ResumeMusic(); }},
      {msg::kGameUnpaused,
       [](A& a, MessageArgs) {
         a.pAudio_->ResumeSounds();
         a.pAudio_->ResumeMusic();
         a.pAudio_->ResumeVoice();
       }},
      {msg::kToggleSoundsMute, [](A& a, MessageArgs) { a.pAudio_->ToggleSoundsMute(); }},
      {msg::kToggleMusicMute, [](A& a, MessageArgs) { a.pAudio_->ToggleMusicMute(); }},
      {msg::kWindowActivated, [](A& a, MessageArgs) { a.ResumeOnMenuLevels(); }},
      {msg::kUpdate3DSoundListener, [](A& a, MessageArgs args) { a.OnListener(args); }},
      // Sent on as the toggle messages, so that whatever shows the mute state hears of it too.
      {msg::kKeyboard,
       [](A& a, MessageArgs args) {
         const Keyboard* keyboard = msg::kKeyboard.Read<0>(args);
         if (keyboard == nullptr) return;
         if (keyboard->IsTriggered(debugkeys::kSoundsMute))
           msg::Post(a.Messages(), msg::kToggleSoundsMute);
         if (keyboard->IsTriggered(debugkeys::kMusicMute))
           msg::Post(a.Messages(), msg::kToggleMusicMute);
       }},
  };
  static constexpr msg::RouteTable<A> kTable{"Audio", kRoutes};
  return kTable;
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
