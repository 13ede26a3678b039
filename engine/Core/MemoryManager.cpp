#include "Core/MemoryManager.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "Core/Assert.h"

namespace grindle {

namespace {

using pool::Link;

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
  const uintptr_t address = reinterpret_cast<uintptr_t>(page);
  sortedPages_.insert(std::upper_bound(sortedPages_.begin(), sortedPages_.end(), address), address);

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

const char* MemoryManager::FindPage(const char* block) const {
  const auto above =
      std::lower_bound(sortedPages_.begin(), sortedPages_.end(), reinterpret_cast<uintptr_t>(block));
  if (above == sortedPages_.begin()) return nullptr;
  const char* nearest = reinterpret_cast<const char*>(*(above - 1));
  return PassesPageTest(nearest, block) ? nearest : nullptr;
}

MemoryManagerRegistry::~MemoryManagerRegistry() {
  for (MemoryManager* pool : pools_) delete pool;
}

void* MemoryManagerRegistry::AllocateInNewPool(uint32_t size) {
  MemoryManager*& pool = pools_[pool::ClassIndexFor(size)];
  pool = new MemoryManager(SizeClass(size), kBlocksPerPage, 1);
  return pool->Allocate();
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
