#include "tools/loomsim/file_watch.h"

#include <utility>

namespace loomsim {

// Windows has no inotify: every look walks the tree, by size and modification time first
// as on a Linux machine whose inotify instances ran out.
FileWatch::FileWatch(std::filesystem::path root) : root_(std::move(root)) {}

FileWatch::~FileWatch() = default;

bool FileWatch::Drain() { return true; }

}  // namespace loomsim
