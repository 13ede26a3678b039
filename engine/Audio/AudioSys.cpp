#include "Audio/AudioSys.h"

#include <cmath>
#include <cstdlib>

#include "Core/MessageHandler.h"
#include "Core/Messages/Catalogue.h"

namespace grindle {
namespace {

Vec3 Cross(Vec3 a, Vec3 b) {
  return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}

float Length(Vec3 v) { return std::sqrt(v.x * v.x + v.y * v.y + v.z * v.z); }

Vec3 Scaled(Vec3 v, float s) { return {v.x * s, v.y * s, v.z * s}; }

template <class F>
void ForEachItem(SoundBank& bank, F&& function) {
  for (auto& [name, items] : bank.Sounds()) {
    for (SoundItem& item : items) function(item);
  }
}

template <class F>
void ForEachSong(SoundBank& bank, F&& function) {
  for (auto& [name, song] : bank.Songs()) function(song);
}

}  // namespace

AudioSys::AudioSys(MessageHandler& messages, const std::string& root)
    : bank_(device_, root), pool_(device_), messages_(messages) {
  device_.SetListener({}, listenerForward_, listenerUp_);
}

void AudioSys::PlaySong(std::string_view name, double loop, float scale) {
  if (pool_.IsPlaying(musicChannel_) && name == sCurrentSong_) return;
  sCurrentSong_ = name;
  pool_.Stop(musicChannel_);
  // An unknown name still silences the music: the channel is stopped before the song is sought.
  Song* song = bank_.FindSong(name);
  if (song == nullptr) return;
  musicChannel_ = song->Play(pool_, loop == 1.0, fMusicVolume_, scale);
  pool_.SetMute(musicChannel_, isMusicMuted_);
}

void AudioSys::StopSong() { pool_.Stop(musicChannel_); }

SoundItem* AudioSys::PickItem(std::string_view name) {
  std::vector<SoundItem>* items = bank_.FindSound(name);
  if (items == nullptr || items->empty()) return nullptr;
  return &(*items)[static_cast<size_t>(std::rand()) % items->size()];
}

void AudioSys::StartItem(SoundItem& item, float scale, bool isLooping, const Vec3* position) {
  bank_.Decode(item);
  item.channel = pool_.PlayBuffer(item.buffer, ChannelGroup::kEffect);
  pool_.SetVolume(item.channel, item.volume * fSoundVolume_ * scale);
  pool_.SetLooping(item.channel, isLooping);
  if (position != nullptr) pool_.PlaceInWorld(item.channel, *position);
  pool_.SetPaused(item.channel, false);
}

void AudioSys::PlaySound(std::string_view name, bool restart, float scale, bool isLooping) {
  SoundItem* item = PickItem(name);
  if (item == nullptr) return;
  // Without a restart the older instance plays out, out of reach of StopSound.
  if (restart) pool_.Stop(item->channel);
  StartItem(*item, scale, isLooping, nullptr);
}

void AudioSys::PlaySoundAt(std::string_view name, Vec3 position, float scale) {
  if (SoundItem* item = PickItem(name)) StartItem(*item, scale, false, &position);
}

void AudioSys::StopSound(std::string_view name) {
  std::vector<SoundItem>* items = bank_.FindSound(name);
  if (items == nullptr) return;
  for (const SoundItem& item : *items) pool_.Stop(item.channel);
}

void AudioSys::StopAllSounds() { pool_.StopGroup(ChannelGroup::kEffect); }

void AudioSys::PlayVO(std::string_view name, float scale) {
  VoiceLines* lines = bank_.FindLines(name);
  if (lines == nullptr || lines->empty()) return;
  // A line cut short by the next one still gets its one "finished" message.
  if (isVoicePlaying_) msg::Post(messages_, msg::kCurrentVOFinished);
  Stream& line = *(*lines)[static_cast<size_t>(std::rand()) % lines->size()];
  pool_.Stop(voChannel_);
  voChannel_ = pool_.PlayStream(line, ChannelGroup::kVoice);
  pool_.SetVolume(voChannel_, fSoundVolume_ * scale);
  pool_.SetMute(voChannel_, isSoundsMuted_);
  pool_.SetPaused(voChannel_, false);
  isVoicePlaying_ = true;
  msg::Post(messages_, msg::kCurrentVOStarted);
}

void AudioSys::StopVO() { pool_.Stop(voChannel_); }

void AudioSys::PauseSounds() {
  ForEachItem(bank_, [this](SoundItem& item) { pool_.PauseSilenced(item.channel); });
}

void AudioSys::ResumeSounds() {
  if (isSoundsMuted_) return;
  ForEachItem(bank_,
              [this](SoundItem& item) { pool_.Resume(item.channel, item.volume * fSoundVolume_); });
}

void AudioSys::PauseMusic() {
  ForEachSong(bank_, [this](Song& song) { pool_.PauseSilenced(song.Channel()); });
}

void AudioSys::ResumeMusic() {
  if (isMusicMuted_) return;
  ForEachSong(bank_,
              [this](Song& song) { pool_.Resume(song.Channel(), song.Volume() * fMusicVolume_); });
}

void AudioSys::PauseVoice() { pool_.SetPaused(voChannel_, true); }

void AudioSys::ResumeVoice() {
  if (!isSoundsMuted_) pool_.SetPaused(voChannel_, false);
}

// Unmuting restores the configured volumes, not whatever scale each sound was started with.
void AudioSys::ToggleSoundsMute() {
  isSoundsMuted_ = !isSoundsMuted_;
  if (isSoundsMuted_) {
    PauseSounds();
  } else {
    ResumeSounds();
  }
  pool_.SetMute(voChannel_, isSoundsMuted_);
  pool_.SetGroupMuted(ChannelGroup::kEffect, isSoundsMuted_);
  pool_.SetGroupMuted(ChannelGroup::kVoice, isSoundsMuted_);
}

void AudioSys::ToggleMusicMute() {
  isMusicMuted_ = !isMusicMuted_;
  if (isMusicMuted_) {
    PauseMusic();
  } else {
    ResumeMusic();
  }
  pool_.SetMute(musicChannel_, isMusicMuted_);
  pool_.SetGroupMuted(ChannelGroup::kMusic, isMusicMuted_);
}

void AudioSys::SetListener(Vec3 eye, Vec3 direction) {
  const float length = Length(direction);
  if (std::isfinite(length) && length > 1e-6f) {
    listenerForward_ = Scaled(direction, 1.0f / length);
    const Vec3 right = Cross(listenerForward_, Vec3{0.0f, 1.0f, 0.0f});
    const float rightLength = Length(right);
    // Looking straight up or down: any up at right angles will do.
    listenerUp_ = rightLength > 1e-6f ? Cross(Scaled(right, 1.0f / rightLength), listenerForward_)
                                      : Vec3{0.0f, 0.0f, -1.0f};
  }
  device_.SetListener(eye, listenerForward_, listenerUp_);
}

void AudioSys::Update(float dt) {
  device_.Advance(dt);
  pool_.Update();
  if (isVoicePlaying_ && !pool_.IsPlaying(voChannel_)) {
    isVoicePlaying_ = false;
    msg::Post(messages_, msg::kCurrentVOFinished);
  }
}

}  // namespace grindle
