// The whole engine on the demo game, headless (SDL's offscreen driver, OpenAL Soft's null backend,
// unless the caller's environment chooses others): start-up to the end of the first frame, and the
// frame-to-frame times of an idle level under the 60 Hz cap. RunEngine keeps the loop's system
// list to itself, so EngineRun repeats its start-up and teardown step for step with the same
// classes; keep the two in the same order. The loop is handed the engine's systems, each wrapped
// in a timer, and after them a clock that stamps the end of every frame's work.
#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <numeric>
#include <string>
#include <utility>
#include <vector>

#include "Core/Bootstrapper/FrameLoop.h"
#include "Core/Bootstrapper/GameTimer.h"
#include "Core/Bootstrapper/LevelManager.h"
#include "Core/Bootstrapper/MainWindow.h"
#include "Core/Bootstrapper/StartupTests.h"
#include "Core/Bootstrapper/SystemList.h"
#include "Core/Database.h"
#include "Core/MemoryManager.h"
#include "Core/MessageHandler.h"
#include "Core/ResourceManager.h"
#include "Core/SystemBase.h"
#include "Core/ThreadManager.h"
#include "Core/WellKnownKeys.h"
#include "Platform/Clock.h"
#include "Platform/Window.h"

extern char** environ;

namespace grindle {
namespace {

using Clock = std::chrono::steady_clock;

double SecondsBetween(Clock::time_point from, Clock::time_point to) {
  return std::chrono::duration<double>(to - from).count();
}

// Only Update reaches the wrapper: the life cycle runs on the engine's own list.
class TimedSystem final : public ISystem {
 public:
  explicit TimedSystem(ISystem& system) : system_(system) {}
  void synchronize(void** args, int count) override { system_.synchronize(args, count); }
  void Load() override { system_.Load(); }
  void Start() override { system_.Start(); }
  void Update(float dt) override {
    const auto start = Clock::now();
    system_.Update(dt);
    dSeconds_ += SecondsBetween(start, Clock::now());
  }
  void Exit() override { system_.Exit(); }
  void Unload() override { system_.Unload(); }

  double Seconds() const { return dSeconds_; }
  std::string Name() const {
    const auto* named = dynamic_cast<const SystemBase*>(&system_);
    return named != nullptr ? named->ShortName() : "System";
  }

 private:
  ISystem& system_;
  double dSeconds_ = 0.0;
};

struct FrameEnd {
  Clock::time_point at;
  double dt;                          // what the loop wrote into DT for the frame
  std::vector<double> systemSeconds;  // each wrapped system's Update time so far
};

// Last in the loop's list. A level change updates every system once more with the loading
// screen's fixed step before the frame's own pass; that pass alone gets the DT just written.
class FrameClock final : public ISystem {
 public:
  FrameClock(Database& root, const std::vector<std::unique_ptr<TimedSystem>>& timed)
      : root_(root), timed_(timed) {}
  void synchronize(void**, int) override {}
  void Load() override {}
  void Start() override {}
  void Update(float dt) override {
    const double written = *root_.Find<double>(KeyOf(WellKnown::DT));
    if (dt != static_cast<float>(written)) return;
    FrameEnd end{Clock::now(), written, {}};
    for (const auto& system : timed_) end.systemSeconds.push_back(system->Seconds());
    ends.push_back(std::move(end));
  }
  void Exit() override {}
  void Unload() override {}

  std::vector<FrameEnd> ends;

 private:
  Database& root_;
  const std::vector<std::unique_ptr<TimedSystem>>& timed_;
};

// RunEngine's thread pool.
constexpr int kWorkerThreads = 5;
constexpr int kJobLimit = 10;

class EngineRun {
 public:
  // RunEngine's start-up, up to the systems' Start. The system named `leftOut` goes through its
  // life cycle but is not updated by the loop.
  explicit EngineRun(const std::string& firstLevel, const std::string& leftOut = "") {
    setenv("SDL_VIDEODRIVER", "offscreen", 0);
    setenv("ALSOFT_DRIVERS", "null", 0);
    std::srand(static_cast<unsigned>(platform::MillisecondsSinceEpoch()));
    registry_ = std::make_unique<MemoryManagerRegistry>();
    InstallMemoryRegistry(registry_.get());
    threads_ = std::make_unique<ThreadManager>(kWorkerThreads, kJobLimit);
    systems_ = std::make_unique<SystemList>();
    root_ = std::make_unique<Database>();
    InternWellKnownKeys();
    Database& services = *root_->Add<Database>("Systems");
    window_ = std::make_unique<MainWindow>(*root_);
    messages_ = std::make_unique<MessageHandler>();
    levels_ = std::make_unique<LevelManager>(*root_, *messages_);
    resources_ = std::make_unique<ResourceManager>(*threads_, *messages_);
    services.Add<MessageHandler*>("MessageHandler", messages_.get());
    services.Add<ResourceManager*>("ResourceManager", resources_.get());
    root_->Add<void*>("hAppInstance", nullptr);
    root_->Add<GameTimer>("GameTimer");
    root_->Add<double>("DT", 0.0);
    root_->Add<bool>("isGamePaused", false);

    window_->Create(*messages_);
    levels_->LoadArchetypes();
    levels_->Initialize(firstLevel);
    systems_->CreateSystems();
    RunStartupUnitTests(false);
    void* args[kSynchronizeArgCount] = {root_.get(), registry_.get(), threads_.get(), nullptr};
    systems_->SynchronizeAll(args, kSynchronizeArgCount);
    systems_->LoadAll();
    systems_->StartAll();

    for (ISystem* system : systems_->Systems()) {
      auto timed = std::make_unique<TimedSystem>(*system);
      if (timed->Name() == leftOut) continue;
      loopSystems_.push_back(timed.get());
      timed_.push_back(std::move(timed));
    }
    clock_ = std::make_unique<FrameClock>(*root_, timed_);
    loopSystems_.push_back(clock_.get());
  }

  // RunEngine's teardown after its frame loop.
  ~EngineRun() {
    systems_->ExitAll();
    systems_->UnloadAll();
    levels_->UnloadAllLevels();
    std::fflush(stdout);
    levels_.reset();
    window_.reset();
    root_.reset();
    systems_.reset();
    resources_.reset();
    threads_.reset();
    messages_.reset();
    InstallMemoryRegistry(nullptr);
    registry_.reset();
    platform::QuitVideo();
  }

  void RunFrames(int64_t frames) {
    FrameLoop loop({*root_, *messages_, *resources_, *levels_, *window_, loopSystems_});
    loop.Run(frames);
  }

  const std::vector<FrameEnd>& FrameEnds() const { return clock_->ends; }
  const std::vector<std::unique_ptr<TimedSystem>>& Timed() const { return timed_; }

 private:
  std::unique_ptr<MemoryManagerRegistry> registry_;
  std::unique_ptr<ThreadManager> threads_;
  std::unique_ptr<SystemList> systems_;
  std::unique_ptr<Database> root_;
  std::unique_ptr<MainWindow> window_;
  std::unique_ptr<MessageHandler> messages_;
  std::unique_ptr<LevelManager> levels_;
  std::unique_ptr<ResourceManager> resources_;
  std::vector<std::unique_ptr<TimedSystem>> timed_;
  std::vector<ISystem*> loopSystems_;
  std::unique_ptr<FrameClock> clock_;
};

bool EnterGameFolder() { return chdir(GRINDLE_GAME_DIR) == 0; }

struct Spread {
  double mean = 0.0, deviation = 0.0, min = 0.0, max = 0.0;
};

Spread SpreadOf(const std::vector<double>& values) {
  Spread spread;
  if (values.empty()) return spread;
  const double count = static_cast<double>(values.size());
  spread.mean = std::accumulate(values.begin(), values.end(), 0.0) / count;
  double squares = 0.0;
  for (double value : values) squares += (value - spread.mean) * (value - spread.mean);
  spread.deviation = values.size() > 1 ? std::sqrt(squares / (count - 1.0)) : 0.0;
  const auto [min, max] = std::minmax_element(values.begin(), values.end());
  spread.min = *min;
  spread.max = *max;
  return spread;
}

// From the first line of start-up to the first frame's last system Update (a first frame runs
// long, so the cap's sleep does not follow it). Each iteration starts and tears down an engine in
// this process; the first one also pays for what a process loads once, the GL driver among it.
void BM_StartupToFirstFrameEnd(benchmark::State& state) {
  if (!EnterGameFolder()) return state.SkipWithError("no game folder");
  double startupSeconds = 0.0, firstFrameSeconds = 0.0, updateSeconds = 0.0, teardownSeconds = 0.0;
  double firstRunSeconds = -1.0;
  for (auto _ : state) {
    const auto start = Clock::now();
    auto engine = std::make_unique<EngineRun>("SplashScreens");
    const auto started = Clock::now();
    engine->RunFrames(1);
    if (engine->FrameEnds().empty()) return state.SkipWithError("the first frame did not end");
    const FrameEnd& firstEnd = engine->FrameEnds().front();
    const double total = SecondsBetween(start, firstEnd.at);
    state.SetIterationTime(total);
    startupSeconds += SecondsBetween(start, started);
    firstFrameSeconds += SecondsBetween(started, firstEnd.at);
    for (double seconds : firstEnd.systemSeconds) updateSeconds += seconds;
    if (firstRunSeconds < 0.0) firstRunSeconds = total;
    const auto teardown = Clock::now();
    engine.reset();
    teardownSeconds += SecondsBetween(teardown, Clock::now());
  }
  const double runs = static_cast<double>(state.iterations());
  state.counters["started_ms"] = 1e3 * startupSeconds / runs;
  state.counters["first_frame_ms"] = 1e3 * firstFrameSeconds / runs;
  // The first frame's system updates, the loading screen's pass included; the rest is loading.
  state.counters["first_frame_updates_ms"] = 1e3 * updateSeconds / runs;
  state.counters["first_run_ms"] = 1e3 * firstRunSeconds;
  state.counters["teardown_ms"] = 1e3 * teardownSeconds / runs;
}
BENCHMARK(BM_StartupToFirstFrameEnd)->Iterations(5)->UseManualTime()->Unit(benchmark::kMillisecond);

// The whole `grindle` process with "--frames N": launch to exit, teardown included. With one frame,
// an upper bound for process start to the end of the first frame, which the binary does not report.
void BM_ProcessLaunchToExit(benchmark::State& state) {
  const std::string frames = std::to_string(state.range(0));
  const char* argv[] = {GRINDLE_BINARY, "--frames",       frames.c_str(),
                        "--data",       GRINDLE_GAME_DIR, nullptr};
  setenv("SDL_VIDEODRIVER", "offscreen", 0);
  setenv("ALSOFT_DRIVERS", "null", 0);
  posix_spawn_file_actions_t quiet;
  posix_spawn_file_actions_init(&quiet);
  posix_spawn_file_actions_addopen(&quiet, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
  for (auto _ : state) {
    const auto start = Clock::now();
    pid_t child = 0;
    if (posix_spawn(&child, GRINDLE_BINARY, &quiet, nullptr, const_cast<char**>(argv), environ) !=
        0) {
      state.SkipWithError("cannot start grindle");
      break;
    }
    int status = 0;
    waitpid(child, &status, 0);
    state.SetIterationTime(SecondsBetween(start, Clock::now()));
    if (!WIFEXITED(status) || WEXITSTATUS(status) != 0) {
      state.SkipWithError("grindle failed");
      break;
    }
  }
  posix_spawn_file_actions_destroy(&quiet);
}
BENCHMARK(BM_ProcessLaunchToExit)
    ->Arg(0)
    ->Arg(1)
    ->Iterations(5)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

constexpr int64_t kWarmUpFrames = 10;
// SplashScreens moves on to the title after 180 frames; the run stays on the splash.
constexpr int64_t kMeasuredFrames = 160;

// Frame-to-frame times between the ends of consecutive frames' work, after a warm-up (the first
// frame loads the level, and the next ones still settle). The reported time is their mean; the
// engine's own DT is reported beside it, and each system's share of a frame.
void BM_IdleFramePacing(benchmark::State& state, const char* level, const char* leftOut) {
  if (!EnterGameFolder()) return state.SkipWithError("no game folder");
  for (auto _ : state) {
    EngineRun engine(level, leftOut);
    engine.RunFrames(kWarmUpFrames + kMeasuredFrames);
    const std::vector<FrameEnd>& ends = engine.FrameEnds();
    if (ends.size() != static_cast<size_t>(kWarmUpFrames + kMeasuredFrames)) {
      return state.SkipWithError("the run ended early");
    }
    std::vector<double> intervals, dts;
    for (size_t i = kWarmUpFrames; i < ends.size(); ++i) {
      intervals.push_back(SecondsBetween(ends[i - 1].at, ends[i].at));
      dts.push_back(ends[i].dt);
    }
    const Spread frames = SpreadOf(intervals);
    state.SetIterationTime(frames.mean);
    state.counters["sd_ms"] = 1e3 * frames.deviation;
    state.counters["min_ms"] = 1e3 * frames.min;
    state.counters["max_ms"] = 1e3 * frames.max;
    state.counters["dt_mean_ms"] = 1e3 * SpreadOf(dts).mean;
    state.counters["fps"] = 1.0 / frames.mean;
    // Each system's Update time in the measured frames, per frame.
    const FrameEnd& first = ends[static_cast<size_t>(kWarmUpFrames) - 1];
    double work = 0.0;
    for (size_t i = 0; i < engine.Timed().size(); ++i) {
      const double seconds = (ends.back().systemSeconds[i] - first.systemSeconds[i]) /
                             static_cast<double>(kMeasuredFrames);
      state.counters[engine.Timed()[i]->Name() + "_ms"] = 1e3 * seconds;
      work += seconds;
    }
    state.counters["updates_ms"] = 1e3 * work;
  }
}
BENCHMARK_CAPTURE(BM_IdleFramePacing, LoadingScreen, "LoadingScreen", "")
    ->Iterations(1)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_IdleFramePacing, SplashScreens, "SplashScreens", "")
    ->Iterations(1)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);
// The cap itself where the renderer cannot draw a frame within it (software OpenGL): every other
// system runs as usual, the renderer is loaded and started but not updated.
BENCHMARK_CAPTURE(BM_IdleFramePacing, LoadingScreenWithoutRenderer, "LoadingScreen", "Graphics")
    ->Iterations(1)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace grindle
