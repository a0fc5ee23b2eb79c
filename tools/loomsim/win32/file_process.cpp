#include "tools/loomsim/file_process.h"

namespace loomsim {

// Windows has no fork: the file runs here, in the runner's own process. A fault inside a
// library call is still caught by the fault guard and fails that call; one elsewhere
// ends the run.
void RunFileInOwnProcess(ObjectFinder finder, const std::filesystem::path& file,
                         std::string_view text, const RunOptions& options, Report& report,
                         std::ostream&) {
  RunScenario(finder, file, text, options, report);
}

// Nothing to tell: there is no parent process that counts.
void NoteProgress(int, const Report&) {}

}  // namespace loomsim
