// loomsim: the scenario runner. Plays the bundled tour without arguments; see --help.
#include <filesystem>
#include <iostream>
#include <memory>
#include <string>
#include <system_error>
#include <vector>

#include "tools/loomsim/command_line.h"
#include "tools/loomsim/library.h"
#include "tools/loomsim/runner.h"

namespace {

constexpr int kUsageError = 2;

// The directory of the running program, wherever it was started from.
std::filesystem::path ProgramDirectory(const char* argv0) {
  std::error_code error;
  const std::filesystem::path self = std::filesystem::read_symlink("/proc/self/exe", error);
  if (!error) return self.parent_path();
  return std::filesystem::absolute(argv0, error).parent_path();
}

// The tour: in the source tree the program was built from, so edits to it show at once;
// else in samples/ beside the program, for a program copied elsewhere with its samples.
std::filesystem::path TourFile(const std::filesystem::path& programDirectory) {
  const std::filesystem::path inSources =
      std::filesystem::path(LOOMSIM_SOURCE_DIR) / "samples" / "tour.scn";
  if (std::filesystem::exists(inSources)) return inSources;
  return programDirectory / "samples" / "tour.scn";
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
      line->library.value_or(loomsim::Library::InDirectory(programDirectory)).string();
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
