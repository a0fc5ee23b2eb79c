#include "refhost/durable_file.h"

#include "refhost/file_io.h"

#include <windows.h>

#include <algorithm>
#include <string>

namespace refhost {
namespace {

// Writes all of `bytes`, in pieces a DWORD can count.
bool WriteAll(HANDLE file, std::string_view bytes) {
  while (!bytes.empty()) {
    const DWORD piece = static_cast<DWORD>(std::min<std::size_t>(bytes.size(), 1u << 30));
    DWORD written = 0;
    if (!WriteFile(file, bytes.data(), piece, &written, nullptr) || written == 0) return false;
    bytes.remove_prefix(written);
  }
  return true;
}

}  // namespace

std::optional<std::filesystem::path> WriteTemporaryBeside(const std::filesystem::path& target,
                                                          std::string_view bytes) {
  // CREATE_NEW refuses a name that exists, so trying successive numbers finds a free one
  // even when another process writes beside the same target.
  for (unsigned attempt = 0; attempt < 100; ++attempt) {
    const std::wstring name = target.wstring() + L".tmp-" + std::to_wstring(GetCurrentProcessId()) +
                              L"-" + std::to_wstring(attempt);
    const HANDLE file = CreateFileW(name.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW,
                                    FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE) {
      if (GetLastError() == ERROR_FILE_EXISTS) continue;
      return std::nullopt;
    }
    const bool written = WriteAll(file, bytes) && FlushFileBuffers(file);
    if (CloseHandle(file) && written) return std::filesystem::path(name);
    DeleteFileW(name.c_str());
    return std::nullopt;
  }
  return std::nullopt;
}

bool MoveOver(const std::filesystem::path& temporary, const std::filesystem::path& target) {
  return MoveFileExW(temporary.c_str(), target.c_str(),
                     MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH) != 0;
}

// Windows has no inode or change time to hand here: the size and the modification time
// (in the file system's 100 ns ticks) tell the versions apart.
std::optional<FileVersion> VersionOf(const std::filesystem::path& path) {
  std::error_code error;
  const std::uintmax_t size = std::filesystem::file_size(path, error);
  if (error) return std::nullopt;
  const auto modified = std::filesystem::last_write_time(path, error).time_since_epoch();
  if (error) return std::nullopt;
  const std::int64_t ticks = modified.count();
  return FileVersion{0, 0, size, ticks, 0, 0, 0};
}

}  // namespace refhost
