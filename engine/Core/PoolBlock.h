// The byte layout of one pool block, shared by the pool's inline fast paths: object bytes, guard
// bytes, one flag byte, the whole a multiple of 16. Every block ends in a 16-byte tail holding the
// guard and the flag (and, in the 4- and 8-byte classes, the object too). The tail is written as
// one 16-byte store and checked as two whole words: a narrower read right after a wide fill stalls
// on store forwarding and would cost more than the rest of a pool operation.
#pragma once

#include <bit>
#include <cstdint>
#include <cstring>
#include <emmintrin.h>

namespace grindle::pool {

static_assert(std::endian::native == std::endian::little, "block tails are read as words");

inline void*& Link(void* p) { return *static_cast<void**>(p); }

inline uint64_t Repeated(uint8_t pattern) { return 0x0101010101010101ull * pattern; }

struct BlockTail {
  uint64_t low;
  uint64_t high;
};

// Fills object and guard bytes with `pattern` and writes the whole flag byte, 16 aligned bytes a
// store (blocks are 16-byte aligned and a multiple of 16 long).
inline void FillBlock(char* block, uint32_t stride, uint8_t pattern, uint8_t flag) {
  const uint64_t word = Repeated(pattern);
  const __m128i whole = _mm_set1_epi64x(static_cast<long long>(word));
  char* tail = block + stride - 16;
  for (char* p = block; p < tail; p += 16) _mm_store_si128(reinterpret_cast<__m128i*>(p), whole);
  const uint64_t high = (word & 0x00FFFFFFFFFFFFFFull) | (static_cast<uint64_t>(flag) << 56);
  _mm_store_si128(reinterpret_cast<__m128i*>(tail),
                  _mm_set_epi64x(static_cast<long long>(high), static_cast<long long>(word)));
}

inline BlockTail ReadTail(const char* block, uint32_t stride) {
  BlockTail tail;
  std::memcpy(&tail.low, block + stride - 16, 8);
  std::memcpy(&tail.high, block + stride - 8, 8);
  return tail;
}

// The bit position of the class that serves `size` (0..4 -> 2, 8 -> 3, 16 -> 4, ...).
inline int ClassIndexFor(uint32_t size) { return size <= 4 ? 2 : std::bit_width(size - 1); }

}  // namespace grindle::pool
