#include "Core/ThreadManager.h"

#include <new>

#include "Core/Assert.h"

namespace grindle {

ThreadManager::ThreadManager(int threadCount, int jobLimit)
    : iJobLimit_(jobLimit), iThreadCount_(threadCount) {
  // The pool's synchronisation objects are made one by one so that a failure names the object it
  // was for. A semaphore whose maximum is below 1 could never signal a job, so it is not made.
  if (jobLimit >= 1) smpJobs_.reset(new (std::nothrow) BoundedSemaphore(0, jobLimit));
  mtxJobs_.reset(new (std::nothrow) std::mutex);
  mtxJobsRunning_.reset(new (std::nothrow) std::mutex);
  mtxErrorList_.reset(new (std::nothrow) std::mutex);
  GRINDLE_ASSERT_TEXT(smpJobs_ == nullptr, "smpJobs_ == NULL",
                      "Semaphore for job list in thread pool failed to be created.");
  GRINDLE_ASSERT_TEXT(mtxJobs_ == nullptr, "mtxJobs_ == NULL",
                      "Mutex for job list in thread pool failed to be created.");
  GRINDLE_ASSERT_TEXT(mtxJobsRunning_ == nullptr, "mtxJobsRunning_ == NULL",
                      "Mutex for job running count in thread pool failed to be created.");
  GRINDLE_ASSERT_TEXT(mtxErrorList_ == nullptr, "mtxErrorList_ == NULL",
                      "Mutex for error list in thread pool failed to be created.");
  for (int i = 0; i < iThreadCount_; ++i) threads_.emplace_back(WorkerMain, this);
}

ThreadManager::~ThreadManager() {
  isShuttingDown_.store(true);
  smpJobs_->Release(iJobLimit_);
  for (std::thread& worker : threads_) worker.join();
}

bool ThreadManager::AddJob(JobFunction function, uintptr_t argument) {
  if (isShuttingDown_.load()) return false;
  std::lock_guard<std::mutex> lock(*mtxJobs_);
  jobs_.emplace_back(function, argument);
  ++uJobCount_;
  smpJobs_->Release(1);  // fails at the limit on purpose: see the header
  return true;
}

void ThreadManager::WaitForAllJobs() {
  for (;;) {
    bool isIdle;
    {
      std::lock_guard<std::mutex> jobsLock(*mtxJobs_);
      std::lock_guard<std::mutex> runningLock(*mtxJobsRunning_);
      isIdle = uJobCount_ == 0 && uRunningCount_ == 0;
    }
    if (isIdle) return;
    std::this_thread::yield();
  }
}

uint32_t ThreadManager::ErrorCount() const {
  std::lock_guard<std::mutex> lock(*mtxErrorList_);
  return uErrorCount_;
}

std::vector<JobError> ThreadManager::Errors() const {
  std::lock_guard<std::mutex> lock(*mtxErrorList_);
  return errorList_;
}

uint32_t ThreadManager::QueuedJobCount() const {
  std::lock_guard<std::mutex> lock(*mtxJobs_);
  return uJobCount_;
}

void ThreadManager::WorkerMain(ThreadManager* pool) {
  while (!pool->isShuttingDown_.load()) {
    pool->smpJobs_->Wait();
    if (pool->isShuttingDown_.load()) {
      // Destruction releases only the job limit; passing the wake-up on lets every worker end
      // even in a pool with more workers than that.
      pool->smpJobs_->Release(1);
      break;
    }
    JobFunction function = nullptr;
    uintptr_t argument = 0;
    {
      std::lock_guard<std::mutex> lock(*pool->mtxJobs_);
      if (!pool->jobs_.empty()) {
        function = pool->jobs_.front().first;
        argument = pool->jobs_.front().second;
        pool->jobs_.pop_front();
        --pool->uJobCount_;
        // Counted as running before the job list is let go, so that WaitForAllJobs never sees
        // both counts at zero while a job passes from the list to a worker. Same lock order as
        // WaitForAllJobs.
        std::lock_guard<std::mutex> runningLock(*pool->mtxJobsRunning_);
        ++pool->uRunningCount_;
      }
    }
    if (function != nullptr) {
      pool->RunJob(function, argument);
    } else {
      std::this_thread::yield();
    }
  }
}

void ThreadManager::RunJob(JobFunction function, uintptr_t argument) {
  uint32_t result = function(argument);
  if (result != 0) {
    std::lock_guard<std::mutex> lock(*mtxErrorList_);
    errorList_.push_back({result, function});
    ++uErrorCount_;
  }
  std::lock_guard<std::mutex> lock(*mtxJobsRunning_);
  --uRunningCount_;
}

}  // namespace grindle
