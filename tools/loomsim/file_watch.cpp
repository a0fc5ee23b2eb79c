#include "tools/loomsim/file_watch.h"

#include <utility>

namespace loomsim {

std::shared_ptr<const FileSnapshot> FileWatch::Current(
    const std::vector<std::filesystem::path>& written) {
  if (Drain() || !snapshot_ || !written.empty()) {
    // A walk that finds the files as they were keeps the last snapshot, so that the
    // pointer tells the caller nothing changed even where every look walks.
    FileSnapshot now = TakeFileSnapshot(root_, written);
    if (!snapshot_ || now != *snapshot_)
      snapshot_ = std::make_shared<const FileSnapshot>(std::move(now));
  }
  return snapshot_;
}

}  // namespace loomsim
