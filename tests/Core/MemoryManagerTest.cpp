#include <gtest/gtest.h>

#include <memory>
#include <utility>
#include <vector>

#include "Core/MemoryManager.h"

namespace grindle {
namespace {

TEST(MemoryManager, SizeClassesArePowersOfTwoOfAtLeastFour) {
  for (const auto& [size, sizeClass] :
       {std::pair{0u, 4u}, {4u, 4u}, {5u, 8u}, {16u, 16u}, {17u, 32u}, {100u, 128u}}) {
    EXPECT_EQ(SizeClass(size), sizeClass) << size;
  }
}

TEST(MemoryManager, BlocksAreAlignedAndKeepGuardBytesAndFlag) {
  for (uint32_t size : {4u, 8u, 16u, 32u, 64u, 128u}) {
    MemoryManager pool(size, kBlocksPerPage, 1);
    EXPECT_GE(pool.PaddingSize(), 3u);
    EXPECT_EQ(pool.Stride() % kBlockAlignment, 0u) << size;
    EXPECT_EQ(pool.Stride(), size + pool.PaddingSize() + 1);
    void* block = pool.Allocate();
    EXPECT_EQ(reinterpret_cast<uintptr_t>(block) % kBlockAlignment, 0u);
    pool.Free(block);
  }
}

TEST(MemoryManager, FillPatternsMarkFreshInUseAndFreedBlocks) {
  MemoryManager pool(16, kBlocksPerPage, 1);
  auto* block = static_cast<uint8_t*>(pool.Allocate());
  for (uint32_t i = 0; i < 16 + pool.PaddingSize(); ++i) ASSERT_EQ(block[i], IN_USE_PATTERN);
  EXPECT_EQ(block[16 + pool.PaddingSize()] & 1, 1);
  pool.Free(block);
  // The first bytes hold the free-list link now; the rest shows the freed pattern.
  for (uint32_t i = sizeof(void*); i < 16 + pool.PaddingSize(); ++i)
    ASSERT_EQ(block[i], kFreedPattern);
  EXPECT_EQ(block[16 + pool.PaddingSize()] & 1, 0);

  // The block before it in the page was never handed out and still carries the fresh pattern.
  const uint8_t* untouched = block - pool.Stride();
  for (uint32_t i = 16; i < 16 + pool.PaddingSize(); ++i)
    ASSERT_EQ(untouched[i], kFreshPaddingPattern);
}

TEST(MemoryManager, SixtyFifthAllocationAddsAPageAtTheHeadAndEveryPageFindsItsBlocks) {
  MemoryManager pool(32, kBlocksPerPage, 1);
  const void* firstPage = pool.FirstPage();
  std::vector<void*> blocks;
  for (int i = 0; i < 64; ++i) blocks.push_back(pool.Allocate());
  EXPECT_EQ(pool.PageCount(), 1u);
  blocks.push_back(pool.Allocate());
  EXPECT_EQ(pool.PageCount(), 2u);
  EXPECT_NE(pool.FirstPage(), firstPage);
  // Many pages, freed in an order unrelated to the page list, must all find their page.
  while (blocks.size() < 64 * 40) blocks.push_back(pool.Allocate());
  EXPECT_EQ(pool.PageCount(), 40u);
  EXPECT_EQ(pool.BlocksInUse(), 64u * 40);
  for (size_t i = 0; i < blocks.size(); i += 2) pool.Free(blocks[i]);
  for (size_t i = blocks.size() - 1; i < blocks.size(); i -= 2) pool.Free(blocks[i]);
  EXPECT_EQ(pool.BlocksInUse(), 0u);
}

TEST(MemoryManager, FreedBlocksAreReusedLastInFirstOut) {
  MemoryManager pool(8, kBlocksPerPage, 1);
  void* a = pool.Allocate();
  void* b = pool.Allocate();
  pool.Free(a);
  pool.Free(b);
  EXPECT_EQ(pool.Allocate(), b);
  EXPECT_EQ(pool.Allocate(), a);
}

TEST(MemoryManager, RegistryServesZeroBytesFromTheFourByteClass) {
  MemoryManagerRegistry registry;
  EXPECT_EQ(registry.Find(0), nullptr);
  void* block = registry.Allocate(0);
  ASSERT_NE(registry.Find(4), nullptr);
  EXPECT_EQ(registry.Find(0), registry.Find(4));
  EXPECT_EQ(registry.Find(4)->BlocksInUse(), 1u);
  registry.Free(block, 3);
  EXPECT_EQ(registry.Find(4)->BlocksInUse(), 0u);
}

TEST(MemoryManager, TypedWrappersConstructAndDestroy) {
  const auto token = std::make_shared<int>(1);
  auto* copy = PoolNew<std::shared_ptr<int>>(token);
  EXPECT_EQ(token.use_count(), 2);
  PoolDelete(copy);
  EXPECT_EQ(token.use_count(), 1);
}

TEST(MemoryManagerDeathTest, WritingPastTheObjectIsCaughtAtFree) {
  EXPECT_DEATH(
      {
        MemoryManager pool(16, kBlocksPerPage, 1);
        auto* block = static_cast<char*>(pool.Allocate());
        block[16] = 0;
        pool.Free(block);
      },
      "DETAILS: Padding Corrupted");
}

TEST(MemoryManagerDeathTest, FreeingToANeverUsedClassAsserts) {
  EXPECT_DEATH(
      {
        MemoryManagerRegistry registry;
        void* block = registry.Allocate(16);
        registry.Free(block, 1024);
      },
      "Memory Manager being freed to does not exist\\.\\.\\.");
}

TEST(MemoryManagerDeathTest, ABlockOutsideEveryPageAssertsAlsoWhenFreedUnderAnotherUsedClass) {
  alignas(16) static char outside[64];
  EXPECT_DEATH(
      {
        MemoryManager pool(16, kBlocksPerPage, 1);
        pool.Free(outside);
      },
      "Block to free not found in any pages");
  // Once the class exists the registry hands the block on, and that pool's page search decides.
  EXPECT_DEATH(
      {
        MemoryManagerRegistry registry;
        registry.Allocate(32);
        registry.Free(outside, 20);
      },
      "Block to free not found in any pages");
}

}  // namespace
}  // namespace grindle
