// Sending and delivering a message allocates nothing from the heap once its name is known, however
// long the name: arguments and messages come from the pools, and a message does not copy its name.
// This binary counts every operator new, so the check sees allocations from anywhere in the path.
#include <gtest/gtest.h>

#include <atomic>
#include <cstdlib>
#include <new>
#include <string_view>

#include "Core/MessageHandler.h"

namespace {
std::atomic<size_t> gAllocations{0};
}  // namespace

void* operator new(std::size_t size) {
  ++gAllocations;
  if (void* block = std::malloc(size == 0 ? 1 : size)) return block;
  throw std::bad_alloc();
}
void operator delete(void* block) noexcept { std::free(block); }
void operator delete(void* block, std::size_t) noexcept { std::free(block); }

namespace grindle {
namespace {

TEST(MessageAllocation, SendAndDeliverOfAKnownNameAllocateNothingWhateverItsLength) {
  MessageHandler handler;
  int heard = 0;
  for (std::string_view name : {"Tick", "SCR:ControllerButtonTriggered"}) {
    handler.Listen(name, "Test",
                   [&heard](MessageArgs args) { heard += static_cast<int>(args.count); });
    // The first send may grow the pools; after that the path is steady.
    handler.SendArgs(name, 1.0);
    handler.Deliver(MessageHandler::kDeliverAll);
    const size_t before = gAllocations.load();
    for (int i = 0; i < 100; ++i) {
      handler.SendArgs(name, 2.0);
      handler.Send(name);
      handler.Deliver(MessageHandler::kDeliverAll);
    }
    EXPECT_EQ(gAllocations.load() - before, 0u) << name;
  }
  EXPECT_EQ(heard, 202);
}

}  // namespace
}  // namespace grindle
