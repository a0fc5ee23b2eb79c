// The runner's command line:
//
//   loomsim [--quiet] [--keep] [--library PATH]                 plays the bundled tour
//   loomsim run [--quiet] [--keep] [--library PATH] FILE.scn ...
//   loomsim --help
//
// Options may stand anywhere after the program name.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "tools/loomsim/runner.h"

namespace loomsim {

struct CommandLine {
  bool help = false;
  RunOptions options;
  std::optional<std::filesystem::path> library;  // --library
  std::vector<std::filesystem::path> files;      // empty: the tour
};

// The parsed command line, or nothing with `error` saying what is wrong.
std::optional<CommandLine> ParseCommandLine(const std::vector<std::string>& arguments,
                                            std::string& error);

// The --help text: usage, an example, and every statement form.
std::string HelpText();

}  // namespace loomsim
