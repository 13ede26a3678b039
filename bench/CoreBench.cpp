#include <benchmark/benchmark.h>

#include <cstdlib>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "Core/Database.h"
#include "Core/MemoryManager.h"
#include "Core/MessageHandler.h"

namespace grindle {
namespace {

// Find<double> by keys interned beforehand, drawn at random from the database's own, so that the
// lookups land all over its table as a level's do.
void BM_FindRandomKeys(benchmark::State& state) {
  const int count = static_cast<int>(state.range(0));
  Database db;
  std::vector<uint32_t> keys;
  for (int i = 0; i < count; ++i) {
    // The names the physics benchmark gives its boxes: the process has room for 7,001 names in
    // all, which two sets of 5,000 would overrun.
    const std::string name = "Box" + std::to_string(i);
    db.Add<double>(name, i);
    keys.push_back(HashValue(name));
  }
  std::mt19937 random(7);
  std::vector<uint32_t> order(4096);
  for (uint32_t& key : order) key = keys[random() % keys.size()];
  size_t i = 0;
  for (auto _ : state) benchmark::DoNotOptimize(db.Find<double>(order[i++ & 4095]).Get());
}
BENCHMARK(BM_FindRandomKeys)->Arg(200)->Arg(5000);

void BM_SendDeliverNoArguments(benchmark::State& state) {
  MessageHandler handler;
  int64_t heard = 0;
  handler.Listen("Tick", "bench", [&](MessageArgs) { ++heard; });
  for (auto _ : state) {
    handler.Send("Tick");
    handler.Deliver(MessageHandler::kDeliverAll);
  }
  state.SetItemsProcessed(state.iterations());
  benchmark::DoNotOptimize(heard);
}
BENCHMARK(BM_SendDeliverNoArguments);

void BM_SendDeliverTwoDoubles(benchmark::State& state) {
  MessageHandler handler;
  double sum = 0;
  handler.Listen("Move", "bench", [&](MessageArgs args) { sum += *args.Get<double>(0) + *args.Get<double>(1); });
  for (auto _ : state) {
    handler.SendArgs("Move", 1.0, 2.0);
    handler.Deliver(MessageHandler::kDeliverAll);
  }
  state.SetItemsProcessed(state.iterations());
  benchmark::DoNotOptimize(sum);
}
BENCHMARK(BM_SendDeliverTwoDoubles);

// A name past the standard library's short-string buffer: sending it must not allocate.
void BM_SendDeliverLongName(benchmark::State& state) {
  MessageHandler handler;
  int64_t heard = 0;
  constexpr std::string_view kLongName = "SCR:ControllerButtonTriggered";
  handler.Listen(kLongName, "bench", [&](MessageArgs) { ++heard; });
  for (auto _ : state) {
    handler.Send(kLongName);
    handler.Deliver(MessageHandler::kDeliverAll);
  }
  state.SetItemsProcessed(state.iterations());
  benchmark::DoNotOptimize(heard);
}
BENCHMARK(BM_SendDeliverLongName);

// Pool and heap side by side over the same mix of 16- to 64-byte requests.
constexpr uint32_t kSizes[] = {16, 24, 32, 48, 64, 20, 40, 56};

void BM_PoolAllocateFree(benchmark::State& state) {
  MemoryManagerRegistry registry;
  size_t i = 0;
  for (auto _ : state) {
    const uint32_t size = kSizes[i++ & 7];
    void* block = registry.Allocate(size);
    benchmark::DoNotOptimize(block);
    registry.Free(block, size);
  }
}
BENCHMARK(BM_PoolAllocateFree);

void BM_MallocFree(benchmark::State& state) {
  size_t i = 0;
  for (auto _ : state) {
    void* block = std::malloc(kSizes[i++ & 7]);
    benchmark::DoNotOptimize(block);
    std::free(block);
  }
}
BENCHMARK(BM_MallocFree);

// The same pair for one 32-byte class, the common case of entries and arguments.
void BM_PoolOneSize(benchmark::State& state) {
  MemoryManagerRegistry registry;
  for (auto _ : state) {
    void* block = registry.Allocate(32);
    benchmark::DoNotOptimize(block);
    registry.Free(block, 32);
  }
}
BENCHMARK(BM_PoolOneSize);

void BM_MallocOneSize(benchmark::State& state) {
  for (auto _ : state) {
    void* block = std::malloc(32);
    benchmark::DoNotOptimize(block);
    std::free(block);
  }
}
BENCHMARK(BM_MallocOneSize);

}  // namespace
}  // namespace grindle
