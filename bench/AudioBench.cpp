// The audio system's per-frame Update (AudioInterface::Update) while 32 looping sound effects and
// the title music play, on the demo game's sounds, started the way the game starts them: messages
// to a started AudioInterface. OpenAL Soft's null backend (unless the caller's ALSOFT_DRIVERS
// names another) mixes on a thread of its own at the wall clock's pace, so the music stream's
// refills fall on Update at the rate they do in the game only when Update runs at 60 Hz: the paced
// benchmark is the game's figure, the back-to-back one the bare cost of walking the channels.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <ctime>
#include <string>
#include <thread>
#include <vector>

#include "Audio/AudioLibraryInterface.h"
#include "Audio/AudioSys.h"
#include "Core/Database.h"
#include "Core/MemoryManager.h"
#include "Core/MessageHandler.h"
#include "Core/WellKnownKeys.h"

namespace grindle {
namespace {

using Clock = std::chrono::steady_clock;

constexpr int kSoundCount = 32;
constexpr float kFrameSeconds = 1.0f / 60.0f;
constexpr std::chrono::nanoseconds kFrame(16'666'667);

double CpuSeconds(clockid_t clock) {
  timespec now{};
  clock_gettime(clock, &now);
  return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

class AudioRun {
 public:
  AudioRun() : audio_(GRINDLE_GAME_DIR) {
    setenv("ALSOFT_DRIVERS", "null", 0);
    InternWellKnownKeys();
    root_.Add<Database>("Systems")->Add<MessageHandler*>("MessageHandler", &messages_);
    void* args[kSynchronizeArgCount] = {&root_, &CurrentMemoryRegistry(), nullptr, nullptr};
    ISystem& system = audio_;
    system.synchronize(args, kSynchronizeArgCount);
    system.Load();
    system.Start();  // asks for the looping title music, as the game starts
    messages_.Deliver(MessageHandler::kDeliverAll);
  }
  ~AudioRun() {
    ISystem& system = audio_;
    system.Exit();
    system.Unload();
  }

  // Loops every sound effect of the game in turn until `count` play; no restart, so each one
  // takes a channel of its own.
  void PlayLoopingSounds(int count) {
    std::vector<std::string> names;
    for (const auto& [name, items] : audio_.Audio()->Bank().Sounds()) names.push_back(name);
    std::sort(names.begin(), names.end());
    for (int i = 0; i < count && !names.empty(); ++i) {
      messages_.SendArgs("PlaySound", names[static_cast<size_t>(i) % names.size()], 0.0, 1.0, 1.0);
    }
    messages_.Deliver(MessageHandler::kDeliverAll);
  }

  bool IsPlayingAll() {
    AudioSys& audio = *audio_.Audio();
    return audio.IsMusicPlaying() && audio.PlayingChannelCount() == kSoundCount + 1;
  }
  void Update(float dt) { audio_.Update(dt); }
  int PlayingChannels() { return audio_.Audio()->PlayingChannelCount(); }

 private:
  Database root_;
  MessageHandler messages_;
  AudioInterface audio_;
};

// One Update a frame on a 60 Hz clock; only the Update is timed. The mixer thread's CPU is what
// the process used beside this thread over the run, as a share of one core.
void BM_AudioUpdate32SoundsAndMusicAt60Hz(benchmark::State& state) {
  AudioRun run;
  run.PlayLoopingSounds(kSoundCount);
  if (!run.IsPlayingAll()) return state.SkipWithError("the sounds and the music do not all play");
  const double processStart = CpuSeconds(CLOCK_PROCESS_CPUTIME_ID);
  const double threadStart = CpuSeconds(CLOCK_THREAD_CPUTIME_ID);
  const auto runStart = Clock::now();
  auto frameStart = runStart;
  std::vector<double> updates;
  updates.reserve(static_cast<size_t>(state.max_iterations));
  for (auto _ : state) {
    frameStart += kFrame;
    std::this_thread::sleep_until(frameStart);
    const auto before = Clock::now();
    run.Update(kFrameSeconds);
    const double seconds = std::chrono::duration<double>(Clock::now() - before).count();
    state.SetIterationTime(seconds);
    updates.push_back(seconds);
  }
  const double wall = std::chrono::duration<double>(Clock::now() - runStart).count();
  const double otherThreads = (CpuSeconds(CLOCK_PROCESS_CPUTIME_ID) - processStart) -
                              (CpuSeconds(CLOCK_THREAD_CPUTIME_ID) - threadStart);
  // The median is the usual frame; the slowest are those that decode a chunk of the music.
  std::sort(updates.begin(), updates.end());
  state.counters["median_us"] = updates[updates.size() / 2] * 1e6;
  state.counters["slowest_us"] = updates.back() * 1e6;
  state.counters["mixer_cpu_pct"] = 100.0 * otherThreads / wall;
  state.counters["channels"] = run.PlayingChannels();
}
BENCHMARK(BM_AudioUpdate32SoundsAndMusicAt60Hz)
    ->Iterations(300)
    ->UseManualTime()
    ->Unit(benchmark::kMicrosecond);

void BM_AudioUpdate32SoundsAndMusicBackToBack(benchmark::State& state) {
  AudioRun run;
  run.PlayLoopingSounds(kSoundCount);
  if (!run.IsPlayingAll()) return state.SkipWithError("the sounds and the music do not all play");
  for (auto _ : state) run.Update(kFrameSeconds);
  state.counters["channels"] = run.PlayingChannels();
}
BENCHMARK(BM_AudioUpdate32SoundsAndMusicBackToBack)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace grindle
