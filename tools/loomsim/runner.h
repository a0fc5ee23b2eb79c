// Running scenario files: each file is read and parsed whole first, then run statement by
// statement in a fresh Scenario, and the run ends with the summary line.
//
// What counts: every expectation, and the reference check after every call, is one check
// that passed or failed. A file that cannot be read, a statement that does not parse and
// a statement that cannot be set up (a bad XUL block, a missing document) each count as
// one failed check and stop their file (a file that does not parse runs not at all); the
// next file still runs.
#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <string_view>

#include "tools/loomsim/library_call.h"
#include "tools/loomsim/report.h"

namespace loomsim {

struct RunOptions {
  bool quiet = false;
  bool keep = false;  // keep each file's directory tree, and say where
};

// Runs one scenario, whose text is `text` and whose file is `file` (for the report and
// for paths relative to it), counting into `report`.
void RunScenario(ObjectFinder finder, const std::filesystem::path& file, std::string_view text,
                 const RunOptions& options, Report& report);

// The library as loaded for one scenario file: its findObject (null when loading
// failed, with `error` saying why) and what keeps it loaded until the file has run.
struct LoadedLibrary {
  ObjectFinder finder = nullptr;
  std::shared_ptr<void> holder;
  std::string error;
};
using LibraryLoader = std::function<LoadedLibrary()>;

// Reads and runs every file in order, each on the library as `load` gives it afresh, so
// no object's state carries from one file to the next, and each in a process of its own
// where the platform allows (file_process.h: a crash ends only that file, it counts as
// one failure and its temporary tree is removed); then prints the summary. True when no
// check failed.
bool RunScenarioFiles(const LibraryLoader& load, std::span<const std::filesystem::path> files,
                      const RunOptions& options, std::ostream& out);

}  // namespace loomsim
