#include "tools/loomsim/command_line.h"

#include <algorithm>

#include "tools/loomsim/grammar.h"

namespace loomsim {
namespace {

constexpr std::string_view kRun = "run";

constexpr std::string_view kUsage =
    R"(loomsim runs scenario files against the driver UI library on the reference host:
it loads the library as the host does, sets up a property sheet, makes script calls,
prints what each call changed and checks what the scenario expects.

Usage:
  loomsim [OPTIONS]                      play the bundled tour of a sample property sheet
  loomsim run [OPTIONS] FILE.scn ...     run scenario files
  loomsim --help                         show this text

Options:
  --quiet           print only failures and the summary line
  --keep            keep each scenario's temporary directory tree and print where it is
  --library PATH    load the library from PATH (default: libspindleui.so beside loomsim,
                    or in ../lib when installed)

Example (round.scn):
  doc page <<XUL
  <window id="page"><vbox id="vars"/></window>
  XUL
  call Math.round(document, double(2.5))
  expect result true
  expect args.out_param == "3"

  $ loomsim run round.scn
The run ends with the line "N passed, N failed"; the exit status is 0 only when every
check passed and every statement parsed.

Statements (docs/scenarios.md explains each, with examples):
)";

}  // namespace

std::optional<CommandLine> ParseCommandLine(const std::vector<std::string>& arguments,
                                            std::string& error) {
  CommandLine line;
  bool run = false;
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    const std::string& argument = arguments[i];
    if (argument == "--help" || argument == "-h") {
      line.help = true;
    } else if (argument == "--quiet") {
      line.options.quiet = true;
    } else if (argument == "--keep") {
      line.options.keep = true;
    } else if (argument == "--library") {
      if (i + 1 == arguments.size()) {
        error = "--library needs the path of the library";
        return std::nullopt;
      }
      line.library = arguments[++i];
    } else if (argument.starts_with("-")) {
      error = "unknown option " + argument;
      return std::nullopt;
    } else if (!run && argument == kRun) {
      run = true;
    } else if (run) {
      line.files.emplace_back(argument);
    } else {
      error = "unknown command " + argument + " (the command is run)";
      return std::nullopt;
    }
  }
  if (run && line.files.empty() && !line.help) {
    error = "run needs at least one scenario file";
    return std::nullopt;
  }
  return line;
}

std::string HelpText() {
  std::string text(kUsage);
  for (const Facility& facility : Facilities()) {
    text.append(" ").append(facility.name).append(":\n");
    for (const StatementForm& form : facility.forms) {
      std::string_view usage = form.usage;
      while (!usage.empty()) {
        const std::size_t end = std::min(usage.find('\n'), usage.size());
        text.append("  ").append(usage.substr(0, end)).append("\n");
        usage.remove_prefix(std::min(end + 1, usage.size()));
      }
    }
  }
  return text;
}

}  // namespace loomsim
