#include "AudioTestRig.h"

#include <signal.h>
#include <sndfile.h>
#include <stdlib.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <numbers>
#include <thread>

#include "Core/MemoryManager.h"
#include "Core/WellKnownKeys.h"

namespace grindle::test {
namespace {

constexpr int kRate = 48000;

// Every folder a test process makes lives under one parent, named after the process. Death-test
// children stop without cleaning up, so each process first removes what dead processes left.
std::filesystem::path TestFolders() {
  return std::filesystem::temp_directory_path() / "grindle_audio_tests";
}

void RemoveFoldersOfDeadProcesses() {
  std::error_code error;
  for (const auto& entry : std::filesystem::directory_iterator(TestFolders(), error)) {
    const pid_t owner = static_cast<pid_t>(std::atol(entry.path().filename().c_str()));
    if (owner > 0 && kill(owner, 0) == -1 && errno == ESRCH) {
      std::filesystem::remove_all(entry.path(), error);
    }
  }
}

std::string MakeTempDir(const char* kind) {
  static int made = 0;
  const std::filesystem::path path =
      TestFolders() / (std::to_string(getpid()) + "_" + kind + "_" + std::to_string(++made));
  std::filesystem::create_directories(path);
  return path.string();
}

// Runs before main, so the configuration is in place before OpenAL reads it (once per process).
// The path is never freed: the exit handler that removes the folder runs after static destructors.
const std::string& MixPath() {
  static const std::string* path = [] {
    RemoveFoldersOfDeadProcesses();
    const std::string dir = MakeTempDir("alsoft");
    const std::string mix = dir + "/mix.wav";
    std::ofstream(dir + "/alsoft.conf") << "[general]\ndrivers=wave\nchannels=stereo\n"
                                           "sample-type=float32\nfrequency=48000\n"
                                           "[wave]\nfile="
                                        << mix << "\n";
    setenv("ALSOFT_CONF", (dir + "/alsoft.conf").c_str(), 1);
    // A driver list in the caller's environment would win over the file.
    unsetenv("ALSOFT_DRIVERS");
    std::atexit(
        [] { std::filesystem::remove_all(std::filesystem::path(MixPath()).parent_path()); });
    return new std::string(mix);
  }();
  return *path;
}
const std::string& kConfigured = MixPath();

std::vector<float> ReadStereo(const std::string& path) {
  SF_INFO info{};
  SNDFILE* file = sf_open(path.c_str(), SFM_READ, &info);
  // No file when the device never reached the wave backend: an empty mix.
  if (file == nullptr) return {};
  if (info.channels != 2) std::abort();
  std::vector<float> frames(static_cast<size_t>(info.frames * info.channels));
  sf_readf_float(file, frames.data(), info.frames);
  sf_close(file);
  return frames;
}

}  // namespace

double Constant(double level) { return level; }

void WriteTone(const std::string& path, double seconds,
               const std::function<double(double)>& envelope) {
  SF_INFO info{};
  info.samplerate = kRate;
  info.channels = 1;
  const bool isVorbis = path.ends_with(".ogg");
  info.format = isVorbis ? SF_FORMAT_OGG | SF_FORMAT_VORBIS : SF_FORMAT_WAV | SF_FORMAT_PCM_16;
  SNDFILE* file = sf_open(path.c_str(), SFM_WRITE, &info);
  if (file == nullptr) std::abort();
  std::vector<float> samples(static_cast<size_t>(seconds * kRate));
  for (size_t i = 0; i < samples.size(); ++i) {
    const double t = static_cast<double>(i) / kRate;
    samples[i] = static_cast<float>(envelope(t) * std::sin(2.0 * std::numbers::pi * 400.0 * t));
  }
  sf_write_float(file, samples.data(), static_cast<sf_count_t>(samples.size()));
  sf_close(file);
}

Mix::Mix(std::vector<float> interleaved) : samples_(std::move(interleaved)) {
  const size_t window = static_cast<size_t>(kWindow * kRate);
  for (size_t start = 0; start + window <= samples_.size() / 2; start += window) {
    levels_.push_back(std::max(Rms(0, start, start + window), Rms(1, start, start + window)));
  }
}

double Mix::Rms(size_t channel, size_t firstFrame, size_t lastFrame) const {
  double sum = 0.0;
  for (size_t i = firstFrame; i < lastFrame; ++i) {
    const double sample = samples_[i * 2 + channel];
    sum += sample * sample;
  }
  return lastFrame > firstFrame ? std::sqrt(sum / double(lastFrame - firstFrame)) : 0.0;
}

std::pair<double, double> Mix::SidesIn(Span span) const {
  const size_t first = static_cast<size_t>(span.start * kRate);
  const size_t last = std::min(samples_.size() / 2, static_cast<size_t>(span.end * kRate));
  return {Rms(0, first, last), Rms(1, first, last)};
}

std::vector<Span> Mix::AudibleSpans(double threshold, double bridge) const {
  std::vector<Span> spans;
  for (size_t i = 0; i < levels_.size(); ++i) {
    if (levels_[i] <= threshold) continue;
    const double start = static_cast<double>(i) * kWindow;
    if (!spans.empty() && start - spans.back().end < bridge) {
      spans.back().end = start + kWindow;
    } else {
      spans.push_back({start, start + kWindow});
    }
  }
  return spans;
}

double Mix::LevelIn(Span span) const {
  double sum = 0.0;
  int count = 0;
  for (double t = span.start + 0.03; t + kWindow <= span.end - 0.03; t += kWindow) {
    sum += levels_[static_cast<size_t>(std::lround(t / kWindow))];
    ++count;
  }
  return count > 0 ? sum / count : 0.0;
}

double Mix::PeakIn(Span span) const {
  double peak = 0.0;
  const size_t last = std::min(samples_.size(), static_cast<size_t>(span.end * kRate) * 2);
  for (size_t i = static_cast<size_t>(span.start * kRate) * 2; i < last; ++i) {
    peak = std::max(peak, double(std::fabs(samples_[i])));
  }
  return peak;
}

AudioRig::AudioRig() : AudioRig(MakeTempDir("assets")) { isOwnRoot_ = true; }

AudioRig::AudioRig(std::string assetRoot) : sRoot_(std::move(assetRoot)), isOwnRoot_(false) {
  InternWellKnownKeys();
  root_.Add<Database>("Systems")->Add<MessageHandler*>("MessageHandler", &handler_);
  pAudio_ = std::make_unique<AudioInterface>(sRoot_);
}

AudioRig::~AudioRig() {
  pAudio_.reset();
  if (isOwnRoot_) std::filesystem::remove_all(sRoot_);
}

void AudioRig::AddTone(const std::string& folder, const std::string& file, double seconds,
                       const std::function<double(double)>& envelope) {
  const std::filesystem::path dir = std::filesystem::path(sRoot_) / "Assets/Audio" / folder;
  std::filesystem::create_directories(dir);
  WriteTone((dir / file).string(), seconds, envelope);
}

void AudioRig::AddFile(const std::string& folder, const std::string& file,
                       const std::string& contents) {
  const std::filesystem::path dir = std::filesystem::path(sRoot_) / "Assets/Audio" / folder;
  std::filesystem::create_directories(dir);
  std::ofstream(dir / file) << contents;
}

void AudioRig::Start() {
  void* args[4] = {&root_, &CurrentMemoryRegistry(), nullptr, nullptr};
  ISystem& system = *pAudio_;
  system.synchronize(args, 4);
  system.Load();
  system.Start();
  handler_.Deliver(MessageHandler::kDeliverAll);
}

void AudioRig::Run(double seconds) {
  using Clock = std::chrono::steady_clock;
  const auto end = Clock::now() + std::chrono::duration<double>(seconds);
  auto last = Clock::now();
  while (Clock::now() < end) {
    handler_.Deliver(MessageHandler::kDeliverAll);
    const auto now = Clock::now();
    pAudio_->Update(std::chrono::duration<float>(now - last).count());
    last = now;
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
  handler_.Deliver(MessageHandler::kDeliverAll);
}

Mix AudioRig::Finish() {
  ISystem& system = *pAudio_;
  system.Exit();
  system.Unload();
  pAudio_.reset();
  return Mix(ReadStereo(kConfigured));
}

void AudioRig::Track(const std::string& name) {
  counts_[name] = 0;
  int& count = counts_[name];
  handler_.Listen(name, "AudioTest", [&count](MessageArgs) { ++count; });
}

int AudioRig::Count(const std::string& name) const {
  const auto found = counts_.find(name);
  return found == counts_.end() ? 0 : found->second;
}

}  // namespace grindle::test
