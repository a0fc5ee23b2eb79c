// Paths and files of the host (Loom::File).
#pragma once

#include "host/loom_base.h"

namespace Loom {

// A path in the host's form: wide, with '/' or '\' as separators.
class File {
 public:
  File() = default;
  explicit File(wstring path);

  // This path joined with `name` by '/'.
  File operator/(const wstring& name) const;
  const wstring& path() const { return path_; }

  bool exists() const;
  // Removes the file; false when it is not there or cannot be removed.
  bool remove() const;
  // Copies the file over `target` (replacing it); false on failure.
  bool copyTo(const File& target) const;
  // Replaces (or creates) the file with `bytes`, atomically: it is either the old or the
  // new content, never part of one. False on failure, with the file as it was.
  bool write(const string& bytes) const;
  // Renames the file or directory to `target`, replacing a file there and creating the
  // missing folders on the way; false, with both as they were, on failure.
  bool moveTo(const File& target) const;
  // Creates this directory and its missing parents; true when it exists afterwards.
  bool createDirectory() const;
  // Removes this file, or this directory with everything below it; true when nothing is
  // left of it (also when it was not there).
  bool removeAll() const;

 private:
  wstring path_;
};

}  // namespace Loom
