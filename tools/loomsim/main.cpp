// loomsim: the scenario runner. Plays the bundled tour without arguments; see --help.
#include <filesystem>
#include <initializer_list>
#include <iostream>
#include <iterator>
#include <memory>
#include <string>
#include <system_error>
#include <vector>

#include "tools/loomsim/command_line.h"
#include "tools/loomsim/library.h"
#include "tools/loomsim/runner.h"
#include "tools/loomsim/system.h"

namespace {

constexpr int kUsageError = 2;

// The directory of the running program, wherever it was started from.
std::filesystem::path ProgramDirectory(const char* argv0) {
  const std::filesystem::path self = loomsim::RunningProgram();
  if (!self.empty()) return self.parent_path();
  std::error_code error;
  return std::filesystem::absolute(argv0, error).parent_path();
}

// The first of `candidates` that exists; the last when none does (it names what is
// missing in the error that follows).
std::filesystem::path FirstExisting(std::initializer_list<std::filesystem::path> candidates) {
  for (const std::filesystem::path& candidate : candidates) {
    if (std::filesystem::exists(candidate)) return candidate;
  }
  return *std::prev(candidates.end());
}

// The tour: installed, under the prefix's data directory; in a build, in the source
// tree it was built from, so edits to it show at once; else in samples/ beside the
// program, for a program copied elsewhere with its samples.
std::filesystem::path TourFile(const std::filesystem::path& programDirectory) {
  const std::filesystem::path tour = std::filesystem::path("samples") / "tour.scn";
  return FirstExisting({programDirectory / ".." / LOOMSIM_DATA_DIR / tour,
                        std::filesystem::path(LOOMSIM_SOURCE_DIR) / tour, programDirectory / tour});
}

// The library: beside the program in a build, in the prefix's library directory when
// installed.
std::filesystem::path LibraryFile(const std::filesystem::path& programDirectory) {
  return FirstExisting(
      {loomsim::Library::InDirectory(programDirectory),
       loomsim::Library::InDirectory(programDirectory / ".." / LOOMSIM_LIBRARY_DIR)});
}

}  // namespace

int main(int argc, char** argv) {
  std::string error;
  const std::optional<loomsim::CommandLine> line =
      loomsim::ParseCommandLine(std::vector<std::string>(argv + 1, argv + argc), error);
  if (!line) {
    std::cerr << "loomsim: " << error << "\nTry loomsim --help.\n";
    return kUsageError;
  }
  if (line->help) {
    std::cout << loomsim::HelpText();
    return 0;
  }
  const std::filesystem::path programDirectory = ProgramDirectory(argv[0]);
  const std::string libraryPath =
      line->library.value_or(LibraryFile(programDirectory)).string();
  const auto load = [&libraryPath] {
    auto library = std::make_shared<loomsim::Library>(libraryPath);
    return loomsim::LoadedLibrary{library->finder(), library, library->error()};
  };
  if (const loomsim::LoadedLibrary probe = load(); probe.finder == nullptr) {
    std::cerr << "loomsim: cannot load the library: " << probe.error << '\n';
    return 1;
  }
  std::vector<std::filesystem::path> files = line->files;
  if (files.empty()) files.push_back(TourFile(programDirectory));
  return loomsim::RunScenarioFiles(load, files, line->options, std::cout) ? 0 : 1;
}
