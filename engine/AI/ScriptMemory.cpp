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

constexpr size_t kGrain = 16;
constexpr size_t kSmallLimit = 4096;
constexpr size_t kClassCount = kSmallLimit / kGrain;
constexpr size_t kChunkSize = 8 * 1024;
constexpr size_t kChunksPerSlab = 128;

struct FreeBlock {
  FreeBlock* next;
};

// Every state's chunks come from a few large slabs, handed out in order and recycled as states
// close: states made one after another lie one after another, with nothing of the engine's between
// them, which is what keeps a sweep of "Update" calls over many states fast.
class ChunkPool {
 public:
  ~ChunkPool() {
    for (char* slab : slabs_) std::free(slab);
  }

  char* Take() {
    if (FreeBlock* chunk = free_) {
      free_ = chunk->next;
      return reinterpret_cast<char*>(chunk);
    }
    if (nextInSlab_ == kChunksPerSlab) {
      char* slab = static_cast<char*>(std::malloc(kChunkSize * kChunksPerSlab));
      if (slab == nullptr) return nullptr;
      slabs_.push_back(slab);
      nextInSlab_ = 0;
    }
    return slabs_.back() + kChunkSize * nextInSlab_++;
  }

  void Give(char* chunk) { free_ = new (chunk) FreeBlock{free_}; }

 private:
  std::vector<char*> slabs_;
  size_t nextInSlab_ = kChunksPerSlab;
  FreeBlock* free_ = nullptr;
};

ChunkPool& Chunks() {
  static ChunkPool pool;
  return pool;
}

class ScriptArena {
 public:
  ~ScriptArena() {
    for (char* chunk : chunks_) Chunks().Give(chunk);
  }

  void* Take(size_t size) {
    if (size > kSmallLimit) {
      largeBytes_ += size;
      return std::malloc(size);
    }
    const size_t index = ClassOf(size);
    if (FreeBlock* block = freeLists_[index]) {
      freeLists_[index] = block->next;
      return block;
    }
    const size_t rounded = (index + 1) * kGrain;
    if (bumpLeft_ < rounded) {
      // The tail of the old chunk is too small for this class; it is left unused.
      char* chunk = Chunks().Take();
      if (chunk == nullptr) return nullptr;
      chunks_.push_back(chunk);
      bump_ = chunk;
      bumpLeft_ = kChunkSize;
    }
    void* block = bump_;
    bump_ += rounded;
    bumpLeft_ -= rounded;
    return block;
  }

  void Give(void* block, size_t size) {
    if (size > kSmallLimit) {
      largeBytes_ -= size;
      std::free(block);
      return;
    }
    const size_t index = ClassOf(size);
    freeLists_[index] = new (block) FreeBlock{freeLists_[index]};
  }

  void* Resize(void* block, size_t oldSize, size_t newSize) {
    if (oldSize <= kSmallLimit && newSize <= kSmallLimit && ClassOf(oldSize) == ClassOf(newSize)) {
      return block;
    }
    if (oldSize > kSmallLimit && newSize > kSmallLimit) {
      void* moved = std::realloc(block, newSize);
      if (moved != nullptr) largeBytes_ = largeBytes_ - oldSize + newSize;
      return moved;
    }
    void* fresh = Take(newSize);
    if (fresh == nullptr) return nullptr;
    std::memcpy(fresh, block, std::min(oldSize, newSize));
    Give(block, oldSize);
    return fresh;
  }

  size_t Bytes() const { return chunks_.size() * kChunkSize + largeBytes_; }

 private:
  static size_t ClassOf(size_t size) { return (size + kGrain - 1) / kGrain - 1; }

  FreeBlock* freeLists_[kClassCount] = {};
  std::vector<char*> chunks_;
  char* bump_ = nullptr;
  size_t bumpLeft_ = 0;
  size_t largeBytes_ = 0;
};

// Lua's allocation function: with a block, `oldSize` is its size; without one it is a type hint.
void* Allocate(void* arena, void* block, size_t oldSize, size_t newSize) {
  auto* own = static_cast<ScriptArena*>(arena);
  if (newSize == 0) {
    if (block != nullptr) own->Give(block, oldSize);
    return nullptr;
  }
  if (block == nullptr) return own->Take(newSize);
  return own->Resize(block, oldSize, newSize);
}

int Panic(lua_State* state) {
  std::printf("Unprotected Lua error: %s\n", lua_tostring(state, -1));
  std::fflush(stdout);
  GRINDLE_ASSERT_TEXT(true, "true", "Lua panic");
  return 0;
}

ScriptArena* ArenaOf(lua_State* state) {
  void* arena = nullptr;
  lua_getallocf(state, &arena);
  return static_cast<ScriptArena*>(arena);
}

}  // namespace

lua_State* NewScriptState() {
  auto* arena = new ScriptArena;
  lua_State* state = lua_newstate(Allocate, arena);
  GRINDLE_ASSERT(state == nullptr, "Out of memory for a new Lua state");
  lua_atpanic(state, Panic);
  return state;
}

void CloseScriptState(lua_State* state) {
  ScriptArena* arena = ArenaOf(state);
  lua_close(state);
  delete arena;
}

size_t ScriptStateBytes(lua_State* state) { return ArenaOf(state)->Bytes(); }

}  // namespace grindle
