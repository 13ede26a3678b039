// The engine's one pool of worker threads, fed from a single first-in-first-out job list. Any
// thread may add jobs or wait for them; jobs run on the workers and must not touch the database or
// the message handler, which have no locks. The job signal is bounded by the job limit: when more
// jobs wait than that, the extra signals are lost and those jobs stay queued until a later AddJob.
#pragma once

#include <atomic>
#include <cstdint>
#include <deque>
#include <memory>
#include <mutex>
#include <thread>
#include <utility>
#include <vector>

#include "Core/BoundedSemaphore.h"

namespace grindle {

// A job's argument is a 32-bit word widened so that it can carry a pointer on 64-bit.
using JobFunction = uint32_t (*)(uintptr_t);

struct JobError {
  uint32_t result;
  JobFunction function;
};

class ThreadManager {
 public:
  // Starts `threadCount` workers (none when below 1). The engine uses (5, 10). A job limit below
  // 1 stops the program: no job could ever be signalled.
  ThreadManager(int threadCount, int jobLimit);
  // Workers finish the job in hand and end; queued jobs are dropped unrun.
  ~ThreadManager();
  ThreadManager(const ThreadManager&) = delete;
  ThreadManager& operator=(const ThreadManager&) = delete;

  // False, and the job dropped, once destruction has begun.
  bool AddJob(JobFunction function, uintptr_t argument);
  // Returns when no job is queued and none is running. Never returns while jobs are queued in a
  // pool without workers, or queued beyond the limit with no later AddJob to release them.
  void WaitForAllJobs();

  uint32_t ErrorCount() const;
  // The (result, function) pairs of the jobs that returned non-zero, oldest first.
  std::vector<JobError> Errors() const;
  // Jobs added but not yet taken by a worker.
  uint32_t QueuedJobCount() const;

 private:
  static void WorkerMain(ThreadManager* pool);
  void RunJob(JobFunction function, uintptr_t argument);

  std::vector<std::thread> threads_;
  std::deque<std::pair<JobFunction, uintptr_t>> jobs_;
  uint32_t uJobCount_ = 0;
  std::unique_ptr<std::mutex> mtxJobs_;
  std::unique_ptr<BoundedSemaphore> smpJobs_;
  int32_t iJobLimit_;
  uint32_t uRunningCount_ = 0;
  std::unique_ptr<std::mutex> mtxJobsRunning_;
  int32_t iThreadCount_;
  std::atomic<bool> isShuttingDown_{false};
  std::vector<JobError> errorList_;
  uint32_t uErrorCount_ = 0;
  std::unique_ptr<std::mutex> mtxErrorList_;
};

}  // namespace grindle
