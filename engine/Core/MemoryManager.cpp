#include "Core/MemoryManager.h"

#include <bit>
#include <cstdlib>
#include <cstring>

#include "Core/Assert.h"

namespace grindle {
namespace {

void*& Link(void* p) { return *static_cast<void**>(p); }

bool ValidatePattern(const char* bytes, uint32_t count, uint8_t pattern) {
  for (uint32_t i = 0; i < count; ++i) {
    if (static_cast<uint8_t>(bytes[i]) != pattern) return false;
  }
  return true;
}

int ClassIndex(uint32_t sizeClass) { return std::countr_zero(sizeClass); }

MemoryManagerRegistry* gInstalledRegistry = nullptr;

}  // namespace

MemoryManager::MemoryManager(uint32_t objectSize, uint32_t blocksPerPage, uint32_t initialPages)
    : uInitialPages_(initialPages),
      uObjectSize_(objectSize),
      uPaddingSize_(PaddingFor(objectSize)),
      uBlocksPerPage_(blocksPerPage),
      uStride_(objectSize + PaddingFor(objectSize) + 1) {
  uPageSize_ = kPageHeaderSize + uStride_ * uBlocksPerPage_;
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
  void* block = pFreeList_;
  pFreeList_ = Link(block);
  *FlagByte(block) |= 1;
  std::memset(block, IN_USE_PATTERN, uObjectSize_ + uPaddingSize_);
  ++uBlocksInUse_;
  return block;
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
  GRINDLE_ASSERT(!ValidatePattern(reinterpret_cast<char*>(block) + uObjectSize_, uPaddingSize_,
                                  IN_USE_PATTERN),
                 "Padding Corrupted");

  std::memset(block, kFreedPattern, uObjectSize_ + uPaddingSize_);
  Link(block) = pFreeList_;
  pFreeList_ = block;
  *FlagByte(block) &= static_cast<uint8_t>(~1u);
  --uBlocksInUse_;
}

MemoryManagerRegistry::~MemoryManagerRegistry() {
  for (MemoryManager* pool : pools_) delete pool;
}

MemoryManager* MemoryManagerRegistry::Find(uint32_t size) const {
  return pools_[ClassIndex(SizeClass(size))];
}

void* MemoryManagerRegistry::Allocate(uint32_t size) {
  const uint32_t sizeClass = SizeClass(size);
  MemoryManager*& pool = pools_[ClassIndex(sizeClass)];
  if (pool == nullptr) pool = new MemoryManager(sizeClass, kBlocksPerPage, 1);
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
