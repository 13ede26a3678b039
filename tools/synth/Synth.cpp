#include "Synth.h"

#include <sndfile.h>

#include <algorithm>
#include <cmath>
#include <fstream>
#include <iterator>
#include <numbers>

namespace synth {
namespace {

uint32_t OggCrc(const unsigned char* data, size_t size) {
  uint32_t crc = 0;
  for (size_t i = 0; i < size; ++i) {
    crc ^= static_cast<uint32_t>(data[i]) << 24;
    for (int bit = 0; bit < 8; ++bit)
      crc = (crc & 0x80000000u) ? (crc << 1) ^ 0x04C11DB7u : crc << 1;
  }
  return crc;
}

// libsndfile gives each Ogg stream a random serial number; a fixed one (and page checksums to
// match) makes every run write the same bytes.
bool FixSerialNumbers(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  std::vector<unsigned char> bytes((std::istreambuf_iterator<char>(in)), {});
  size_t page = 0;
  while (page + 27 <= bytes.size()) {
    unsigned char* header = bytes.data() + page;
    if (header[0] != 'O' || header[1] != 'g' || header[2] != 'g' || header[3] != 'S') return false;
    const size_t segments = header[26];
    size_t length = 27 + segments;
    if (page + length > bytes.size()) return false;
    for (size_t i = 0; i < segments; ++i) length += header[27 + i];
    if (page + length > bytes.size()) return false;
    const uint32_t serial = 0x47524E44u;  // "GRND"
    for (int i = 0; i < 4; ++i) header[14 + i] = static_cast<unsigned char>(serial >> (8 * i));
    for (int i = 0; i < 4; ++i) header[22 + i] = 0;
    const uint32_t crc = OggCrc(header, length);
    for (int i = 0; i < 4; ++i) header[22 + i] = static_cast<unsigned char>(crc >> (8 * i));
    page += length;
  }
  std::ofstream out(path, std::ios::binary | std::ios::trunc);
  out.write(reinterpret_cast<const char*>(bytes.data()),
            static_cast<std::streamsize>(bytes.size()));
  return page == bytes.size() && out.good();
}

}  // namespace

double MidiToHertz(int note) { return 440.0 * std::pow(2.0, (note - 69) / 12.0); }

Track::Track(double seconds, int channels)
    : channels_(channels),
      samples_(static_cast<size_t>(seconds * kRate) * static_cast<size_t>(channels), 0.0f) {}

double Track::Shape(Wave wave, double phase) {
  const double p = phase - std::floor(phase);
  switch (wave) {
    case Wave::kSine:
      return std::sin(2.0 * std::numbers::pi * p);
    case Wave::kSquare:
      return p < 0.5 ? 0.6 : -0.6;
    case Wave::kTriangle:
      return p < 0.5 ? 4.0 * p - 1.0 : 3.0 - 4.0 * p;
    case Wave::kSaw:
      return 0.7 * (2.0 * p - 1.0);
  }
  return 0.0;
}

double Track::Gain(const Envelope& envelope, double t, double length) {
  double gain = std::exp(-envelope.decayPerSecond * t);
  if (t < envelope.attack) gain *= t / envelope.attack;
  if (t > length - envelope.release) gain *= std::max(0.0, (length - t) / envelope.release);
  return gain;
}

void Track::Add(size_t frame, double value, double pan) {
  const size_t index = frame * static_cast<size_t>(channels_);
  if (index + static_cast<size_t>(channels_) > samples_.size()) return;
  if (channels_ == 1) {
    samples_[index] += static_cast<float>(value);
    return;
  }
  // Constant-power pan.
  const double angle = (pan + 1.0) * std::numbers::pi / 4.0;
  samples_[index] += static_cast<float>(value * std::cos(angle));
  samples_[index + 1] += static_cast<float>(value * std::sin(angle));
}

void Track::Note(double start, double length, double hertz, Wave wave, double level,
                 Envelope envelope, double pan) {
  Sweep(start, length, hertz, hertz, wave, level, envelope, pan);
}

void Track::Sweep(double start, double length, double fromHertz, double toHertz, Wave wave,
                  double level, Envelope envelope, double pan) {
  const size_t first = static_cast<size_t>(start * kRate);
  const size_t count = static_cast<size_t>(length * kRate);
  double phase = 0.0;
  for (size_t i = 0; i < count; ++i) {
    const double t = static_cast<double>(i) / kRate;
    const double hertz = fromHertz + (toHertz - fromHertz) * (t / length);
    Add(first + i, level * Gain(envelope, t, length) * Shape(wave, phase), pan);
    phase += hertz / kRate;
  }
}

void Track::Noise(double start, double length, double level, double brightness, Envelope envelope,
                  double pan) {
  const size_t first = static_cast<size_t>(start * kRate);
  const size_t count = static_cast<size_t>(length * kRate);
  double filtered = 0.0;
  for (size_t i = 0; i < count; ++i) {
    noiseState_ ^= noiseState_ << 13;
    noiseState_ ^= noiseState_ >> 17;
    noiseState_ ^= noiseState_ << 5;
    const double white = static_cast<double>(noiseState_) / 2147483648.0 - 1.0;
    filtered += brightness * (white - filtered);
    const double t = static_cast<double>(i) / kRate;
    Add(first + i, level * Gain(envelope, t, length) * filtered, pan);
  }
}

void Track::Normalise(double peak) {
  float loudest = 0.0f;
  for (float sample : samples_) loudest = std::max(loudest, std::fabs(sample));
  if (loudest <= 0.0f) return;
  const float scale = static_cast<float>(peak) / loudest;
  for (float& sample : samples_) sample *= scale;
}

bool Track::WriteOgg(const std::string& path, double quality) const {
  SF_INFO info{};
  info.samplerate = kRate;
  info.channels = channels_;
  info.format = SF_FORMAT_OGG | SF_FORMAT_VORBIS;
  SNDFILE* file = sf_open(path.c_str(), SFM_WRITE, &info);
  if (file == nullptr) return false;
  sf_command(file, SFC_SET_VBR_ENCODING_QUALITY, &quality, sizeof quality);
  const sf_count_t frames = static_cast<sf_count_t>(samples_.size()) / channels_;
  const bool isComplete = sf_writef_float(file, samples_.data(), frames) == frames;
  return sf_close(file) == 0 && isComplete && FixSerialNumbers(path);
}

}  // namespace synth
