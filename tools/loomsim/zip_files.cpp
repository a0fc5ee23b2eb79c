#include "tools/loomsim/zip_files.h"

#include <zip.h>

#include "refhost/file_io.h"

namespace loomsim {
namespace {

std::string OpenError(int code) {
  zip_error_t error;
  zip_error_init_with_code(&error, code);
  std::string text = zip_error_strerror(&error);
  zip_error_fini(&error);
  return text;
}

}  // namespace

// libzip takes file names in UTF-8 on every platform.
std::optional<std::string> WriteZipMember(const std::filesystem::path& path,
                                          const std::string& member, std::string_view bytes) {
  int code = 0;
  zip_t* archive = zip_open(refhost::Utf8Path(path).c_str(), ZIP_CREATE, &code);
  if (archive == nullptr) return OpenError(code);
  // libzip reads the buffer when the archive is closed; `bytes` outlives that.
  zip_source_t* source = zip_source_buffer(archive, bytes.data(), bytes.size(), 0);
  if (source == nullptr ||
      zip_file_add(archive, member.c_str(), source, ZIP_FL_OVERWRITE | ZIP_FL_ENC_UTF_8) < 0) {
    std::string error = zip_strerror(archive);
    if (source != nullptr) zip_source_free(source);
    zip_discard(archive);
    return error;
  }
  if (zip_close(archive) < 0) {
    std::string error = zip_strerror(archive);
    zip_discard(archive);
    return error;
  }
  return std::nullopt;
}

std::optional<bool> ZipHasMember(const std::filesystem::path& path, const std::string& member,
                                 std::string& error) {
  int code = 0;
  zip_t* archive = zip_open(refhost::Utf8Path(path).c_str(), ZIP_RDONLY, &code);
  if (archive == nullptr) {
    error = OpenError(code);
    return std::nullopt;
  }
  const bool has = zip_name_locate(archive, member.c_str(), 0) >= 0;
  zip_discard(archive);
  return has;
}

std::optional<std::string> ZipMemberBytes(const std::filesystem::path& path,
                                          const std::string& member, std::string& error) {
  int code = 0;
  zip_t* archive = zip_open(refhost::Utf8Path(path).c_str(), ZIP_RDONLY, &code);
  if (archive == nullptr) {
    error = OpenError(code);
    return std::nullopt;
  }
  std::optional<std::string> bytes;
  zip_stat_t stat;
  zip_file_t* file = zip_stat(archive, member.c_str(), 0, &stat) == 0
                         ? zip_fopen(archive, member.c_str(), 0)
                         : nullptr;
  if (file == nullptr) {
    error = "no member " + member;
  } else {
    bytes.emplace(stat.size, '\0');
    if (zip_fread(file, bytes->data(), stat.size) != static_cast<zip_int64_t>(stat.size)) {
      error = "member " + member + " cannot be read";
      bytes.reset();
    }
    zip_fclose(file);
  }
  zip_discard(archive);
  return bytes;
}

}  // namespace loomsim
