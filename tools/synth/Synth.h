// A very small offline synthesiser for the demo content: a mono or stereo float track that notes,
// sweeps and noise bursts are added into, then written as Ogg Vorbis. Single-threaded; the output
// depends only on the calls made (the noise generator has a fixed seed).
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace synth {

inline constexpr int kRate = 48000;

enum class Wave { kSine, kSquare, kTriangle, kSaw };

// Attack and release in seconds; the level in between is held.
struct Envelope {
  double attack = 0.005;
  double release = 0.05;
  double decayPerSecond = 0.0;  // exponential fall while held (plucked, percussive)
};

double MidiToHertz(int note);

class Track {
 public:
  Track(double seconds, int channels);

  // A note from `start` for `length` seconds at `level`, panned -1 (left) .. 1 (right).
  void Note(double start, double length, double hertz, Wave wave, double level, Envelope envelope,
            double pan = 0.0);
  // A pitch glide from `fromHertz` to `toHertz`.
  void Sweep(double start, double length, double fromHertz, double toHertz, Wave wave, double level,
             Envelope envelope, double pan = 0.0);
  // White noise through a one-pole low-pass (`brightness` 0..1).
  void Noise(double start, double length, double level, double brightness, Envelope envelope,
             double pan = 0.0);

  // Scales the whole track so its loudest sample is `peak`.
  void Normalise(double peak);
  // Writes Ogg Vorbis at the given quality (0..1); false if the file cannot be written.
  bool WriteOgg(const std::string& path, double quality) const;

 private:
  void Add(size_t frame, double value, double pan);
  static double Shape(Wave wave, double phase);
  static double Gain(const Envelope& envelope, double t, double length);

  int channels_;
  std::vector<float> samples_;
  uint32_t noiseState_ = 0x2545F491u;
};

}  // namespace synth
