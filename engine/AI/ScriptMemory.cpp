#include "AI/ScriptMemory.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <lua.hpp>
#include <new>
#include <vector>

#include "Core/Assert.h"

namespace grindle {
namespace {

// Small blocks come in classes: 16-byte steps up to 1 KB (which keeps every block 16-byte aligned,
// as Lua's values are), 128-byte steps up to 4 KB. Larger blocks (few per state) come from malloc.
struct ClassRange {
  size_t limit;  // largest size of the range
  size_t step;
};
constexpr ClassRange kRanges[] = {{1024, 16}, {4096, 128}};
constexpr size_t kSmallLimit = 4096;
constexpr size_t CountClasses() {
  size_t count = 0;
  size_t base = 0;
  for (const ClassRange& range : kRanges) {
    count += (range.limit - base) / range.step;
    base = range.limit;
  }
  return count;
}
constexpr size_t kClassCount = CountClasses();
constexpr size_t kSlabSize = 1024 * 1024;

size_t ClassOf(size_t size) {
  size_t first = 0;
  size_t base = 0;
  for (const ClassRange& range : kRanges) {
    if (size <= range.limit) return first + (size - base + range.step - 1) / range.step - 1;
    first += (range.limit - base) / range.step;
    base = range.limit;
  }
  return kClassCount;  // not reached: callers pass small sizes only
}

size_t ClassSize(size_t index) {
  size_t base = 0;
  for (const ClassRange& range : kRanges) {
    const size_t count = (range.limit - base) / range.step;
    if (index < count) return base + (index + 1) * range.step;
    index -= count;
    base = range.limit;
  }
  return 0;
}

struct FreeBlock {
  FreeBlock* next;
};

// The memory of every script state. Fresh blocks are cut in order from a few large slabs that
// hold nothing else, so states loaded one after another lie one after another, packed without
// headers or per-state rounding: a sweep of "Update" calls over many states stays fast (it is
// bound by memory, not by Lua) and a state costs what Lua uses. Freed blocks are kept by class and
// handed out again before the slabs are cut further; the next state loaded reuses what the last
// one's loading left behind, right next to it.
class ScriptHeap {
 public:
  ~ScriptHeap() {
    for (char* slab : slabs_) std::free(slab);
  }

  void* Take(size_t size) {
    if (size > kSmallLimit) return std::malloc(size);
    const size_t index = ClassOf(size);
    if (FreeBlock* block = freeLists_[index]) {
      freeLists_[index] = block->next;
      listedBytes_ -= ClassSize(index);
      return block;
    }
    return Cut(ClassSize(index));
  }

  void Give(void* block, size_t size) {
    if (size > kSmallLimit) {
      std::free(block);
      return;
    }
    const size_t index = ClassOf(size);
    freeLists_[index] = new (block) FreeBlock{freeLists_[index]};
    listedBytes_ += ClassSize(index);
  }

  void* Resize(void* block, size_t oldSize, size_t newSize) {
    if (oldSize <= kSmallLimit && newSize <= kSmallLimit && ClassOf(oldSize) == ClassOf(newSize)) {
      return block;
    }
    if (oldSize > kSmallLimit && newSize > kSmallLimit) return std::realloc(block, newSize);
    void* fresh = Take(newSize);
    if (fresh == nullptr) return nullptr;
    std::memcpy(fresh, block, std::min(oldSize, newSize));
    Give(block, oldSize);
    return fresh;
  }

  size_t SpareBytes() const { return left_ + listedBytes_; }

 private:
  void* Cut(size_t size) {
    if (left_ < size) {
      // The old slab's tail is too small for this class; it is left unused.
      char* slab = static_cast<char*>(std::malloc(kSlabSize));
      if (slab == nullptr) return nullptr;
      slabs_.push_back(slab);
      next_ = slab;
      left_ = kSlabSize;
    }
    void* block = next_;
    next_ += size;
    left_ -= size;
    return block;
  }

  std::vector<char*> slabs_;
  char* next_ = nullptr;
  size_t left_ = 0;
  FreeBlock* freeLists_[kClassCount] = {};
  size_t listedBytes_ = 0;
};

ScriptHeap& Heap() {
  static ScriptHeap heap;
  return heap;
}

// Lua's allocation function: with a block, `oldSize` is its size; without one it is a type hint.
void* Allocate(void*, void* block, size_t oldSize, size_t newSize) {
  if (newSize == 0) {
    if (block != nullptr) Heap().Give(block, oldSize);
    return nullptr;
  }
  if (block == nullptr) return Heap().Take(newSize);
  return Heap().Resize(block, oldSize, newSize);
}

int Panic(lua_State* state) {
  std::printf("Unprotected Lua error: %s\n", lua_tostring(state, -1));
  std::fflush(stdout);
  GRINDLE_ASSERT_TEXT(true, "true", "Lua panic");
  return 0;
}

}  // namespace

lua_State* NewScriptState() {
  lua_State* state = lua_newstate(Allocate, nullptr);
  GRINDLE_ASSERT(state == nullptr, "Out of memory for a new Lua state");
  lua_atpanic(state, Panic);
  return state;
}

size_t SpareScriptBytes() { return Heap().SpareBytes(); }

void CloseScriptState(lua_State* state) { lua_close(state); }

}  // namespace grindle
