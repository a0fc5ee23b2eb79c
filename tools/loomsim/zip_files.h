// Zip archives for scenarios, through libzip: writing a member, asking for one. The runner
// makes and inspects archives on its own, so a scenario checks the host's archive code
// against an independent reader and writer.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace loomsim {

// Writes `member` with `bytes` into the archive at `path`, creating the archive when it is
// missing and replacing a member of that name. The error text on failure.
std::optional<std::string> WriteZipMember(const std::filesystem::path& path,
                                          const std::string& member, std::string_view bytes);

// Whether the archive at `path` holds `member`; nothing, with `error` set, when the file
// is missing or not an archive.
std::optional<bool> ZipHasMember(const std::filesystem::path& path, const std::string& member,
                                 std::string& error);

// The bytes of `member` of the archive at `path`; nothing, with `error` set, when the
// file is missing, not an archive, or has no such member.
std::optional<std::string> ZipMemberBytes(const std::filesystem::path& path,
                                          const std::string& member, std::string& error);

}  // namespace loomsim
