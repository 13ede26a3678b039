// Drives a real AudioInterface against OpenAL Soft's wave backend: every test process gets its own
// folder and alsoft.conf (set before any device opens) whose mix file the rig reads back after the
// device closes. Time runs on the wall clock, as the wave backend mixes in real time; checks
// therefore look at the shape of the mix (levels, spans, gaps), never at exact sample positions.
#pragma once

#include <signal.h>
#include <sndfile.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <map>
#include <numbers>
#include <thread>

#include "Audio/AudioLibraryInterface.h"
#include "Audio/AudioSys.h"
#include "Core/Database.h"
#include "Core/MessageHandler.h"
#include "Core/WellKnownKeys.h"
#include "SystemRig.h"

namespace grindle::test {

namespace fs = std::filesystem;
inline constexpr int kRate = 48000;

// Everything a test process writes lives in <tmp>/grindle_audio_tests/<pid>. Made before main, so
// the configuration is in place before OpenAL reads it (once per process). Death-test children stop
// without cleaning up, so each process first removes what dead processes left. Never freed: the
// exit handler that removes the folder runs after static destructors.
inline const fs::path& Folder() {
  static const fs::path* folder = [] {
    const fs::path parent = fs::temp_directory_path() / "grindle_audio_tests";
    std::error_code error;
    for (const auto& entry : fs::directory_iterator(parent, error)) {
      const pid_t owner = static_cast<pid_t>(std::atol(entry.path().filename().c_str()));
      if (owner > 0 && kill(owner, 0) == -1 && errno == ESRCH) fs::remove_all(entry.path(), error);
    }
    const auto* dir = new fs::path(parent / std::to_string(getpid()));
    fs::create_directories(*dir);
    std::ofstream(*dir / "alsoft.conf") << "[general]\ndrivers=wave\nchannels=stereo\n"
                                           "sample-type=float32\nfrequency=48000\n[wave]\nfile="
                                        << (*dir / "mix.wav").string() << "\n";
    setenv("ALSOFT_CONF", (*dir / "alsoft.conf").c_str(), 1);
    // A driver list in the caller's environment would win over the file.
    unsetenv("ALSOFT_DRIVERS");
    std::atexit([] { fs::remove_all(Folder()); });
    return dir;
  }();
  return *folder;
}
inline const fs::path& kFolder = Folder();

struct Span {
  double start = 0.0, end = 0.0;  // seconds into the mix
  double Length() const { return end - start; }
};

// The finished stereo mix (the configuration asks for two channels), as levels per 10 ms window
// (the louder side's RMS).
struct Mix {
  static constexpr double kWindow = 0.01;
  std::vector<float> samples;
  std::vector<double> levels;

  explicit Mix(std::vector<float> interleaved) : samples(std::move(interleaved)) {
    for (size_t i = 0; (i + 1) * kWindow * kRate <= samples.size() / 2; ++i) {
      levels.push_back(Level({i * kWindow, (i + 1) * kWindow}));
    }
  }
  // RMS of one channel (0 left, 1 right) over exactly the span's samples.
  double Rms(int channel, Span span) const {
    const size_t first = std::lround(span.start * kRate), last = std::lround(span.end * kRate);
    double sum = 0.0;
    for (size_t i = first; i < last; ++i) sum += std::pow(samples[i * 2 + channel], 2);
    return last > first ? std::sqrt(sum / double(last - first)) : 0.0;
  }
  double Level(Span span) const { return std::max(Rms(0, span), Rms(1, span)); }
  // The level over the middle of a span (its edges may hold partial windows).
  double LevelIn(Span span) const { return Level({span.start + 0.03, span.end - 0.03}); }
  // Runs of windows louder than `threshold` (RMS), gaps shorter than `bridge` seconds closed.
  std::vector<Span> AudibleSpans(double threshold = 0.01, double bridge = 0.03) const {
    std::vector<Span> spans;
    for (size_t i = 0; i < levels.size(); ++i) {
      const double start = static_cast<double>(i) * kWindow;
      if (levels[i] <= threshold) continue;
      if (spans.empty() || start - spans.back().end >= bridge) spans.push_back({start, start});
      spans.back().end = start + kWindow;
    }
    return spans;
  }
};

class AudioRig {
 public:
  // Plays the assets under `assetRoot`, left as they are; a fresh folder when empty.
  explicit AudioRig(std::string assetRoot = "") : root_(std::move(assetRoot)) {
    static int made = 0;
    if (root_.empty()) root_ = (Folder() / ("assets" + std::to_string(++made))).string();
    InternWellKnownKeys();
    PublishHandler(root, messages);
    audio_ = std::make_unique<AudioInterface>(root_);
  }
  ~AudioRig() {
    if (audio_) BringDown(*audio_);
  }

  // A mono 48 kHz file (Ogg Vorbis for ".ogg", else 16-bit WAV) at "Assets/Audio/<path>" of a
  // 400 Hz sine whose amplitude at t seconds is envelope(t), or a constant level.
  AudioRig& AddTone(const std::string& path, double seconds,
                    const std::function<double(double)>& envelope) {
    std::vector<float> samples(static_cast<size_t>(seconds * kRate));
    for (size_t i = 0; i < samples.size(); ++i) {
      const double t = static_cast<double>(i) / kRate;
      samples[i] = static_cast<float>(envelope(t) * std::sin(2.0 * std::numbers::pi * 400.0 * t));
    }
    const int format = path.ends_with(".ogg") ? SF_FORMAT_OGG | SF_FORMAT_VORBIS
                                              : SF_FORMAT_WAV | SF_FORMAT_PCM_16;
    SF_INFO info{0, kRate, 1, format, 0, 0};
    SNDFILE* out = sf_open(AssetPath(path).c_str(), SFM_WRITE, &info);
    if (out == nullptr) std::abort();
    sf_write_float(out, samples.data(), static_cast<sf_count_t>(samples.size()));
    sf_close(out);
    return *this;
  }
  AudioRig& AddTone(const std::string& path, double seconds, double level = 0.3) {
    return AddTone(path, seconds, [level](double) { return level; });
  }
  AudioRig& AddFile(const std::string& path, const std::string& contents) {
    std::ofstream(AssetPath(path)) << contents;
    return *this;
  }

  // synchronize, Load and Start, then delivers what Start sent.
  void Start() {
    BringUp(*audio_, root);
    messages.Deliver(MessageHandler::kDeliverAll);
  }
  template <class... T>
  AudioRig& Send(std::string_view name, T&&... values) {
    messages.SendArgs(name, std::forward<T>(values)...);
    return *this;
  }
  // Delivers messages and calls Update about every 10 ms for `seconds` of wall-clock time.
  void Run(double seconds) {
    using Clock = std::chrono::steady_clock;
    const auto end = Clock::now() + std::chrono::duration<double>(seconds);
    for (auto last = Clock::now(); Clock::now() < end;) {
      messages.Deliver(MessageHandler::kDeliverAll);
      const auto now = Clock::now();
      audio_->Update(std::chrono::duration<float>(now - std::exchange(last, now)).count());
      std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    messages.Deliver(MessageHandler::kDeliverAll);
  }
  // Exit, Unload and destruction close the device and complete the mix file, which is read back
  // (empty when the device never reached the wave backend).
  Mix Finish() {
    BringDown(*audio_);
    audio_.reset();
    SF_INFO info{};
    SNDFILE* file = sf_open((Folder() / "mix.wav").c_str(), SFM_READ, &info);
    if (file == nullptr) return Mix({});
    std::vector<float> frames(static_cast<size_t>(info.frames * 2));
    sf_readf_float(file, frames.data(), info.frames);
    sf_close(file);
    return Mix(std::move(frames));
  }
  AudioSys& Sys() { return *audio_->Audio(); }
  // Counts deliveries of `name` into counts[name] from now on.
  AudioRig& Track(const std::string& name) {
    messages.Listen(name, "AudioTest", [this, name](MessageArgs) { ++counts[name]; });
    return *this;
  }

  Database root;
  MessageHandler messages;
  std::map<std::string, int> counts;

 private:
  std::string AssetPath(const std::string& path) const {
    const fs::path file = fs::path(root_) / "Assets/Audio" / path;
    fs::create_directories(file.parent_path());
    return file.string();
  }

  std::string root_;
  std::unique_ptr<AudioInterface> audio_;
};

}  // namespace grindle::test
