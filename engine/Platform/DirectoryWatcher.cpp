#include "Platform/DirectoryWatcher.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <sys/inotify.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <filesystem>
#include <system_error>

namespace grindle::platform {

namespace {

constexpr uint32_t kFileWritten = IN_CLOSE_WRITE | IN_MOVED_TO;
constexpr uint32_t kFolderMask = kFileWritten | IN_CREATE | IN_ONLYDIR;

std::string Join(const std::string& folder, const std::string& name) {
  return folder.empty() ? name : folder + "/" + name;
}

// Version control and editor folders hold no game data and can be very large.
bool IsHidden(const std::string& name) { return !name.empty() && name[0] == '.'; }

}  // namespace

DirectoryWatcher::DirectoryWatcher(std::string root) : sRoot_(std::move(root)) {
  notifyFd_ = inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
  wakeFd_ = eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC);
  if (notifyFd_ >= 0) WatchTree("", nullptr);
}

DirectoryWatcher::~DirectoryWatcher() {
  if (notifyFd_ >= 0) close(notifyFd_);
  if (wakeFd_ >= 0) close(wakeFd_);
}

void DirectoryWatcher::WatchTree(const std::string& relativeDir,
                                 const WrittenFunction* reportExisting) {
  const std::filesystem::path base = std::filesystem::path(sRoot_) / relativeDir;
  const int wd = inotify_add_watch(notifyFd_, base.c_str(), kFolderMask);
  if (wd < 0) return;
  folders_[wd] = relativeDir;

  std::error_code error;
  for (const auto& entry : std::filesystem::directory_iterator(base, error)) {
    const std::string name = entry.path().filename().string();
    if (IsHidden(name)) continue;
    if (entry.is_directory(error) && !entry.is_symlink(error)) {
      WatchTree(Join(relativeDir, name), reportExisting);
    } else if (reportExisting != nullptr && entry.is_regular_file(error)) {
      // Written into a new folder before its watch existed: report it rather than miss it.
      (*reportExisting)(Join(relativeDir, name));
    }
  }
}

bool DirectoryWatcher::WaitForChanges(const WrittenFunction& onWritten) {
  if (!IsOpen()) return false;
  pollfd fds[2] = {{notifyFd_, POLLIN, 0}, {wakeFd_, POLLIN, 0}};
  const int ready = poll(fds, 2, -1);
  if (ready < 0) return errno == EINTR;
  if ((fds[1].revents & POLLIN) != 0) {
    uint64_t count = 0;
    [[maybe_unused]] const ssize_t drained = read(wakeFd_, &count, sizeof(count));
    return false;
  }
  if ((fds[0].revents & POLLIN) != 0) ReadEvents(onWritten);
  return (fds[0].revents & (POLLERR | POLLNVAL)) == 0;
}

void DirectoryWatcher::ReadEvents(const WrittenFunction& onWritten) {
  alignas(inotify_event) char buffer[4096];
  for (;;) {
    const ssize_t length = read(notifyFd_, buffer, sizeof(buffer));
    if (length <= 0) return;
    for (ssize_t offset = 0; offset < length;) {
      const auto* event = reinterpret_cast<const inotify_event*>(buffer + offset);
      offset += static_cast<ssize_t>(sizeof(inotify_event) + event->len);
      const auto folder = folders_.find(event->wd);
      if (folder == folders_.end()) continue;
      if ((event->mask & IN_IGNORED) != 0) {
        folders_.erase(folder);
        continue;
      }
      if (event->len == 0 || IsHidden(event->name)) continue;
      const std::string name = Join(folder->second, event->name);
      if ((event->mask & IN_ISDIR) != 0) {
        if ((event->mask & (IN_CREATE | IN_MOVED_TO)) != 0) WatchTree(name, &onWritten);
      } else if ((event->mask & kFileWritten) != 0) {
        onWritten(name);
      }
    }
  }
}

void DirectoryWatcher::Wake() {
  if (wakeFd_ < 0) return;
  const uint64_t one = 1;
  [[maybe_unused]] const ssize_t written = write(wakeFd_, &one, sizeof(one));
}

}  // namespace grindle::platform
