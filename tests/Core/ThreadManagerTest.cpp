#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

#include "Core/ThreadManager.h"
#include "Eventually.h"
#include "TestOutput.h"

namespace grindle {
namespace {

using namespace std::chrono_literals;

// Long enough for an idle worker to have taken a job, had it been able to.
void GiveWorkersAChance() { std::this_thread::sleep_for(30ms); }

// The arguments of the recording jobs that ran, in the order they ran; each test starts afresh.
std::mutex gRunMutex;
std::vector<uintptr_t> gRuns;

uint32_t RecordRun(uintptr_t argument) {
  std::lock_guard<std::mutex> lock(gRunMutex);
  gRuns.push_back(argument);
  return 0;
}

size_t RunCount() {
  std::lock_guard<std::mutex> lock(gRunMutex);
  return gRuns.size();
}

uint32_t ReturnArgument(uintptr_t argument) { return static_cast<uint32_t>(argument); }

// A job that holds its worker until the test opens the gate.
struct Gate {
  std::atomic<bool> isStarted{false};
  std::atomic<bool> isOpen{false};
  std::atomic<bool> isFinished{false};
};

uint32_t WaitAtGate(uintptr_t argument) {
  auto* gate = reinterpret_cast<Gate*>(argument);
  gate->isStarted.store(true);
  while (!gate->isOpen.load()) std::this_thread::sleep_for(1ms);
  gate->isFinished.store(true);
  return 0;
}

class ThreadManagerTest : public testing::Test {
 protected:
  ThreadManagerTest() { gRuns.clear(); }
};

TEST(BoundedSemaphoreTest, ReleasePastTheMaximumChangesNothing) {
  BoundedSemaphore semaphore(0, 3);
  EXPECT_TRUE(semaphore.Release(2));
  EXPECT_FALSE(semaphore.Release(2));  // all or nothing: 4 > 3, so the count stays 2
  EXPECT_EQ(semaphore.Count(), 2);
  EXPECT_TRUE(semaphore.Release(1));
  EXPECT_FALSE(semaphore.Release(1));
  EXPECT_EQ(semaphore.Count(), 3);
  semaphore.Wait();
  EXPECT_EQ(semaphore.Count(), 2);
}

TEST_F(ThreadManagerTest, PoolWithoutWorkersAcceptsJobsButNeverRunsThem) {
  {
    ThreadManager pool(0, 10);
    EXPECT_TRUE(pool.AddJob(RecordRun, 1));
    EXPECT_TRUE(pool.AddJob(RecordRun, 2));
    GiveWorkersAChance();
    EXPECT_EQ(pool.QueuedJobCount(), 2u);
  }
  EXPECT_EQ(RunCount(), 0u);
}

TEST_F(ThreadManagerTest, OnlyNonZeroResultsAreRecordedWithTheirFunction) {
  ThreadManager pool(5, 10);
  ASSERT_TRUE(pool.AddJob(ReturnArgument, 0));
  ASSERT_TRUE(pool.AddJob(ReturnArgument, 7));
  ASSERT_TRUE(pool.AddJob(ReturnArgument, 0));
  pool.WaitForAllJobs();
  ASSERT_EQ(pool.ErrorCount(), 1u);
  std::vector<JobError> errors = pool.Errors();
  ASSERT_EQ(errors.size(), 1u);
  EXPECT_EQ(errors[0].result, 7u);
  EXPECT_EQ(errors[0].function, &ReturnArgument);
}

TEST_F(ThreadManagerTest, WaitForAllJobsWaitsForTheJobInHand) {
  ThreadManager pool(5, 10);
  Gate gate;
  ASSERT_TRUE(pool.AddJob(WaitAtGate, reinterpret_cast<uintptr_t>(&gate)));
  ASSERT_TRUE(Eventually([&] { return gate.isStarted.load(); }));
  EXPECT_EQ(pool.QueuedJobCount(), 0u);  // the list is already empty; only the running job is left

  std::atomic<bool> isWaitOver{false};
  std::atomic<bool> wasJobFinished{false};
  std::thread waiter([&] {
    pool.WaitForAllJobs();
    wasJobFinished.store(gate.isFinished.load());
    isWaitOver.store(true);
  });
  GiveWorkersAChance();
  EXPECT_FALSE(isWaitOver.load());
  gate.isOpen.store(true);
  waiter.join();
  EXPECT_TRUE(wasJobFinished.load());
}

TEST_F(ThreadManagerTest, JobsBeyondTheLimitWaitForALaterAddJob) {
  Gate gate;
  ThreadManager pool(1, 2);
  ASSERT_TRUE(pool.AddJob(WaitAtGate, reinterpret_cast<uintptr_t>(&gate)));
  ASSERT_TRUE(Eventually([&] { return gate.isStarted.load(); }));

  // With the only worker busy, three signals are sent but the semaphore holds two.
  for (uintptr_t job = 0; job < 3; ++job) pool.AddJob(RecordRun, job);
  gate.isOpen.store(true);
  ASSERT_TRUE(Eventually([&] { return RunCount() == 2; }));
  GiveWorkersAChance();
  EXPECT_EQ(RunCount(), 2u);
  EXPECT_EQ(pool.QueuedJobCount(), 1u);

  // The next signal lets the worker take the oldest waiting job, leaving the new one queued.
  pool.AddJob(RecordRun, 3);
  ASSERT_TRUE(Eventually([&] { return RunCount() == 3; }));
  GiveWorkersAChance();
  EXPECT_EQ(pool.QueuedJobCount(), 1u);
  std::lock_guard<std::mutex> lock(gRunMutex);
  EXPECT_EQ(gRuns, (std::vector<uintptr_t>{0, 1, 2}));
}

// Keeps offering recording jobs to its own pool until the pool refuses one.
struct ShutdownWitness {
  ThreadManager* pool;
  std::atomic<bool> isStarted{false};
  std::atomic<bool> wasRefused{false};
};

uint32_t AddJobsUntilRefused(uintptr_t argument) {
  auto* witness = reinterpret_cast<ShutdownWitness*>(argument);
  witness->isStarted.store(true);
  auto deadline = std::chrono::steady_clock::now() + 5s;
  while (std::chrono::steady_clock::now() < deadline) {
    if (!witness->pool->AddJob(RecordRun, 0)) {
      witness->wasRefused.store(true);
      return 0;
    }
    std::this_thread::sleep_for(1ms);
  }
  return 0;
}

TEST_F(ThreadManagerTest, ShutdownRefusesNewJobsAndDropsQueuedOnes) {
  ShutdownWitness witness;
  auto pool = std::make_unique<ThreadManager>(1, 1000000);
  witness.pool = pool.get();
  ASSERT_TRUE(pool->AddJob(AddJobsUntilRefused, reinterpret_cast<uintptr_t>(&witness)));
  ASSERT_TRUE(Eventually([&] { return witness.isStarted.load(); }));
  pool.reset();  // returns once the running job has seen a refusal and ended
  EXPECT_TRUE(witness.wasRefused.load());
  EXPECT_EQ(RunCount(), 0u);  // its one worker was busy; the queued jobs never ran
}

TEST_F(ThreadManagerTest, IdleWorkersEndWhenThePoolIsDestroyed) {
  // Each pool must be torn down without hanging, including one with more workers than the job
  // limit, which the shutdown signal alone cannot wake.
  for (auto [threads, limit] : {std::pair{5, 10}, std::pair{8, 2}, std::pair{1, 1}}) {
    ThreadManager pool(threads, limit);
    ASSERT_TRUE(pool.AddJob(RecordRun, 0));
    pool.WaitForAllJobs();
  }
  EXPECT_EQ(RunCount(), 3u);
}

TEST(ThreadManagerDeathTest, AJobLimitBelowOneGivesNoSemaphore) {
  EXPECT_DEATH(
      {
        StdoutToStderr();
        ThreadManager pool(1, 0);
      },
      "DETAILS: Semaphore for job list in thread pool failed to be created\\.(.|\n)*"
      "The expression smpJobs_ == NULL failed\\.");
}

}  // namespace
}  // namespace grindle
