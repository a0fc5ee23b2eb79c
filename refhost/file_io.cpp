#include "refhost/file_io.h"

#include <fcntl.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <utility>

#include "refhost/change_observer.h"
#include "refhost/text.h"

namespace refhost {
namespace {

bool g_fail_next_commit = false;

// Writes all of `bytes`, retrying short writes and interrupted calls.
bool WriteAll(int fd, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t written = ::write(fd, bytes.data(), bytes.size());
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(written));
  }
  return true;
}

}  // namespace

std::filesystem::path NativePath(const Loom::File& file) {
  std::string path = Utf8(file.path());
  for (char& c : path) {
    if (c == '\\') c = '/';
  }
  return std::filesystem::path(path);
}

std::optional<std::string> ReadWholeFile(const std::filesystem::path& path) {
  std::error_code error;
  if (!std::filesystem::is_regular_file(path, error)) return std::nullopt;
  std::ifstream in(path, std::ios::binary);
  if (!in) return std::nullopt;
  std::string bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
  if (in.bad()) return std::nullopt;
  return bytes;
}

bool WriteFileAtomically(const std::filesystem::path& path, std::string_view bytes) {
  // The temporary file lives in the target's directory: rename is atomic only within
  // one file system.
  std::string temp_name = path.string() + ".tmp-XXXXXX";
  const int fd = ::mkstemp(temp_name.data());
  if (fd < 0) return false;
  // mkstemp creates the file 0600; a settings file is as readable as any other.
  ::fchmod(fd, 0644);
  const bool written = WriteAll(fd, bytes) && ::fsync(fd) == 0;
  const bool closed = ::close(fd) == 0;
  const bool commit_allowed = !std::exchange(g_fail_next_commit, false);
  if (written && closed && commit_allowed && std::rename(temp_name.c_str(), path.c_str()) == 0) {
    ReportFileChange(Change::Kind::kFileWritten, path);
    return true;
  }
  ::unlink(temp_name.c_str());
  return false;
}

std::optional<FileVersion> VersionOf(const std::filesystem::path& path) {
  struct stat status;
  if (::stat(path.c_str(), &status) != 0) return std::nullopt;
  return FileVersion{status.st_dev,         status.st_ino,          status.st_size,
                     status.st_mtim.tv_sec, status.st_mtim.tv_nsec, status.st_ctim.tv_sec,
                     status.st_ctim.tv_nsec};
}

void ReportFileChange(Change::Kind kind, const std::filesystem::path& path) {
  if (ChangeObserver* observer = StoreObserver()) {
    observer->onChange(Change{.kind = kind, .file = path.native()});
  }
}

void failNextAtomicCommit() { g_fail_next_commit = true; }

}  // namespace refhost
