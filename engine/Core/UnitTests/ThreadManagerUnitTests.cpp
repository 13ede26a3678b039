#include <atomic>
#include <cstdint>

#include "Core/ThreadManager.h"
#include "Core/UnitTests/CoreUnitTestDrivers.h"

namespace grindle {
namespace {

// Each job adds its own number to the shared total, so a lost or repeated job shows in the sum.
struct JobTotal {
  std::atomic<uint32_t> sum{0};
  std::atomic<uint32_t> runs{0};
};

struct NumberedJob {
  JobTotal* total;
  uint32_t number;
};

uint32_t AddNumber(uintptr_t argument) {
  auto* job = reinterpret_cast<NumberedJob*>(argument);
  job->total->sum.fetch_add(job->number);
  job->total->runs.fetch_add(1);
  return 0;
}

// The engine's own pool shape; no more jobs than its limit, so every job is signalled.
bool RunJobs(uint32_t count) {
  JobTotal total;
  NumberedJob jobs[10];
  ThreadManager pool(5, 10);
  for (uint32_t i = 0; i < count; ++i) {
    jobs[i] = {&total, i + 1};
    if (!pool.AddJob(AddNumber, reinterpret_cast<uintptr_t>(&jobs[i]))) return false;
  }
  pool.WaitForAllJobs();
  return total.runs.load() == count && total.sum.load() == count * (count + 1) / 2 &&
         pool.ErrorCount() == 0;
}

bool add_thread_job() { return RunJobs(1); }
bool add_thread_multi_job() { return RunJobs(10); }

}  // namespace

ThreadManagerUnitTestDriver::ThreadManagerUnitTestDriver() {
  AddTest("add_thread_job", add_thread_job);
  AddTest("add_thread_multi_job", add_thread_multi_job);
}

}  // namespace grindle
