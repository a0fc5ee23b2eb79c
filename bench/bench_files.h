// Scratch files for the scaling benchmarks: settings files of a given size, written once
// below the system's temporary directory and removed when the process ends.
#pragma once

#include <cstddef>
#include <filesystem>
#include <string>

namespace bench {

// How the N values of a generated settings tree hang together.
enum class Shape {
  kFlat,     // all keys under the root
  kGrouped,  // branches of 100 keys
};

// The settings file text of N values "k<i>" = "v<i>", shaped as asked, the values below
// `branch` when it is not empty.
std::string SettingsXml(std::size_t values, Shape shape, const std::string& branch = {});

// A directory of its own for this process, created on first use.
const std::filesystem::path& ScratchDirectory();

// Writes `text` to `name` in the scratch directory and returns its path.
std::filesystem::path WriteScratchFile(const std::string& name, const std::string& text);

}  // namespace bench
