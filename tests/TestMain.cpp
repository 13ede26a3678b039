// Shared test entry: death tests fork a clean child ("threadsafe"), which the thread pool and the
// resource watcher need; the process installs one memory registry as start-up does.
#include <gtest/gtest.h>

#include "Core/MemoryManager.h"

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  static grindle::MemoryManagerRegistry registry;
  grindle::InstallMemoryRegistry(&registry);
  return RUN_ALL_TESTS();
}
