#include "tools/loomsim/file_watch.h"

#include <sys/inotify.h>
#include <unistd.h>

#include <system_error>
#include <utility>

namespace loomsim {
namespace {

constexpr std::uint32_t kEvents = IN_CREATE | IN_DELETE | IN_MODIFY | IN_ATTRIB | IN_MOVED_FROM |
                                  IN_MOVED_TO | IN_DELETE_SELF | IN_MOVE_SELF;

}  // namespace

FileWatch::FileWatch(std::filesystem::path root) : root_(std::move(root)) {
  inotify_ = inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
  if (inotify_ >= 0) WatchTree(root_);
}

FileWatch::~FileWatch() { Close(); }

void FileWatch::Close() {
  if (inotify_ >= 0) close(inotify_);
  inotify_ = -1;
}

void FileWatch::WatchTree(const std::filesystem::path& directory) {
  if (inotify_add_watch(inotify_, directory.c_str(), kEvents | IN_ONLYDIR) < 0) return;
  std::error_code error;
  for (auto it = std::filesystem::recursive_directory_iterator(directory, error);
       !error && it != std::filesystem::recursive_directory_iterator(); it.increment(error)) {
    if (it->is_directory(error))
      inotify_add_watch(inotify_, it->path().c_str(), kEvents | IN_ONLYDIR);
  }
}

bool FileWatch::Drain() {
  if (inotify_ < 0) return true;
  bool changed = false;
  bool directoryMade = false;
  alignas(inotify_event) char buffer[8192];
  for (ssize_t n; (n = read(inotify_, buffer, sizeof buffer)) > 0;) {
    for (ssize_t at = 0; at < n;) {
      const auto* event = reinterpret_cast<const inotify_event*>(buffer + at);
      at += static_cast<ssize_t>(sizeof(inotify_event) + event->len);
      if (event->mask & IN_Q_OVERFLOW) {
        // Events were lost, directories made meanwhile among them: from now on, walk.
        Close();
        return true;
      }
      changed = true;
      directoryMade |= (event->mask & IN_ISDIR) && (event->mask & (IN_CREATE | IN_MOVED_TO));
    }
  }
  // Changes in a directory made below the root must be heard of too: every directory is
  // watched again (an existing watch stays as it is).
  if (directoryMade) WatchTree(root_);
  return changed;
}

}  // namespace loomsim
