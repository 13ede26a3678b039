// Hot reload: a watcher job on the thread pool collects the names of files written under the
// working directory; once a frame, on the main thread, Update reloads every registered resource
// whose file was written and sends "ResourceReloaded" with its name. Register, Unregister and
// Update are main-thread only; the watcher shares nothing with them but the changed-file set,
// always under its mutex. A resource must be unregistered before it is destroyed.
#pragma once

#include <memory>
#include <string>
#include <vector>

namespace grindle {

class MessageHandler;
class MetaResource;
class ThreadManager;
struct WatchedTree;

class ResourceManager {
 public:
  // Starts watching `root` (the working directory unless a test says otherwise) on one of the
  // pool's workers, which the watcher keeps for as long as this object lives.
  ResourceManager(ThreadManager& threads, MessageHandler& messages, const std::string& root = ".");
  // Returns promptly even while the watcher is blocked waiting for changes.
  ~ResourceManager();
  ResourceManager(const ResourceManager&) = delete;
  ResourceManager& operator=(const ResourceManager&) = delete;

  void Register(MetaResource* resource);
  void Unregister(MetaResource* resource);
  void Update();

 private:
  std::vector<MetaResource*> resources_;
  MessageHandler& messages_;
  // Shared with the watcher job; whichever of the two lets go last frees it, so a job that starts
  // only after this object is gone still finds valid memory and simply ends.
  WatchedTree* pTree_;
  bool isJobQueued_ = false;
};

}  // namespace grindle
