#include <benchmark/benchmark.h>

#include <cstdlib>
#include <string>
#include <string_view>

#include "Core/Database.h"
#include "Core/MemoryManager.h"
#include "Core/MessageHandler.h"

namespace grindle {
namespace {

void BM_FindByPreInternedKey(benchmark::State& state) {
  Database db;
  for (int i = 0; i < 200; ++i) db.Add<double>("Entry" + std::to_string(i), i);
  const uint32_t key = HashValue("Entry117");
  for (auto _ : state) benchmark::DoNotOptimize(db.Find<double>(key).Get());
}
BENCHMARK(BM_FindByPreInternedKey);

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
