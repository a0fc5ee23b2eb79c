// Loom::File on std::filesystem.
#include "host/file.h"

#include <filesystem>
#include <system_error>
#include <utility>

#include "refhost/file_io.h"

namespace Loom {

File::File(wstring path) : path_(std::move(path)) {}

File File::operator/(const wstring& name) const {
  wstring joined = path_;
  // Joining never doubles a separator the path already ends with.
  if (!joined.empty() && joined.back() != u'/' && joined.back() != u'\\') joined += u'/';
  joined += name;
  return File(std::move(joined));
}

bool File::exists() const {
  std::error_code error;
  return std::filesystem::exists(refhost::NativePath(*this), error);
}

bool File::remove() const {
  const std::filesystem::path path = refhost::NativePath(*this);
  std::error_code error;
  // A File names a file: removing a directory through it is refused.
  if (std::filesystem::is_directory(path, error)) return false;
  if (!std::filesystem::remove(path, error)) return false;
  refhost::ReportFileChange(refhost::Change::Kind::kFileRemoved, path);
  return true;
}

bool File::copyTo(const File& target) const {
  // Through memory and an atomic replace, so a failed copy never leaves half a target.
  const auto bytes = refhost::ReadWholeFile(refhost::NativePath(*this));
  return bytes && refhost::WriteFileAtomically(refhost::NativePath(target), *bytes);
}

bool File::write(const string& bytes) const {
  return refhost::WriteFileAtomically(refhost::NativePath(*this),
                                      std::string_view(bytes.data(), bytes.size()));
}

bool File::moveTo(const File& target) const {
  const std::filesystem::path to = refhost::NativePath(target);
  std::error_code error;
  std::filesystem::create_directories(to.parent_path(), error);
  if (error) return false;
  std::filesystem::rename(refhost::NativePath(*this), to, error);
  return !error;
}

bool File::createDirectory() const {
  std::error_code error;
  std::filesystem::create_directories(refhost::NativePath(*this), error);
  return std::filesystem::is_directory(refhost::NativePath(*this), error);
}

bool File::removeAll() const {
  std::error_code error;
  std::filesystem::remove_all(refhost::NativePath(*this), error);
  return !error;
}

}  // namespace Loom
