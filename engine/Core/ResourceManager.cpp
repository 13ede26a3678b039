#include "Core/ResourceManager.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <mutex>
#include <set>
#include <thread>

#include "Core/Assert.h"
#include "Core/MessageHandler.h"
#include "Core/Messages/Catalogue.h"
#include "Core/MetaResource.h"
#include "Core/ThreadManager.h"
#include "Platform/DirectoryWatcher.h"

namespace grindle {

namespace {
// The longest name the watcher accepts; anything longer stops the program.
constexpr size_t kMaxWatchedName = 259;
// How long destruction waits for a watcher job that a busy pool has not started yet. A job still
// queued after that keeps the shared state alive (and leaks it if the pool never runs it).
constexpr auto kJobStartWait = std::chrono::seconds(5);
}  // namespace

struct WatchedTree {
  explicit WatchedTree(const std::string& root) : watcher(root) {}

  // Drops one of the two owners (the manager and the watcher job).
  static void Release(WatchedTree* tree) {
    if (tree->owners.fetch_sub(1, std::memory_order_acq_rel) == 1) delete tree;
  }

  platform::DirectoryWatcher watcher;
  std::atomic<bool> isStopping{false};
  std::atomic<bool> hasStarted{false};
  std::atomic<int> owners{2};
  std::set<std::string> changedFiles;
  std::mutex mtxChangedFiles_;
  // Held by the watcher job for as long as it runs.
  std::timed_mutex mtxResetIOData_;
};

namespace {

uint32_t WatchJob(uintptr_t argument) {
  WatchedTree* tree = reinterpret_cast<WatchedTree*>(argument);
  tree->hasStarted.store(true);
  {
    std::lock_guard<std::timed_mutex> running(tree->mtxResetIOData_);
    const auto onWritten = [tree](const std::string& name) {
      GRINDLE_ASSERT(name.size() > kMaxWatchedName, "Changed file name is too long");
      std::lock_guard<std::mutex> lock(tree->mtxChangedFiles_);
      tree->changedFiles.insert(name);
    };
    // A failed wait ends the job: retrying a broken watch could only spin.
    while (!tree->isStopping.load() && tree->watcher.WaitForChanges(onWritten)) {
    }
  }
  WatchedTree::Release(tree);
  return 0;
}

}  // namespace

ResourceManager::ResourceManager(ThreadManager& threads, MessageHandler& messages,
                                 const std::string& root)
    : messages_(messages), pTree_(new WatchedTree(root)) {
  isJobQueued_ = threads.AddJob(&WatchJob, reinterpret_cast<uintptr_t>(pTree_));
  if (!isJobQueued_) WatchedTree::Release(pTree_);
}

ResourceManager::~ResourceManager() {
  pTree_->isStopping.store(true);
  const auto deadline = std::chrono::steady_clock::now() + kJobStartWait;
  while (isJobQueued_ && !pTree_->hasStarted.load() &&
         std::chrono::steady_clock::now() < deadline) {
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
  while (!pTree_->mtxResetIOData_.try_lock_for(std::chrono::milliseconds(1))) {
    pTree_->watcher.Wake();
  }
  pTree_->mtxResetIOData_.unlock();
  WatchedTree::Release(pTree_);
}

void ResourceManager::Register(MetaResource* resource) { resources_.push_back(resource); }

void ResourceManager::Unregister(MetaResource* resource) {
  resources_.erase(std::remove(resources_.begin(), resources_.end(), resource), resources_.end());
}

void ResourceManager::Update() {
  std::lock_guard<std::mutex> lock(pTree_->mtxChangedFiles_);
  if (pTree_->changedFiles.empty()) return;
  // A reload may register or unregister resources; walk the list as it stood.
  const std::vector<MetaResource*> resources = resources_;
  for (MetaResource* resource : resources) {
    if (pTree_->changedFiles.count(resource->Name()) == 0) continue;
    resource->Reload();
    msg::Post(messages_, msg::kResourceReloaded, resource->Name());
  }
  pTree_->changedFiles.clear();
}

}  // namespace grindle
