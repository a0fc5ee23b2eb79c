#include "tools/loomsim/source_text.h"

#include <cerrno>
#include <cstring>
#include <fstream>
#include <optional>
#include <system_error>

#include "refhost/file_io.h"
#include "refhost/xml_text.h"
#include "tools/loomsim/scenario.h"

namespace loomsim {

std::string ReadFailure(const std::filesystem::path& file) {
  std::error_code error;
  if (std::filesystem::is_directory(file, error)) return std::strerror(EISDIR);
  std::ifstream probe(file, std::ios::binary);
  if (!probe) return std::strerror(errno);
  // The host reads settings and pages only from plain files, never from pipes or devices.
  return std::filesystem::is_regular_file(file, error) ? "read error" : "not a regular file";
}

std::string ReadSourceFile(const std::filesystem::path& file) {
  std::optional<std::string> text = refhost::ReadWholeFile(file);
  if (!text) throw SetupError{"cannot read " + file.string() + ": " + ReadFailure(file)};
  return std::move(*text);
}

void RequireWellFormedXml(std::string_view xml, const std::string& source, int firstLine) {
  std::string message;
  int line = 0;
  if (refhost::IsReadableXml(std::string(xml), refhost::kMaxXmlDepth, message, line)) return;
  throw SetupError{source + " is no XML at line " + std::to_string(firstLine + line - 1) + ": " +
                   message};
}

}  // namespace loomsim
