#include "tools/loomsim/system.h"

#include <stdlib.h>

#include <cerrno>
#include <string>
#include <system_error>

namespace loomsim {

std::filesystem::path MakeTemporaryDirectory(std::string_view prefix) {
  std::string pattern =
      (std::filesystem::temp_directory_path() / (std::string(prefix) + "XXXXXX")).string();
  if (mkdtemp(pattern.data()) == nullptr) {
    throw std::filesystem::filesystem_error("cannot create a temporary directory", pattern,
                                            std::error_code(errno, std::generic_category()));
  }
  return pattern;
}

std::filesystem::path RunningProgram() {
  std::error_code error;
  std::filesystem::path self = std::filesystem::read_symlink("/proc/self/exe", error);
  return error ? std::filesystem::path() : self;
}

}  // namespace loomsim
