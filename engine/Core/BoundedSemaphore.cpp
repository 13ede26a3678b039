#include "Core/BoundedSemaphore.h"

namespace grindle {

BoundedSemaphore::BoundedSemaphore(int32_t initialCount, int32_t maximumCount)
    : iCount_(initialCount), iMaximum_(maximumCount) {}

bool BoundedSemaphore::Release(int32_t amount) {
  {
    std::lock_guard<std::mutex> lock(mtxCount_);
    if (amount <= 0 || iCount_ > iMaximum_ - amount) return false;
    iCount_ += amount;
  }
  if (amount == 1) {
    cvPositive_.notify_one();
  } else {
    cvPositive_.notify_all();
  }
  return true;
}

void BoundedSemaphore::Wait() {
  std::unique_lock<std::mutex> lock(mtxCount_);
  cvPositive_.wait(lock, [this] { return iCount_ > 0; });
  --iCount_;
}

int32_t BoundedSemaphore::Count() const {
  std::lock_guard<std::mutex> lock(mtxCount_);
  return iCount_;
}

}  // namespace grindle
