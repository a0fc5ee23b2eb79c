// Where a scenario file runs: in a child process of its own on POSIX systems (a crash
// there ends only that file), in the runner's own process on Windows, where the fault
// guard (fault_guard.h) still catches faults inside library calls. One implementation per
// platform, in posix/ and win32/.
#pragma once

#include <filesystem>
#include <ostream>
#include <string_view>

#include "tools/loomsim/library_call.h"
#include "tools/loomsim/report.h"
#include "tools/loomsim/runner.h"

namespace loomsim {

// Runs one file as RunScenario does, counting into `report`, and reports a file that
// died before its end as one failure.
void RunFileInOwnProcess(ObjectFinder finder, const std::filesystem::path& file,
                         std::string_view text, const RunOptions& options, Report& report,
                         std::ostream& out);

// Called before each statement runs: keeps the parent informed of how far the file got,
// so that it counts what ran before a crash.
void NoteProgress(int line, const Report& report);

}  // namespace loomsim
