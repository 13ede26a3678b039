// Watches a directory tree for files that were written (closed after writing, or moved into
// place as editors save), through inotify, including subfolders created later. Construct on any
// thread; afterwards WaitForChanges belongs to one thread (the watcher job) and Wake may be called
// from any other. Names are reported relative to the root with '/' separators.
#pragma once

#include <functional>
#include <string>
#include <unordered_map>

namespace grindle::platform {

class DirectoryWatcher {
 public:
  using WrittenFunction = std::function<void(const std::string& relativeName)>;

  explicit DirectoryWatcher(std::string root);
  ~DirectoryWatcher();
  DirectoryWatcher(const DirectoryWatcher&) = delete;
  DirectoryWatcher& operator=(const DirectoryWatcher&) = delete;

  // False when inotify or the wake-up channel could not be opened; every wait then fails at once.
  bool IsOpen() const { return notifyFd_ >= 0 && wakeFd_ >= 0; }

  // Blocks until files were written or Wake() was called, reporting each written file. Returns
  // false when woken or when the watch failed; the caller decides whether to wait again.
  bool WaitForChanges(const WrittenFunction& onWritten);
  void Wake();

 private:
  void WatchTree(const std::string& relativeDir, const WrittenFunction* reportExisting);
  void ReadEvents(const WrittenFunction& onWritten);

  std::string sRoot_;
  int notifyFd_ = -1;
  int wakeFd_ = -1;
  // Watch descriptor -> folder relative to the root ("" for the root itself).
  std::unordered_map<int, std::string> folders_;
};

}  // namespace grindle::platform
