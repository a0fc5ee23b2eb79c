#include "refhost/file_io.h"

#include <cstdint>
#include <fstream>
#include <iterator>
#include <system_error>
#include <utility>

#include "refhost/change_observer.h"
#include "refhost/durable_file.h"
#include "refhost/text.h"

namespace refhost {
namespace {

bool g_fail_next_commit = false;

}  // namespace

std::filesystem::path PathFromUtf8(std::string_view utf8) {
  return std::filesystem::path(std::u8string(utf8.begin(), utf8.end()));
}

std::string Utf8Path(const std::filesystem::path& path) {
  const std::u8string utf8 = path.u8string();
  return std::string(utf8.begin(), utf8.end());
}

std::filesystem::path NativePath(const Loom::File& file) {
  std::string path = Utf8(file.path());
  for (char& c : path) {
    if (c == '\\') c = '/';
  }
  return PathFromUtf8(path);
}
std::optional<std::string> ReadWholeFile(const std::filesystem::path& path) {
  std::error_code error;
  if (!std::filesystem::is_regular_file(path, error)) return std::nullopt;
  std::ifstream in(path, std::ios::binary);
  if (!in) return std::nullopt;
  // Read at the size the file has, so a large file costs its size once rather than the
  // doublings of a growing string; a file that grows meanwhile is read to its end.
  const std::uintmax_t size = std::filesystem::file_size(path, error);
  std::string bytes(error ? 0 : static_cast<std::size_t>(size), '\0');
  in.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  bytes.resize(static_cast<std::size_t>(in.gcount()));
  if (!in.eof()) bytes.append(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
  if (in.bad()) return std::nullopt;
  return bytes;
}

bool WriteFileAtomically(const std::filesystem::path& path, std::string_view bytes) {
  // The temporary file lives in the target's directory: rename is atomic only within
  // one file system.
  const std::optional<std::filesystem::path> temporary = WriteTemporaryBeside(path, bytes);
  if (!temporary) return false;
  const bool commit_allowed = !std::exchange(g_fail_next_commit, false);
  if (commit_allowed && MoveOver(*temporary, path)) {
    ReportFileChange(Change::Kind::kFileWritten, path);
    return true;
  }
  std::error_code ignored;
  std::filesystem::remove(*temporary, ignored);
  return false;
}

void ReportFileChange(Change::Kind kind, const std::filesystem::path& path) {
  if (ChangeObserver* observer = StoreObserver()) {
    observer->onChange(Change{.kind = kind, .file = Utf8Path(path)});
  }
}

void failNextAtomicCommit() { g_fail_next_commit = true; }

}  // namespace refhost
