#include "Core/MemoryManager.h"

#include <bit>
#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "Core/Assert.h"

namespace grindle {

struct BlockTail {
  uint64_t low;
  uint64_t high;
};

namespace {

void*& Link(void* p) { return *static_cast<void**>(p); }

static_assert(std::endian::native == std::endian::little, "block tails are read as words");

uint64_t Repeated(uint8_t pattern) { return 0x0101010101010101ull * pattern; }

// Every block ends in a 16-byte tail: the end of the object (small classes), the guard bytes and
// the flag byte. Allocate and Free write that tail as two whole words and the guard check reads the
// same two words back, because a narrower read right after a wide fill stalls the processor on
// store forwarding and would cost more than the rest of the pool operation together.
void FillBlock(char* block, uint32_t stride, uint8_t pattern, uint8_t flag) {
  const uint64_t word = Repeated(pattern);
  char* tail = block + stride - 16;
  for (char* p = block; p < tail; p += 8) std::memcpy(p, &word, 8);
  const uint64_t high = (word & 0x00FFFFFFFFFFFFFFull) | (static_cast<uint64_t>(flag) << 56);
  std::memcpy(tail, &word, 8);
  std::memcpy(tail + 8, &high, 8);
}

BlockTail ReadTail(const char* block, uint32_t stride) {
  BlockTail tail;
  std::memcpy(&tail.low, block + stride - 16, 8);
  std::memcpy(&tail.high, block + stride - 8, 8);
  return tail;
}

// The bit position of the class that serves `size` (4 -> 2, 8 -> 3, 16 -> 4, ...).
int ClassIndexFor(uint32_t size) { return size <= 4 ? 2 : std::bit_width(size - 1); }

MemoryManagerRegistry* gInstalledRegistry = nullptr;

}  // namespace

MemoryManager::MemoryManager(uint32_t objectSize, uint32_t blocksPerPage, uint32_t initialPages)
    : uInitialPages_(initialPages),
      uObjectSize_(objectSize),
      uPaddingSize_(PaddingFor(objectSize)),
      uBlocksPerPage_(blocksPerPage),
      uStride_(objectSize + PaddingFor(objectSize) + 1) {
  uPageSize_ = kPageHeaderSize + uStride_ * uBlocksPerPage_;
  GRINDLE_ASSERT(uPaddingSize_ > 15, "Pool object sizes must be powers of two");
  // The guard occupies bytes [15 - padding, 15) of the block's 16-byte tail.
  const uint32_t guardStart = 15 - uPaddingSize_;
  uGuardMaskLow_ = guardStart >= 8 ? 0 : ~0ull << (guardStart * 8);
  uGuardMaskHigh_ = 0x00FFFFFFFFFFFFFFull & (guardStart <= 8 ? ~0ull : ~0ull << ((guardStart - 8) * 8));
  for (uint32_t i = 0; i < uInitialPages_; ++i) {
    if (!AddPage()) break;
  }
}

MemoryManager::~MemoryManager() {
  while (pPageList_ != nullptr) {
    void* next = Link(pPageList_);
    std::free(pPageList_);
    pPageList_ = next;
  }
}

uint32_t MemoryManager::PageCount() const {
  uint32_t count = 0;
  for (void* page = pPageList_; page != nullptr; page = Link(page)) ++count;
  return count;
}

bool MemoryManager::AddPage() {
  const size_t bytes = (uPageSize_ + kBlockAlignment - 1) / kBlockAlignment * kBlockAlignment;
  void* page = std::aligned_alloc(kBlockAlignment, bytes);
  if (page == nullptr) return false;
  Link(page) = pPageList_;
  pPageList_ = page;

  char* block = static_cast<char*>(page) + kPageHeaderSize;
  for (uint32_t i = 0; i < uBlocksPerPage_; ++i, block += uStride_) {
    *FlagByte(block) = 0;
    // Guard first: in the 4-byte class the 8-byte free-list link reaches into the guard bytes.
    std::memset(block + uObjectSize_, kFreshPaddingPattern, uPaddingSize_);
    Link(block) = pFreeList_;
    pFreeList_ = block;
  }
  return true;
}

void* MemoryManager::Allocate() {
  if (pFreeList_ == nullptr && !AddPage()) return nullptr;
  char* block = static_cast<char*>(pFreeList_);
  pFreeList_ = Link(block);
  // Only bit 0 of the flag byte is ever used, so it is written whole rather than read first.
  FillBlock(block, uStride_, IN_USE_PATTERN, 1);
  ++uBlocksInUse_;
  return block;
}

bool MemoryManager::ValidatePattern(const BlockTail& tail, uint8_t pattern) const {
  const uint64_t word = Repeated(pattern);
  return ((tail.low ^ word) & uGuardMaskLow_) == 0 && ((tail.high ^ word) & uGuardMaskHigh_) == 0;
}

void MemoryManager::Free(void* block) {
  // The upper bound is deliberately four times the page: the first page in list order that passes
  // this loose test owns the block.
  char* pageList = static_cast<char*>(pPageList_);
  const char* target = static_cast<const char*>(block);
  while (pageList != nullptr &&
         !(pageList < target && target <= pageList + 4ull * (uPageSize_ - uStride_))) {
    pageList = static_cast<char*>(Link(pageList));
  }
  GRINDLE_ASSERT(pageList == NULL, "Block to free not found in any pages");
  const BlockTail tail = ReadTail(static_cast<char*>(block), uStride_);
  GRINDLE_ASSERT_TEXT(!ValidatePattern(tail, IN_USE_PATTERN),
                      "!ValidatePattern(reinterpret_cast<char*>(block) + uObjectSize_, "
                      "uPaddingSize_, IN_USE_PATTERN)",
                      "Padding Corrupted");

  FillBlock(static_cast<char*>(block), uStride_, kFreedPattern, 0);
  Link(block) = pFreeList_;
  pFreeList_ = block;
  --uBlocksInUse_;
}

MemoryManagerRegistry::~MemoryManagerRegistry() {
  for (MemoryManager* pool : pools_) delete pool;
}

MemoryManager* MemoryManagerRegistry::Find(uint32_t size) const {
  return pools_[ClassIndexFor(size)];
}

void* MemoryManagerRegistry::Allocate(uint32_t size) {
  MemoryManager*& pool = pools_[ClassIndexFor(size)];
  if (pool == nullptr) pool = new MemoryManager(SizeClass(size), kBlocksPerPage, 1);
  return pool->Allocate();
}

void MemoryManagerRegistry::Free(void* block, uint32_t size) {
  MemoryManager* pool = Find(size);
  GRINDLE_ASSERT_TEXT(pool == nullptr,
                      "(uimMemoryManagers_->find(size) == uimMemoryManagers_->end())",
                      "Memory Manager being freed to does not exist...");
  pool->Free(block);
}

MemoryManagerRegistry& CurrentMemoryRegistry() {
  if (gInstalledRegistry == nullptr) {
    static MemoryManagerRegistry fallback;
    gInstalledRegistry = &fallback;
  }
  return *gInstalledRegistry;
}

void InstallMemoryRegistry(MemoryManagerRegistry* registry) { gInstalledRegistry = registry; }

}  // namespace grindle
