#include <cstdint>

#include "Core/MemoryManager.h"
#include "Core/UnitTests/CoreUnitTestDrivers.h"

namespace grindle {
namespace {

struct UDT {
  int iValue = 11;
  double dValue = 2.5;
  char cTag = 'u';
};

uint32_t BlocksInUseFor(uint32_t size) {
  const MemoryManager* pool = CurrentMemoryRegistry().Find(SizeClass(size));
  return pool == nullptr ? 0 : pool->BlocksInUse();
}

bool IsAligned(const void* block) {
  return reinterpret_cast<uintptr_t>(block) % kBlockAlignment == 0;
}

// Allocating takes one block of the type's class and freeing gives it back.
template <class T>
bool AllocateAndFree() {
  constexpr uint32_t size = sizeof(T);
  const uint32_t before = BlocksInUseFor(size);
  T* object = PoolNew<T>();
  const bool isTaken = object != nullptr && IsAligned(object) && BlocksInUseFor(size) == before + 1;
  PoolDelete(object);
  return isTaken && BlocksInUseFor(size) == before;
}

bool allocate_pod_mem_test() { return AllocateAndFree<int>(); }
bool allocate_udt_mem_test() {
  UDT* probe = PoolNew<UDT>();
  const bool isConstructed = probe->iValue == 11 && probe->dValue == 2.5 && probe->cTag == 'u';
  PoolDelete(probe);
  return isConstructed && AllocateAndFree<UDT>();
}

// Many live blocks at once must not overlap: each keeps what was written to it. Freeing checks the
// guard bytes after each object, so a write past an object would stop the program here.
constexpr int kBlockCount = 200;

bool read_write_pod_mem_test() {
  int* blocks[kBlockCount];
  for (int i = 0; i < kBlockCount; ++i) blocks[i] = PoolNew<int>(i * 7 - 300);
  bool isIntact = true;
  for (int i = 0; i < kBlockCount; ++i) isIntact = isIntact && *blocks[i] == i * 7 - 300;
  for (int* block : blocks) PoolDelete(block);
  return isIntact;
}

bool read_write_udt_mem_test() {
  UDT* blocks[kBlockCount];
  for (int i = 0; i < kBlockCount; ++i) {
    blocks[i] = PoolNew<UDT>();
    blocks[i]->iValue = i;
    blocks[i]->dValue = i * 0.5;
    blocks[i]->cTag = static_cast<char>('a' + i % 26);
  }
  bool isIntact = true;
  for (int i = 0; i < kBlockCount; ++i) {
    isIntact = isIntact && blocks[i]->iValue == i && blocks[i]->dValue == i * 0.5 &&
               blocks[i]->cTag == static_cast<char>('a' + i % 26);
  }
  for (UDT* block : blocks) PoolDelete(block);
  return isIntact;
}

}  // namespace

MemoryManagerUnitTestDriver::MemoryManagerUnitTestDriver() {
  AddTest("allocate_pod_mem_test", allocate_pod_mem_test);
  AddTest("allocate_udt_mem_test", allocate_udt_mem_test);
  AddTest("read_write_pod_mem_test", read_write_pod_mem_test);
  AddTest("read_write_udt_mem_test", read_write_udt_mem_test);
}

}  // namespace grindle
