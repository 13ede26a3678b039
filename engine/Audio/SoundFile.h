// Decoding of sound files (WAV, Ogg Vorbis, FLAC... whatever libsndfile reads) into 16-bit PCM,
// either whole or a chunk at a time for streams. One decoder per open file; main thread only.
// A decoder that could not open its file does not exist: Open returns null and says why. Opening
// reads only the headers; samples are decoded when first read.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace grindle {

class SoundDecoder {
 public:
  // Null when the file cannot be read or decoded; the reason is printed with the file's name.
  static std::unique_ptr<SoundDecoder> Open(const std::string& path);
  ~SoundDecoder();
  SoundDecoder(const SoundDecoder&) = delete;
  SoundDecoder& operator=(const SoundDecoder&) = delete;

  int Channels() const { return channels_; }
  int Rate() const { return rate_; }
  size_t TotalFrames() const { return totalFrames_; }

  // Up to `frames` interleaved frames into `out` (sized frames × Channels()); 0 at the end.
  size_t Read(int16_t* out, size_t frames);
  void Rewind();
  // Everything from the current position to the end.
  std::vector<int16_t> ReadAll();

 private:
  SoundDecoder(void* file, int channels, int rate, size_t totalFrames)
      : pFile_(file), channels_(channels), rate_(rate), totalFrames_(totalFrames) {}
  void ScaleFloatSource();

  void* pFile_;
  int channels_;
  int rate_;
  size_t totalFrames_;
  bool isScaleSet_ = false;
};

}  // namespace grindle
