// A counting semaphore with a ceiling: the thread pool's job signal. Any thread may Release or
// Wait. A Release that would lift the count past the maximum changes nothing and returns false;
// the thread pool relies on that (jobs beyond the limit wait in its list for a later release).
#pragma once

#include <condition_variable>
#include <cstdint>
#include <mutex>

namespace grindle {

class BoundedSemaphore {
 public:
  BoundedSemaphore(int32_t initialCount, int32_t maximumCount);
  BoundedSemaphore(const BoundedSemaphore&) = delete;
  BoundedSemaphore& operator=(const BoundedSemaphore&) = delete;

  // All or nothing: either the count rises by `amount` or, if that would pass the maximum (or
  // `amount` is not positive), it stays as it was and the call returns false.
  bool Release(int32_t amount);
  // Blocks, without time-out, until the count is positive, then takes one.
  void Wait();
  int32_t Count() const;

 private:
  mutable std::mutex mtxCount_;
  std::condition_variable cvPositive_;
  int32_t iCount_;
  const int32_t iMaximum_;
};

}  // namespace grindle
