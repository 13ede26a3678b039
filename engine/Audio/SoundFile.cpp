#include "Audio/SoundFile.h"

#include <sndfile.h>

#include <cstdio>

namespace grindle {
namespace {

SNDFILE* File(void* p) { return static_cast<SNDFILE*>(p); }

}  // namespace

std::unique_ptr<SoundDecoder> SoundDecoder::Open(const std::string& path) {
  SF_INFO info{};
  SNDFILE* file = sf_open(path.c_str(), SFM_READ, &info);
  if (file == nullptr) {
    std::fprintf(stderr, "Audio: cannot decode \"%s\": %s\n", path.c_str(), sf_strerror(nullptr));
    return nullptr;
  }
  // Buffers take mono or stereo only; an empty file has nothing to play.
  if (info.channels < 1 || info.channels > 2 || info.frames <= 0 || info.samplerate <= 0) {
    std::fprintf(stderr,
                 "Audio: cannot decode \"%s\": expected 1 or 2 channels and at least one frame, "
                 "found %d channels and %lld frames\n",
                 path.c_str(), info.channels, static_cast<long long>(info.frames));
    sf_close(file);
    return nullptr;
  }
  return std::unique_ptr<SoundDecoder>(
      new SoundDecoder(file, info.channels, info.samplerate, static_cast<size_t>(info.frames)));
}

SoundDecoder::~SoundDecoder() { sf_close(File(pFile_)); }

// Float sources (Vorbis among them) are scaled by their loudest sample into the 16-bit range
// rather than wrapped. Finding that sample decodes the whole file, so it waits for the first read
// instead of slowing every open; the library puts the read position back where it was.
void SoundDecoder::ScaleFloatSource() {
  if (isScaleSet_) return;
  sf_command(File(pFile_), SFC_SET_SCALE_FLOAT_INT_READ, nullptr, SF_TRUE);
  isScaleSet_ = true;
}

size_t SoundDecoder::Read(int16_t* out, size_t frames) {
  ScaleFloatSource();
  const sf_count_t read = sf_readf_short(File(pFile_), out, static_cast<sf_count_t>(frames));
  return read > 0 ? static_cast<size_t>(read) : 0;
}

void SoundDecoder::Rewind() { sf_seek(File(pFile_), 0, SEEK_SET); }

std::vector<int16_t> SoundDecoder::ReadAll() {
  std::vector<int16_t> samples(totalFrames_ * static_cast<size_t>(channels_));
  const size_t frames = Read(samples.data(), totalFrames_);
  samples.resize(frames * static_cast<size_t>(channels_));
  return samples;
}

}  // namespace grindle
