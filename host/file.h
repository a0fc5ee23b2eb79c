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

 private:
  wstring path_;
};

}  // namespace Loom
