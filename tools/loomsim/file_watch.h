// The files of a scenario's directory tree as they are now, looked at again only when
// something changed there.
//
// The kernel tells (inotify) of every file created, written, removed or moved below the
// root, so a call after which nothing changed costs no walk of the tree at all. When
// something did change, or the host reported writing a file, the tree is walked as
// file_snapshot.h says (status first, content only where it changed). Without inotify
// (no instance left, a queue that overflowed, or on Windows) every look walks the tree.
// The kernel's part is in posix/file_watch.cpp, its Windows twin in win32/.
#pragma once

#include <filesystem>
#include <memory>
#include <vector>

#include "tools/loomsim/file_snapshot.h"

namespace loomsim {

class FileWatch {
 public:
  explicit FileWatch(std::filesystem::path root);
  ~FileWatch();
  FileWatch(const FileWatch&) = delete;
  FileWatch& operator=(const FileWatch&) = delete;

  // The files now; `written`: files the host reported writing, read again in any case.
  // The same snapshot as the last look's when nothing changed, so comparing the pointers
  // tells whether anything did.
  std::shared_ptr<const FileSnapshot> Current(
      const std::vector<std::filesystem::path>& written = {});

 private:
  // Whether anything happened below the root since the last look (true when unknown).
  bool Drain();
  // Watches `directory` and every directory below it.
  void WatchTree(const std::filesystem::path& directory);
  void Close();

  std::filesystem::path root_;
  int inotify_ = -1;
  std::shared_ptr<const FileSnapshot> snapshot_;  // after the last look; null before the first
};

}  // namespace loomsim
