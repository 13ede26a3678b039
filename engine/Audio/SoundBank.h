// Everything the audio system can play, loaded once from the three asset folders: sound effects
// checked at load and decoded whole into their buffers when first played, voice-over lines and
// songs opened as streams. A file's name without its extension and without a trailing "_<digits>"
// is the name it plays under, so "Jump.wav" and "Jump_2.wav" are two variants of "Jump". Owned by
// AudioSys; main thread only. A file that cannot be decoded stops the program at load (the device
// must outlive the bank).
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "Audio/ChannelPool.h"
#include "Audio/Song.h"
#include "Audio/Stream.h"

namespace grindle {

class AudioDevice;

struct SoundItem {
  uint32_t buffer = 0;
  ChannelHandle channel;
  float volume = 1.0f;
  // The file whose samples the buffer is still waiting for; empty once decoded.
  std::string sUndecodedPath;
};

using VoiceLines = std::vector<std::unique_ptr<Stream>>;

// "Jump_2.wav" -> "Jump"; "Level_1_Intro.ogg" -> "Level_1_Intro"; "_2.wav" -> "_2".
std::string SoundNameOf(std::string_view fileName);

class SoundBank {
 public:
  // Loads "<root>Assets/Audio/Sounds", ".../VO" and ".../Music"; a folder that is absent is empty.
  SoundBank(AudioDevice& device, const std::string& root);
  ~SoundBank();
  SoundBank(const SoundBank&) = delete;
  SoundBank& operator=(const SoundBank&) = delete;

  // Null when nothing is registered under the name.
  std::vector<SoundItem>* FindSound(std::string_view name);
  Song* FindSong(std::string_view name);
  VoiceLines* FindLines(std::string_view name);
  // Fills the item's buffer from its file the first time it is played; a game rarely plays every
  // effect it ships, and decoding them all would hold up the start.
  void Decode(SoundItem& item);

  std::unordered_map<std::string, std::vector<SoundItem>>& Sounds() { return sounds_; }
  std::unordered_map<std::string, Song>& Songs() { return songs_; }

 private:
  void LoadSound(const std::string& path);
  void LoadLine(const std::string& path);
  void LoadSong(const std::string& path);

  AudioDevice& device_;
  std::unordered_map<std::string, std::vector<SoundItem>> sounds_;
  std::unordered_map<std::string, Song> songs_;
  std::unordered_map<std::string, VoiceLines> lines_;
};

}  // namespace grindle
