// What a call did to the files of the scenario's directory tree: every file's size and
// content hash before and after, compared. A walk reads only the status of each file: the
// content of a file is read again only when its size, times or inode changed since the
// last walk, or when the host says it wrote it.
#pragma once

#include <cstdint>
#include <filesystem>
#include <map>
#include <string>
#include <vector>

namespace loomsim {

struct FileState {
  std::uintmax_t size;
  std::uint64_t hash;  // FNV-1a of the content

  bool operator==(const FileState&) const = default;
};

// Every regular file below `root`, by its path relative to it ('/' between names).
using FileSnapshot = std::map<std::string, FileState>;

// `written`: files the host reported writing, read again whatever their status says.
FileSnapshot TakeFileSnapshot(const std::filesystem::path& root,
                              const std::vector<std::filesystem::path>& written = {});

// Appends one line per file written or removed, named as place_ref.h names files:
//   + file user:"a.xml" (120 bytes)         a new file
//   ~ file user:"a.xml" (130 bytes)         a file whose content changed
//   - file user:"a.xml"                     a removed file
void DiffFiles(const FileSnapshot& before, const FileSnapshot& after,
               std::vector<std::string>& lines);

}  // namespace loomsim
