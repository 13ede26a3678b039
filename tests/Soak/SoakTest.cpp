// The engine for 20,000 frames on two levels that switch every 100 frames, while a script creates
// an object from an archetype every frame and destroys the one made five frames before: resident
// memory after the first 2,000 frames must grow by less than 1%.
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>

#include "Core/Bootstrapper/Engine.h"
#include "Core/Database.h"
#include "Core/ISystem.h"
#include "Core/WellKnownKeys.h"
#include "DemoGameCopy.h"
#include "SmallPicture.h"

namespace grindle {
namespace {

constexpr int64_t kFrames = 20000;
constexpr int64_t kWarmUpFrames = 2000;

long ResidentPages() {
  long size = 0, resident = 0;
  std::FILE* statm = std::fopen("/proc/self/statm", "r");
  if (statm == nullptr) return -1;
  if (std::fscanf(statm, "%ld %ld", &size, &resident) != 2) resident = -1;
  std::fclose(statm);
  return resident;
}

// Last in the frame loop's list: counts the frames (a level change updates every system once
// more with the loading screen's step, which is not a frame) and samples resident memory.
class MemoryProbe final : public ISystem {
 public:
  explicit MemoryProbe(Database& root) : root_(root) {}
  void synchronize(void**, int) override {}
  void Load() override {}
  void Start() override {}
  void Update(float dt) override {
    if (dt != static_cast<float>(*root_.Find<double>(KeyOf(WellKnown::DT)))) return;
    // What is measured is the engine's memory, not llvmpipe filling a big window.
    if (frames == 0) UseSmallPicture(root_);
    ++frames;
    if (frames == kWarmUpFrames) afterWarmUp = ResidentPages();
    if (frames == kFrames) atEnd = ResidentPages();
    const auto level = root_.Find<std::string>(KeyOf(WellKnown::CurrentLevel));
    if (level && *level != lastLevel) {
      lastLevel = *level;
      ++levelsEntered;
    }
  }
  void Exit() override {}
  void Unload() override {}

  int64_t frames = 0;
  long afterWarmUp = -1, atEnd = -1;
  int levelsEntered = 0;
  std::string lastLevel;

 private:
  Database& root_;
};

std::string SoakLevel() {
  return "<Database name=\"ComponentLists\"><Database name=\"Meshes\"></Database></Database>\n"
         "<Database name=\"GameObjects\"><Database name=\"Director\">\n"
         "<Database name=\"Script\"><string name=\"FileName\">Soak.lua</string></Database>\n"
         "</Database></Database>\n";
}

constexpr const char* kSoakScript = R"(
local frames = 0
function Start() Send("LoadShaders") end
function Update()
  frames = frames + 1
  Send("SCR:CreateObject", "Crate", "Spawn" .. frames)
  if frames > 5 then Send("SCR:DestroyObject", "Spawn" .. (frames - 5)) end
  if frames == 100 then
    SetData("NextLevel", FindData("CurrentLevel") == "SoakA" and "SoakB" or "SoakA")
  end
end
function End() end
)";

int SoakRun() {
  setenv("SDL_VIDEODRIVER", "offscreen", 1);
  setenv("ALSOFT_DRIVERS", "null", 1);
  DemoGameCopy game(GRINDLE_GAME_DIR);
  game.WriteLevel("SoakA", SoakLevel());
  game.WriteLevel("SoakB", SoakLevel());
  game.Write("Scripts/Soak.lua", kSoakScript);
  EngineOptions options;
  options.firstLevel = "SoakA";
  options.frameLimit = kFrames;
  std::unique_ptr<MemoryProbe> probe;
  RunEngine(options, [&](const std::vector<ISystem*>& systems, Database& root) {
    probe = std::make_unique<MemoryProbe>(root);
    std::vector<ISystem*> loop = systems;
    loop.push_back(probe.get());
    return loop;
  });
  const double growth = 100.0 * static_cast<double>(probe->atEnd - probe->afterWarmUp) /
                        static_cast<double>(probe->afterWarmUp);
  std::fprintf(stderr, "frames %lld, levels entered %d, resident pages %ld -> %ld (%+.2f%%)\n",
               static_cast<long long>(probe->frames), probe->levelsEntered, probe->afterWarmUp,
               probe->atEnd, growth);
  const bool ok = probe->frames == kFrames && probe->levelsEntered >= 150 &&
                  probe->afterWarmUp > 0 && growth < 1.0;
  return ok ? 0 : 1;
}

// In a child process: the engine installs and removes the process's memory registry, and the
// measure is the child's own resident memory.
TEST(Soak, TwentyThousandFramesOfLevelSwitchesAndSpawnsKeepMemoryFlat) {
  EXPECT_EXIT(std::exit(SoakRun()), testing::ExitedWithCode(0), "");
}

}  // namespace
}  // namespace grindle
