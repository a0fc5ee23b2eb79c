// Local file access for the reference host: host paths to native ones, whole-file reads,
// and atomic replacement of a file.
//
// Every host object that writes a file (settings stores, File::copyTo) replaces it
// through WriteFileAtomically, so a crash or an error leaves either the old file or the
// new one, never a part of one, and no temporary file behind.
#pragma once

#include <sys/types.h>

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>

#include "host/file.h"
#include "refhost/change_observer.h"

namespace refhost {

// A path given in UTF-8, and a path in UTF-8, whatever the platform's own encoding of
// paths (UTF-16 on Windows, where std::string paths would mean the ANSI code page).
std::filesystem::path PathFromUtf8(std::string_view utf8);
std::string Utf8Path(const std::filesystem::path& path);

// The native path of a host path. Both '\' and '/' separate names in host paths.
std::filesystem::path NativePath(const Loom::File& file);

// The bytes of a regular file; nothing when it is missing or cannot be read.
std::optional<std::string> ReadWholeFile(const std::filesystem::path& path);

// Replaces (or creates) `path` with `bytes`: writes a temporary file beside it, flushes
// it to disk, then renames it over the target. False, with the target untouched and the
// temporary file gone, when any step fails.
bool WriteFileAtomically(const std::filesystem::path& path, std::string_view bytes);

// Fault injection for tests: the next WriteFileAtomically writes and flushes its
// temporary file, then fails where the rename would happen, as a crash there would.
void failNextAtomicCommit();

// What tells one version of a file from the next without reading it: every write gives a
// file new modification and change times (the host's atomic writes a new inode too).
// Nothing when the file cannot be looked at.
// (device, inode, size, modified seconds and nanoseconds, changed seconds and nanoseconds);
// platforms without inodes or change times give 0 there (refhost/durable_file.h).
using FileVersion = std::tuple<std::uint64_t, std::uint64_t, std::uint64_t, std::int64_t,
                               std::int64_t, std::int64_t, std::int64_t>;
std::optional<FileVersion> VersionOf(const std::filesystem::path& path);

// Tells the store observer (change_observer.h) that the host wrote or removed `path`.
void ReportFileChange(Change::Kind kind, const std::filesystem::path& path);

}  // namespace refhost
