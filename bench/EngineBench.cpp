// The whole engine on the demo game, headless (SDL's offscreen driver, OpenAL Soft's null backend,
// unless the caller's environment chooses others): start-up to the end of the first frame, and the
// frame-to-frame times of an idle level under the 60 Hz cap. The engine runs as `grindle` runs it;
// the frame loop is handed the engine's systems, each wrapped in a timer, and after them a clock
// that stamps the end of every frame's work.
#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <spawn.h>
#include <sys/resource.h>
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

#include "Core/Bootstrapper/Engine.h"
#include "Core/Database.h"
#include "Core/SystemBase.h"
#include "Core/WellKnownKeys.h"

extern char** environ;

namespace grindle {
namespace {

using Clock = std::chrono::steady_clock;

double SecondsBetween(Clock::time_point from, Clock::time_point to) {
  return std::chrono::duration<double>(to - from).count();
}

// Only Update reaches the wrapper: the life cycle runs on the engine's own list. The name is kept
// because the system is gone once RunEngine returns.
class TimedSystem final : public ISystem {
 public:
  explicit TimedSystem(ISystem& system) : system_(system), sName_(NameOf(system)) {}
  void synchronize(void**, int) override {}
  void Load() override {}
  void Start() override {}
  void Update(float dt) override {
    const auto start = Clock::now();
    system_.Update(dt);
    dSeconds_ += SecondsBetween(start, Clock::now());
  }
  void Exit() override {}
  void Unload() override {}

  double Seconds() const { return dSeconds_; }
  const std::string& Name() const { return sName_; }

 private:
  static std::string NameOf(const ISystem& system) {
    const auto* named = dynamic_cast<const SystemBase*>(&system);
    return named != nullptr ? named->ShortName() : "System";
  }

  ISystem& system_;
  std::string sName_;
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

// One engine run through RunEngine, on a level of the demo game, for a number of frames. The
// loop updates the engine's systems each wrapped in a timer, then a clock that stamps the end of
// every frame's work; `leftOut` names a system the loop does not update (its life cycle still
// runs).
class EngineRun {
 public:
  EngineRun(const std::string& firstLevel, int64_t frames, const std::string& leftOut = "") {
    setenv("SDL_VIDEODRIVER", "offscreen", 0);
    setenv("ALSOFT_DRIVERS", "null", 0);
    EngineOptions options;
    options.firstLevel = firstLevel;
    options.frameLimit = frames;
    start_ = Clock::now();
    RunEngine(options, [&](const std::vector<ISystem*>& systems, Database& root) {
      started_ = Clock::now();
      std::vector<ISystem*> loopSystems;
      for (ISystem* system : systems) {
        auto timed = std::make_unique<TimedSystem>(*system);
        if (timed->Name() == leftOut) continue;
        loopSystems.push_back(timed.get());
        timed_.push_back(std::move(timed));
      }
      clock_ = std::make_unique<FrameClock>(root, timed_);
      loopSystems.push_back(clock_.get());
      return loopSystems;
    });
    finished_ = Clock::now();
  }

  Clock::time_point Start() const { return start_; }
  // When the systems had started, and when RunEngine returned after its teardown.
  Clock::time_point Started() const { return started_; }
  Clock::time_point Finished() const { return finished_; }
  const std::vector<FrameEnd>& FrameEnds() const { return clock_->ends; }
  const std::vector<std::unique_ptr<TimedSystem>>& Timed() const { return timed_; }

 private:
  Clock::time_point start_, started_, finished_;
  std::vector<std::unique_ptr<TimedSystem>> timed_;
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
    const EngineRun engine("SplashScreens", 1);
    if (engine.FrameEnds().empty()) return state.SkipWithError("the first frame did not end");
    const FrameEnd& firstEnd = engine.FrameEnds().front();
    const double total = SecondsBetween(engine.Start(), firstEnd.at);
    state.SetIterationTime(total);
    startupSeconds += SecondsBetween(engine.Start(), engine.Started());
    firstFrameSeconds += SecondsBetween(engine.Started(), firstEnd.at);
    for (double seconds : firstEnd.systemSeconds) updateSeconds += seconds;
    if (firstRunSeconds < 0.0) firstRunSeconds = total;
    teardownSeconds += SecondsBetween(firstEnd.at, engine.Finished());
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
// "cpu_ms" is the median over the runs of the process's own CPU time (user + system, all threads);
// "rss_mb" and "minor_faults" the medians of its peak resident memory and of its page faults.
void BM_ProcessLaunchToExit(benchmark::State& state) {
  const std::string frames = std::to_string(state.range(0));
  const char* argv[] = {GRINDLE_BINARY, "--frames",       frames.c_str(),
                        "--data",       GRINDLE_GAME_DIR, nullptr};
  setenv("SDL_VIDEODRIVER", "offscreen", 0);
  setenv("ALSOFT_DRIVERS", "null", 0);
  posix_spawn_file_actions_t quiet;
  posix_spawn_file_actions_init(&quiet);
  posix_spawn_file_actions_addopen(&quiet, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
  std::vector<double> cpu, rss, faults;
  for (auto _ : state) {
    const auto start = Clock::now();
    pid_t child = 0;
    if (posix_spawn(&child, GRINDLE_BINARY, &quiet, nullptr, const_cast<char**>(argv), environ) !=
        0) {
      state.SkipWithError("cannot start grindle");
      break;
    }
    int status = 0;
    struct rusage usage = {};
    wait4(child, &status, 0, &usage);
    state.SetIterationTime(SecondsBetween(start, Clock::now()));
    const auto seconds = [](const timeval& t) { return t.tv_sec + t.tv_usec * 1e-6; };
    cpu.push_back(seconds(usage.ru_utime) + seconds(usage.ru_stime));
    rss.push_back(static_cast<double>(usage.ru_maxrss) / 1024.0);
    faults.push_back(static_cast<double>(usage.ru_minflt));
    if (!WIFEXITED(status) || WEXITSTATUS(status) != 0) {
      state.SkipWithError("grindle failed");
      break;
    }
  }
  posix_spawn_file_actions_destroy(&quiet);
  const auto median = [](std::vector<double>& values) {
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
  };
  if (!cpu.empty()) {
    state.counters["cpu_ms"] = 1e3 * median(cpu);
    state.counters["rss_mb"] = median(rss);
    state.counters["minor_faults"] = median(faults);
  }
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
    const EngineRun engine(level, kWarmUpFrames + kMeasuredFrames, leftOut);
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
// A four-player round of the game: computer players running, the potato and its fuse, particles
// and the HUD (the first blast comes long after the measured frames).
BENCHMARK_CAPTURE(BM_IdleFramePacing, ArenaRound, "Arena", "")
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
