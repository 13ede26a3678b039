// The audio system's state and what it does: the device, the channels, everything loaded, the
// music and voice-over channels, the song now playing, volumes, the voice-over flag and the mute
// states. Created by AudioInterface at Start and destroyed with it; main thread only. Unknown
// names are ignored. The device is declared first so it outlives everything played through it.
#pragma once

#include <string>
#include <string_view>

#include "Audio/AudioDevice.h"
#include "Audio/ChannelPool.h"
#include "Audio/SoundBank.h"

namespace grindle {

class MessageHandler;

inline constexpr float kDefaultSoundVolume = 1.0f;
inline constexpr float kDefaultMusicVolume = 0.7f;

class AudioSys {
 public:
  // `root` is prepended to the asset folders ("" for the working directory).
  AudioSys(MessageHandler& messages, const std::string& root);

  // Does nothing while the same song is still playing; otherwise starts `name` on the music
  // channel. Only a loop value of exactly 1.0 loops.
  void PlaySong(std::string_view name, double loop, float scale);
  void StopSong();
  void PlaySound(std::string_view name, bool restart, float scale, bool isLooping);
  void PlaySoundAt(std::string_view name, Vec3 position, float scale);
  void StopSound(std::string_view name);
  void StopAllSounds();
  void PlayVO(std::string_view name, float scale);
  void StopVO();

  void PauseSounds();
  void ResumeSounds();
  void PauseMusic();
  void ResumeMusic();
  void PauseVoice();
  void ResumeVoice();
  void ToggleSoundsMute();
  void ToggleMusicMute();

  // The eye and the direction it looks in; a direction without length keeps the old orientation.
  void SetListener(Vec3 eye, Vec3 direction);

  // Lets a silent device's time run, refills streams and watches the voice-over line.
  void Update(float dt);

  const std::string& CurrentSong() const { return sCurrentSong_; }
  bool IsMusicPlaying() { return pool_.IsPlaying(musicChannel_); }
  bool IsVoicePlaying() { return pool_.IsPlaying(voChannel_); }
  int PlayingChannelCount() { return pool_.PlayingCount(); }
  SoundBank& Bank() { return bank_; }

 private:
  // One of the items under the name, at random; null when there is none.
  SoundItem* PickItem(std::string_view name);
  void StartItem(SoundItem& item, float scale, bool isLooping, const Vec3* position);

  AudioDevice device_;
  SoundBank bank_;
  ChannelPool pool_;  // last, so its channels stop before the bank's buffers and streams go
  MessageHandler& messages_;
  ChannelHandle musicChannel_;
  ChannelHandle voChannel_;
  std::string sCurrentSong_;
  float fSoundVolume_ = kDefaultSoundVolume;
  float fMusicVolume_ = kDefaultMusicVolume;
  bool isVoicePlaying_ = false;
  bool isSoundsMuted_ = false;
  bool isMusicMuted_ = false;
  Vec3 listenerForward_{0.0f, 0.0f, -1.0f};
  Vec3 listenerUp_{0.0f, 1.0f, 0.0f};
};

}  // namespace grindle
