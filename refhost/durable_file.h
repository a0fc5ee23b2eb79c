// The operating system's part of replacing a file atomically (refhost/file_io.h): one
// implementation per platform, in posix/ and win32/.
#pragma once

#include <filesystem>
#include <optional>
#include <string_view>

namespace refhost {

// Creates a new file with a unique name beside `target`, writes `bytes` into it and
// flushes it to disk. Its path, or nothing (and no file left behind) on failure.
std::optional<std::filesystem::path> WriteTemporaryBeside(const std::filesystem::path& target,
                                                          std::string_view bytes);

// Renames `temporary` over `target` in one step, replacing what was there.
bool MoveOver(const std::filesystem::path& temporary, const std::filesystem::path& target);

}  // namespace refhost
