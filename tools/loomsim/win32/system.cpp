#include "tools/loomsim/system.h"

#include <windows.h>

#include <string>
#include <system_error>

namespace loomsim {

std::filesystem::path MakeTemporaryDirectory(std::string_view prefix) {
  const std::filesystem::path parent = std::filesystem::temp_directory_path();
  const std::wstring stem =
      std::filesystem::path(prefix).wstring() + std::to_wstring(GetCurrentProcessId()) + L"-";
  // CreateDirectoryW fails on a name that exists, so counting up finds a free one.
  for (unsigned attempt = 0;; ++attempt) {
    const std::filesystem::path candidate = parent / (stem + std::to_wstring(attempt));
    if (CreateDirectoryW(candidate.c_str(), nullptr)) return candidate;
    const DWORD error = GetLastError();
    if (error != ERROR_ALREADY_EXISTS || attempt == 1000) {
      throw std::filesystem::filesystem_error(
          "cannot create a temporary directory", candidate,
          std::error_code(static_cast<int>(error), std::system_category()));
    }
  }
}

std::filesystem::path RunningProgram() {
  std::wstring path(MAX_PATH, L'\0');
  for (;;) {
    const DWORD length = GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()));
    if (length == 0) return {};
    if (length < path.size()) return std::filesystem::path(path.substr(0, length));
    path.resize(path.size() * 2);
  }
}

}  // namespace loomsim
