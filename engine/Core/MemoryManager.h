// Size-class block pools for the engine's small, frequently made objects (database entries and
// their values, messages, message arguments). Requests round up to a power of two of at least 4;
// every class has one MemoryManager, made on first use and kept for the life of the registry.
// Main thread only: no pool takes a lock. Blocks are 16-byte aligned; each keeps guard bytes after
// the object that are checked when it is given back.
#pragma once

#include <cstddef>
#include <cstdint>
#include <new>
#include <utility>
#include <vector>

#include "Core/Assert.h"
#include "Core/PoolBlock.h"

namespace grindle {

inline constexpr uint8_t kFreshPaddingPattern = 0xAA;
inline constexpr uint8_t IN_USE_PATTERN = 0xDA;
inline constexpr uint8_t kFreedPattern = 0xFE;
inline constexpr uint32_t kBlocksPerPage = 64;
inline constexpr uint32_t kBlockAlignment = 16;
// Pages start with the link to the next page, padded so that the blocks after it stay aligned.
inline constexpr uint32_t kPageHeaderSize = kBlockAlignment;

// Rounds a request up to its class: 0..4 -> 4, 5..8 -> 8, 9..16 -> 16, ...
constexpr uint32_t SizeClass(uint32_t size) {
  uint32_t s = (size < 4 ? 4 : size) - 1;
  s |= s >> 1;
  s |= s >> 2;
  s |= s >> 4;
  s |= s >> 8;
  s |= s >> 16;
  return s + 1;
}

// Guard bytes after an object of `objectSize`: at least three, and enough that object, guard and
// flag byte end on a 16-byte boundary.
constexpr uint32_t PaddingFor(uint32_t objectSize) {
  uint32_t padding = 3;
  while ((objectSize + padding + 1) % kBlockAlignment != 0) ++padding;
  return padding;
}

class MemoryManager {
 public:
  MemoryManager(uint32_t objectSize, uint32_t blocksPerPage, uint32_t initialPages);
  ~MemoryManager();
  MemoryManager(const MemoryManager&) = delete;
  MemoryManager& operator=(const MemoryManager&) = delete;

  void* Allocate() {
    if (pFreeList_ == nullptr && !AddPage()) return nullptr;
    char* block = static_cast<char*>(pFreeList_);
    pFreeList_ = pool::Link(block);
    // Only bit 0 of the flag byte is ever used, so it is written whole rather than read first.
    pool::FillBlock(block, uStride_, IN_USE_PATTERN, 1);
    ++uBlocksInUse_;
    return block;
  }

  void Free(void* block) {
    const char* target = static_cast<const char*>(block);
    const char* pageList = PassesPageTest(static_cast<const char*>(pPageList_), target)
                               ? static_cast<const char*>(pPageList_)
                               : FindPage(target);
    GRINDLE_ASSERT(pageList == NULL, "Block to free not found in any pages");
    GRINDLE_ASSERT_TEXT(!ValidatePattern(pool::ReadTail(target, uStride_), IN_USE_PATTERN),
                        "!ValidatePattern(reinterpret_cast<char*>(block) + uObjectSize_, "
                        "uPaddingSize_, IN_USE_PATTERN)",
                        "Padding Corrupted");
    pool::FillBlock(static_cast<char*>(block), uStride_, kFreedPattern, 0);
    pool::Link(block) = pFreeList_;
    pFreeList_ = block;
    --uBlocksInUse_;
  }

  uint32_t ObjectSize() const { return uObjectSize_; }
  uint32_t PaddingSize() const { return uPaddingSize_; }
  uint32_t Stride() const { return uStride_; }
  uint32_t PageSize() const { return uPageSize_; }
  uint32_t BlocksInUse() const { return uBlocksInUse_; }
  const void* FirstPage() const { return pPageList_; }
  uint32_t PageCount() const;

 private:
  bool AddPage();
  // The upper bound is deliberately four times the page: a block belongs to the pool when any
  // page passes this loose test.
  bool PassesPageTest(const char* page, const char* block) const {
    const uintptr_t p = reinterpret_cast<uintptr_t>(page);
    const uintptr_t b = reinterpret_cast<uintptr_t>(block);
    return page != nullptr && p < b && b <= p + 4ull * (uPageSize_ - uStride_);
  }
  // A page that passes the test for `block`, or null. Only the nearest page below the block can
  // pass, so a sorted search replaces the walk of the whole list.
  const char* FindPage(const char* block) const;
  bool ValidatePattern(const pool::BlockTail& tail, uint8_t pattern) const {
    const uint64_t word = pool::Repeated(pattern);
    return ((tail.low ^ word) & uGuardMaskLow_) == 0 && ((tail.high ^ word) & uGuardMaskHigh_) == 0;
  }
  uint8_t* FlagByte(void* block) const {
    return static_cast<uint8_t*>(block) + uObjectSize_ + uPaddingSize_;
  }

  void* pPageList_ = nullptr;
  void* pFreeList_ = nullptr;
  uint32_t uPageSize_;
  uint32_t uInitialPages_;
  uint32_t uObjectSize_;
  uint32_t uPaddingSize_;
  uint32_t uBlocksPerPage_;
  uint32_t uStride_;
  uint32_t uBlocksInUse_ = 0;
  uint64_t uGuardMaskLow_ = 0;
  uint64_t uGuardMaskHigh_ = 0;
  std::vector<uintptr_t> sortedPages_;
};

// The process-wide map from size class to pool. Classes are powers of two, so the map is an array
// indexed by the class's bit position: one indexed load finds the pool.
class MemoryManagerRegistry {
 public:
  MemoryManagerRegistry() = default;
  ~MemoryManagerRegistry();
  MemoryManagerRegistry(const MemoryManagerRegistry&) = delete;
  MemoryManagerRegistry& operator=(const MemoryManagerRegistry&) = delete;

  void* Allocate(uint32_t size) {
    MemoryManager* pool = pools_[pool::ClassIndexFor(size)];
    return pool != nullptr ? pool->Allocate() : AllocateInNewPool(size);
  }

  void Free(void* block, uint32_t size) {
    MemoryManager* pool = Find(size);
    GRINDLE_ASSERT_TEXT(pool == nullptr,
                        "(uimMemoryManagers_->find(size) == uimMemoryManagers_->end())",
                        "Memory Manager being freed to does not exist...");
    pool->Free(block);
  }

  // The pool serving `size`, or null when that class was never used.
  MemoryManager* Find(uint32_t size) const { return pools_[pool::ClassIndexFor(size)]; }

 private:
  void* AllocateInNewPool(uint32_t size);

  static constexpr int kClasses = 33;
  MemoryManager* pools_[kClasses] = {};
};

// The registry in force. One is created on first use if start-up has not installed its own.
MemoryManagerRegistry& CurrentMemoryRegistry();
void InstallMemoryRegistry(MemoryManagerRegistry* registry);

inline void* Allocate(uint32_t size) { return CurrentMemoryRegistry().Allocate(size); }
inline void Free(void* block, uint32_t size) { CurrentMemoryRegistry().Free(block, size); }

// Typed wrappers: construct an object in a pooled block, and destroy and return it.
template <class T, class... Args>
T* PoolNew(Args&&... args) {
  static_assert(alignof(T) <= kBlockAlignment, "pool blocks are 16-byte aligned");
  void* block = Allocate(static_cast<uint32_t>(sizeof(T)));
  if (block == nullptr) throw std::bad_alloc();
  return new (block) T(std::forward<Args>(args)...);
}

template <class T>
void PoolDelete(T* object) {
  if (object == nullptr) return;
  object->~T();
  Free(object, static_cast<uint32_t>(sizeof(T)));
}

}  // namespace grindle
