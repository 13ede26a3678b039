// Script costs: "Update" in 1,000 script components through the engine against bare Lua calls,
// the memory a script component takes against a bare Lua state, and FindData of a four-part path.
#include <benchmark/benchmark.h>
#include <malloc.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <lua.hpp>
#include <string>
#include <vector>

#include "AI/Script.h"
#include "AI/ScriptMemory.h"
#include "Core/Database.h"
#include "Core/MessageHandler.h"
#include "Core/WellKnownKeys.h"

namespace grindle {
namespace {

constexpr int kScriptCount = 1000;
constexpr const char* kAddingScript = "local x = 0\nfunction Update() x = x + 1 end\n";

// A level "Arena" with `count` objects whose scripts are `text`, loaded by a host, in a temporary
// working directory that lives as long as the world.
class ScriptBenchWorld {
 public:
  ScriptBenchWorld(int count, const std::string& text) {
    InternWellKnownKeys();
    previous_ = std::filesystem::current_path();
    char pattern[] = "/tmp/grindle_script_bench_XXXXXX";
    directory_ = mkdtemp(pattern);
    std::filesystem::create_directories(directory_ / "Scripts");
    std::filesystem::current_path(directory_);
    std::ofstream("Scripts/Bench.lua") << text;
    root_.Add<Database>("Systems")->Add<MessageHandler*>("MessageHandler", &handler_);
    root_.Add<std::string>("CurrentLevel", "Arena");
    root_.Add<Database>("Levels")->Add<Database>("Arena")->Add<Database>("GameObjects");
    host_ = std::make_unique<ScriptHost>(root_, handler_);
    AddComponents(count);
  }
  // Objects "Object<n>" on, each with a script component running the world's script.
  void AddComponents(int count) {
    Database& objects = *root_.Find<Database>("Levels")->Find<Database>("Arena")->Find<Database>(
        "GameObjects");
    for (int i = 0; i < count; ++i, ++added_) {
      const std::string name = "Object" + std::to_string(added_);
      const auto component = objects.Add<Database>(name)->Add<Database>("Script");
      component->Add<std::string>("FileName", "Bench.lua");
      host_->LoadScript(component, "Levels.Arena.GameObjects." + name + ".Script");
    }
  }
  ~ScriptBenchWorld() {
    host_.reset();
    std::filesystem::current_path(previous_);
    std::filesystem::remove_all(directory_);
  }

  Database root_;
  MessageHandler handler_;
  std::unique_ptr<ScriptHost> host_;

 private:
  std::filesystem::path previous_;
  std::filesystem::path directory_;
  int added_ = 0;
};

// Bytes the process holds from malloc, the large mapped blocks included.
double HeapBytes() {
  const struct mallinfo2 info = mallinfo2();
  return static_cast<double>(info.uordblks + info.hblkhd);
}

// The same, less what script states have taken and not yet used: what states made from here on
// cost, whether their memory is already held (states closed by earlier benchmarks) or not.
double HeapBytesForScripts() { return HeapBytes() - static_cast<double>(SpareScriptBytes()); }

// The yardstick: the same 1,000 calls made straight through the Lua API.
void BM_BareLuaUpdate1000(benchmark::State& state) {
  std::vector<lua_State*> states;
  for (int i = 0; i < kScriptCount; ++i) {
    lua_State* L = luaL_newstate();
    luaL_openlibs(L);
    luaL_dostring(L, kAddingScript);
    states.push_back(L);
  }
  for (auto _ : state) {
    for (lua_State* L : states) {
      lua_getglobal(L, "Update");
      lua_pcall(L, 0, 0, 0);
    }
  }
  state.SetItemsProcessed(state.iterations() * kScriptCount);
  for (lua_State* L : states) lua_close(L);
}
BENCHMARK(BM_BareLuaUpdate1000);

void BM_EngineUpdate1000(benchmark::State& state) {
  ScriptBenchWorld world(kScriptCount, kAddingScript);
  for (auto _ : state) world.host_->CallInLevel("Arena", "Update");
  state.SetItemsProcessed(state.iterations() * kScriptCount);
}
BENCHMARK(BM_EngineUpdate1000);

// What a script component costs the whole process (its state, arena, database entries and the
// host's records), against a bare Lua state with the standard libraries running the same script
// through Lua's own allocator: heap growth over 1,000 of each, after the first of each is made.
// Memory the script slabs already hold unused counts as growth when the components take it.
void BM_MemoryPerComponent(benchmark::State& state) {
  double component = 0;
  double bare = 0;
  for (auto _ : state) {
    {
      ScriptBenchWorld world(1, kAddingScript);
      const double before = HeapBytesForScripts();
      world.AddComponents(kScriptCount);
      component = (HeapBytesForScripts() - before) / kScriptCount;
    }
    std::vector<lua_State*> states;
    const double before = HeapBytes();
    for (int i = 0; i < kScriptCount; ++i) {
      lua_State* L = luaL_newstate();
      luaL_openlibs(L);
      luaL_dostring(L, kAddingScript);
      states.push_back(L);
    }
    bare = (HeapBytes() - before) / kScriptCount;
    for (lua_State* L : states) lua_close(L);
  }
  state.counters["componentKB"] = component / 1024.0;
  state.counters["bareKB"] = bare / 1024.0;
  state.counters["ratio"] = component / bare;
}
BENCHMARK(BM_MemoryPerComponent)->Iterations(1)->Unit(benchmark::kMillisecond);

// One FindData call of "GlobalVariables.Stats.Round.Score" from a script (1,000 per iteration).
void BM_FindDataFourParts(benchmark::State& state) {
  ScriptBenchWorld world(1, R"(
function Probe()
  local s = 0
  for i = 1, 1000 do s = s + FindData("GlobalVariables.Stats.Round.Score") end
  return s
end)");
  world.root_.Add<Database>("GlobalVariables")
      ->Add<Database>("Stats")
      ->Add<Database>("Round")
      ->Add<double>("Score", 2.0);
  lua_State* L = *world.root_.Find<Database>("Levels")
                      ->Find<Database>("Arena")
                      ->Find<Database>("GameObjects")
                      ->Find<Database>("Object0")
                      ->Find<Database>("Script")
                      ->Find<lua_State*>("LuaState");
  for (auto _ : state) {
    lua_getglobal(L, "Probe");
    lua_pcall(L, 0, 1, 0);
    lua_pop(L, 1);
  }
  state.SetItemsProcessed(state.iterations() * 1000);
}
BENCHMARK(BM_FindDataFourParts);

}  // namespace
}  // namespace grindle
