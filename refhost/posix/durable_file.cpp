#include "refhost/durable_file.h"

#include <sys/stat.h>

#include "refhost/file_io.h"

#include <fcntl.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <string>

namespace refhost {
namespace {

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

std::optional<std::filesystem::path> WriteTemporaryBeside(const std::filesystem::path& target,
                                                          std::string_view bytes) {
  std::string name = target.string() + ".tmp-XXXXXX";
  const int fd = ::mkstemp(name.data());
  if (fd < 0) return std::nullopt;
  // mkstemp creates the file 0600; a settings file is as readable as any other.
  ::fchmod(fd, 0644);
  const bool written = WriteAll(fd, bytes) && ::fsync(fd) == 0;
  if (::close(fd) == 0 && written) return std::filesystem::path(name);
  ::unlink(name.c_str());
  return std::nullopt;
}

bool MoveOver(const std::filesystem::path& temporary, const std::filesystem::path& target) {
  return std::rename(temporary.c_str(), target.c_str()) == 0;
}

std::optional<FileVersion> VersionOf(const std::filesystem::path& path) {
  struct stat status;
  if (::stat(path.c_str(), &status) != 0) return std::nullopt;
  return FileVersion{status.st_dev,         status.st_ino,          std::uint64_t(status.st_size),
                     status.st_mtim.tv_sec, status.st_mtim.tv_nsec, status.st_ctim.tv_sec,
                     status.st_ctim.tv_nsec};
}

}  // namespace refhost
