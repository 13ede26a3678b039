#include "Audio/SoundBank.h"

#include <algorithm>
#include <filesystem>

#include "Audio/AudioDevice.h"
#include "Audio/SoundFile.h"
#include "Core/Assert.h"

namespace grindle {
namespace {

constexpr const char* kResultText = "result != AL_NO_ERROR";

// Every regular file of the folder, in name order so variant numbering is the same on every run.
std::vector<std::string> FilesIn(const std::string& folder) {
  std::vector<std::string> files;
  std::error_code error;
  for (const auto& entry : std::filesystem::directory_iterator(folder, error)) {
    if (entry.is_regular_file(error)) files.push_back(entry.path().string());
  }
  std::sort(files.begin(), files.end());
  return files;
}

std::string NameOfPath(const std::string& path) {
  return SoundNameOf(std::filesystem::path(path).filename().string());
}

template <class Map>
auto* FindIn(Map& map, std::string_view name) {
  const auto found = map.find(std::string(name));
  return found == map.end() ? nullptr : &found->second;
}

}  // namespace

std::string SoundNameOf(std::string_view fileName) {
  std::string_view stem = fileName.substr(0, fileName.find_last_of('.'));
  if (stem.empty()) stem = fileName;
  const size_t underscore = stem.find_last_of('_');
  if (underscore == std::string_view::npos || underscore == 0 || underscore + 1 == stem.size()) {
    return std::string(stem);
  }
  const std::string_view suffix = stem.substr(underscore + 1);
  const bool isVariant =
      std::all_of(suffix.begin(), suffix.end(), [](char c) { return c >= '0' && c <= '9'; });
  return std::string(isVariant ? stem.substr(0, underscore) : stem);
}

SoundBank::SoundBank(AudioDevice& device, const std::string& root) : device_(device) {
  for (const std::string& path : FilesIn(root + "Assets/Audio/Sounds")) LoadSound(path);
  for (const std::string& path : FilesIn(root + "Assets/Audio/VO")) LoadLine(path);
  for (const std::string& path : FilesIn(root + "Assets/Audio/Music")) LoadSong(path);
}

SoundBank::~SoundBank() {
  for (auto& [name, items] : sounds_) {
    for (const SoundItem& item : items) device_.DeleteBuffer(item.buffer);
  }
}

void SoundBank::LoadSound(const std::string& path) {
  // Opening reads the headers, which is where a file that is not a sound fails.
  GRINDLE_ASSERT_TEXT(SoundDecoder::Open(path) == nullptr, kResultText, "Failed to allocate sound");
  SoundItem item;
  item.buffer = device_.CreateBuffer();
  item.sUndecodedPath = path;
  sounds_[NameOfPath(path)].push_back(std::move(item));
}

void SoundBank::Decode(SoundItem& item) {
  if (item.sUndecodedPath.empty()) return;
  const std::string path = std::move(item.sUndecodedPath);
  item.sUndecodedPath.clear();
  // Read at load already; should the file have gone since, the decoder says so and the effect
  // stays silent.
  const std::unique_ptr<SoundDecoder> decoder = SoundDecoder::Open(path);
  if (decoder == nullptr) return;
  const std::vector<int16_t> samples = decoder->ReadAll();
  device_.FillBuffer(item.buffer, samples.data(),
                     samples.size() / static_cast<size_t>(decoder->Channels()), decoder->Channels(),
                     decoder->Rate());
}

void SoundBank::LoadLine(const std::string& path) {
  std::unique_ptr<Stream> line = Stream::Open(device_, path);
  GRINDLE_ASSERT_TEXT(line == nullptr, kResultText, "Failed to allocate VO");
  lines_[NameOfPath(path)].push_back(std::move(line));
}

void SoundBank::LoadSong(const std::string& path) {
  std::unique_ptr<Stream> variant = Stream::Open(device_, path);
  GRINDLE_ASSERT_TEXT(variant == nullptr, kResultText, "Failed to allocate song");
  songs_[NameOfPath(path)].AddVariant(std::move(variant));
}

std::vector<SoundItem>* SoundBank::FindSound(std::string_view name) {
  return FindIn(sounds_, name);
}
Song* SoundBank::FindSong(std::string_view name) { return FindIn(songs_, name); }
VoiceLines* SoundBank::FindLines(std::string_view name) { return FindIn(lines_, name); }

}  // namespace grindle
