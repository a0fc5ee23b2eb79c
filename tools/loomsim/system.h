// What the runner needs of the operating system beyond the standard library, with one
// implementation per platform in posix/ and win32/ (the library loader is there too).
#pragma once

#include <filesystem>
#include <string_view>

namespace loomsim {

// Creates a new directory with a unique name that starts with `prefix` below the
// system's temporary directory; throws std::filesystem::filesystem_error when it cannot.
std::filesystem::path MakeTemporaryDirectory(std::string_view prefix);

// The running program's own file; empty when the system cannot tell.
std::filesystem::path RunningProgram();

}  // namespace loomsim
