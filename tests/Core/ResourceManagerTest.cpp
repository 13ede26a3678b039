#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "Core/MessageHandler.h"
#include "Core/MetaResource.h"
#include "Core/ResourceManager.h"
#include "Core/ThreadManager.h"
#include "Eventually.h"

namespace grindle {
namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

// Declared before the manager in each test, so that it outlives the manager's list.
struct CountingResource final : MetaResource {
  using MetaResource::MetaResource;
  void Reload() override { ++reloads; }
  int reloads = 0;
};

class ResourceManagerTest : public testing::Test {
 protected:
  ResourceManagerTest() {
    std::string pattern = (fs::temp_directory_path() / "grindle-watch-XXXXXX").string();
    root_ = mkdtemp(pattern.data());
    fs::create_directories(root_ / "Scripts");
    Write("Scripts/Player.lua", "-- first");
    Write("Scripts/Enemy.lua", "-- first");
    messages_.Listen("ResourceReloaded", "Test", [this](MessageArgs args) {
      const std::string* name = args.Get<std::string>(0);
      announced_.push_back(name != nullptr ? *name : "<not a string>");
    });
  }
  ~ResourceManagerTest() override { fs::remove_all(root_); }

  void Write(const std::string& name, const std::string& text) {
    std::ofstream(root_ / name) << text;
  }

  // Runs frames until `resource` was reloaded. The first frame comes only
  // after the watcher had time to read everything already written, so writes made before the
  // call fall into one frame.
  void FramesUntilReloaded(ResourceManager& manager, const CountingResource& resource) {
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
    Eventually([&] {
      manager.Update();
      messages_.Deliver(MessageHandler::kDeliverAll);
      return resource.reloads != 0;
    });
  }

  fs::path root_;
  ThreadManager threads_{2, 10};
  MessageHandler messages_;
  std::vector<std::string> announced_;
};

TEST_F(ResourceManagerTest, ReloadsEachWrittenResourceOncePerFrameAndAnnouncesIt) {
  CountingResource player("Scripts/Player.lua");
  CountingResource enemy("Scripts/Enemy.lua");
  CountingResource sentinel("Sentinel.txt");
  ResourceManager manager(threads_, messages_, root_.string());
  manager.Register(&player);
  manager.Register(&enemy);
  manager.Register(&sentinel);
  std::this_thread::sleep_for(std::chrono::milliseconds(20));

  Write("Scripts/Player.lua", "-- second");
  Write("Scripts/Player.lua", "-- third");
  Write("Unregistered.txt", "nobody owns this");
  Write("Sentinel.txt", "last");
  FramesUntilReloaded(manager, sentinel);

  EXPECT_EQ(player.reloads, 1);
  EXPECT_EQ(enemy.reloads, 0);
  EXPECT_EQ(sentinel.reloads, 1);
  EXPECT_EQ(announced_, (std::vector<std::string>{"Scripts/Player.lua", "Sentinel.txt"}));

  // Nothing new written: later frames reload nothing.
  manager.Update();
  messages_.Deliver(MessageHandler::kDeliverAll);
  EXPECT_EQ(player.reloads, 1);
  EXPECT_EQ(announced_.size(), 2u);
}

TEST_F(ResourceManagerTest, WatchesFoldersCreatedAfterItStartedAndForgetsUnregisteredResources) {
  CountingResource nested("Scripts/Levels/Boss.lua");
  CountingResource player("Scripts/Player.lua");
  ResourceManager manager(threads_, messages_, root_.string());
  manager.Register(&nested);
  manager.Register(&player);
  manager.Unregister(&player);
  std::this_thread::sleep_for(std::chrono::milliseconds(20));

  fs::create_directories(root_ / "Scripts/Levels");
  Write("Scripts/Levels/Boss.lua", "-- new");
  Write("Scripts/Player.lua", "-- changed");
  FramesUntilReloaded(manager, nested);
  // Written again once the folder is known: seen through the folder's own watch.
  Write("Scripts/Levels/Boss.lua", "-- newer");
  nested.reloads = 0;
  FramesUntilReloaded(manager, nested);

  EXPECT_EQ(nested.reloads, 1);
  EXPECT_EQ(player.reloads, 0);
}

TEST_F(ResourceManagerTest, DestructionWhileTheWatcherWaitsIsPrompt) {
  auto manager = std::make_unique<ResourceManager>(threads_, messages_, root_.string());
  // Let the watcher job start and block waiting for changes.
  std::this_thread::sleep_for(std::chrono::milliseconds(50));
  const auto start = Clock::now();
  manager.reset();
  // A watcher that missed its wake-up would wait forever; a second leaves room for a loaded machine.
  EXPECT_LT(Clock::now() - start, std::chrono::milliseconds(1000));

  // The worker it held is free again for other jobs.
  static std::atomic<int> ran;
  ran = 0;
  const auto count = [](uintptr_t) -> uint32_t {
    ran += 1;
    return 0;
  };
  for (int i = 0; i < 2; ++i) ASSERT_TRUE(threads_.AddJob(count, 0));
  threads_.WaitForAllJobs();
  EXPECT_EQ(ran.load(), 2);
}

}  // namespace
}  // namespace grindle
