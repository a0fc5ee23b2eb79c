#include "refhost/durable_file.h"

#include <windows.h>

#include <algorithm>
#include <string>

#include "refhost/file_io.h"

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

// Windows has no inode or change time to hand here: the size and the last write time (in
// the file system's 100 ns ticks) tell the versions apart. Not std::filesystem's
// last_write_time: MinGW's counts whole seconds, which misses a rewrite of the same size
// within a second.
std::optional<FileVersion> VersionOf(const std::filesystem::path& path) {
  WIN32_FILE_ATTRIBUTE_DATA data;
  if (!GetFileAttributesExW(path.c_str(), GetFileExInfoStandard, &data)) return std::nullopt;
  const std::uint64_t size = (std::uint64_t(data.nFileSizeHigh) << 32) | data.nFileSizeLow;
  const std::int64_t ticks =
      std::int64_t((std::uint64_t(data.ftLastWriteTime.dwHighDateTime) << 32) |
                   data.ftLastWriteTime.dwLowDateTime);
  return FileVersion{0, 0, size, ticks, 0, 0, 0};
}

}  // namespace refhost
