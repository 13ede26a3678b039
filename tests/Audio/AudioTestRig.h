// Drives a real AudioInterface against OpenAL Soft's wave backend: every test process gets its own
// alsoft.conf (set before any device opens) whose mix file the rig reads back after the device
// closes. Asset folders are written into a fresh temporary root per rig. Time runs on the wall
// clock, as the wave backend mixes in real time; checks therefore look at the shape of the mix
// (levels, spans, gaps), never at exact sample positions.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "Audio/AudioLibraryInterface.h"
#include "Core/Database.h"
#include "Core/MessageHandler.h"

namespace grindle::test {

// A mono 48 kHz file (Ogg Vorbis for ".ogg", else 16-bit WAV) of a 400 Hz sine whose amplitude at
// time t (seconds) is envelope(t).
void WriteTone(const std::string& path, double seconds,
               const std::function<double(double)>& envelope);
double Constant(double level);

struct Span {
  double start = 0.0;  // seconds into the mix
  double end = 0.0;
  double Length() const { return end - start; }
};

// The finished stereo mix, as levels per 10 ms window (the louder side's RMS).
class Mix {
 public:
  static constexpr double kWindow = 0.01;
  explicit Mix(std::vector<float> interleaved);

  // Runs of windows louder than `threshold` (RMS), gaps shorter than `bridge` seconds closed.
  std::vector<Span> AudibleSpans(double threshold = 0.01, double bridge = 0.03) const;
  // Mean RMS over the middle of a span (its edges may hold partial windows).
  double LevelIn(Span span) const;
  double PeakIn(Span span) const;
  // RMS of the left and of the right channel over the span.
  std::pair<double, double> SidesIn(Span span) const;
  const std::vector<double>& Levels() const { return levels_; }

 private:
  double Rms(size_t channel, size_t firstFrame, size_t lastFrame) const;

  std::vector<float> samples_;
  std::vector<double> levels_;
};

class AudioRig {
 public:
  AudioRig();
  // Plays the assets of an existing folder (left as it is) instead of a fresh one.
  explicit AudioRig(std::string assetRoot);
  ~AudioRig();

  // Writes a tone into "Assets/Audio/<folder>/<file>" under the rig's root.
  void AddTone(const std::string& folder, const std::string& file, double seconds,
               const std::function<double(double)>& envelope);
  void AddFile(const std::string& folder, const std::string& file, const std::string& contents);
  const std::string& Root() const { return sRoot_; }
  Database& RootDatabase() { return root_; }
  MessageHandler& Messages() { return handler_; }

  // synchronize, Load and Start, then delivers what Start sent.
  void Start();
  // Delivers messages and calls Update about every 10 ms for `seconds` of wall-clock time.
  void Run(double seconds);
  // Exit, Unload and destruction, which closes the device and completes the mix file.
  Mix Finish();

  AudioInterface& Audio() { return *pAudio_; }
  // Counts deliveries of `name` from now on; Count reads the tally.
  void Track(const std::string& name);
  int Count(const std::string& name) const;

 private:
  std::string sRoot_;
  bool isOwnRoot_ = true;
  Database root_;
  MessageHandler handler_;
  std::unique_ptr<AudioInterface> pAudio_;
  std::map<std::string, int> counts_;
};

}  // namespace grindle::test
