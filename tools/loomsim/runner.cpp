#include "tools/loomsim/runner.h"

#include <signal.h>
#include <stdlib.h>
#include <string.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <exception>
#include <new>
#include <optional>
#include <streambuf>
#include <vector>

#include "refhost/file_io.h"
#include "tools/loomsim/grammar.h"
#include "tools/loomsim/scenario.h"
#include "tools/loomsim/source_text.h"
#include "tools/loomsim/statement_reader.h"

namespace loomsim {
namespace {

// How far the file running in a child process got, in memory the parent shares.
struct FileProgress {
  int line = 0;  // of the statement running or last run
  int passed = 0;
  int failed = 0;
  bool finished = false;
};

// Set in the child process only.
FileProgress* g_progress = nullptr;

// Kept up to date as the file runs, so that the parent counts what ran before a crash.
void NoteProgress(int line, const Report& report) {
  if (g_progress == nullptr) return;
  g_progress->line = line;
  g_progress->passed = report.passed();
  g_progress->failed = report.failed();
}

struct Step {
  int line;
  bool comment;
  std::string text;  // the comment, or the statement as written (for errors)
  Parsed parsed{};
};

// Enough to fix a file in one go; more are most likely one mistake repeated.
constexpr int kMaxParseErrors = 20;

// Every statement parsed, or nothing after reporting each that does not parse (up to
// kMaxParseErrors), so that one run shows an author everything to fix.
std::optional<std::vector<Step>> ParseFile(std::string_view text, Report& report) {
  try {
    std::vector<Step> steps;
    int errors = 0;
    for (SourceStatement& statement : ReadStatements(text)) {
      Step step{statement.line, statement.comment,
                statement.comment ? statement.text : statement.written};
      if (!step.comment) {
        try {
          step.parsed = ParseStatement(Facilities(), statement.text, statement.block);
        } catch (const ParseError& error) {
          report.Error(StatementError(step.line, step.text, error));
          if (++errors == kMaxParseErrors) {
            report.Note("stopped reading after " + std::to_string(kMaxParseErrors) +
                        " statements that do not parse");
            return std::nullopt;
          }
        }
      }
      steps.push_back(std::move(step));
    }
    if (errors > 0) return std::nullopt;
    return steps;
  } catch (const StatementError& error) {
    report.Error(error);
    return std::nullopt;
  }
}

void RunSteps(Scenario& scenario, std::vector<Step>& steps, Report& report) {
  for (Step& step : steps) {
    if (step.comment) {
      report.Comment(step.text);
      continue;
    }
    NoteProgress(step.line, report);
    scenario.BeginStatement(step.line, step.parsed.echo);
    // Expectations print themselves with their outcome.
    if (!step.parsed.echo.starts_with(kExpectPrefix)) report.Statement(step.line, step.parsed.echo);
    try {
      step.parsed.run(scenario);
    } catch (const SetupError& error) {
      report.Error(StatementError(step.line, step.text, error.what()));
      return;
    } catch (const std::exception& error) {
      report.Error(StatementError(step.line, step.text, std::string("failed: ") + error.what()));
      return;
    }
  }
}

// Hands what the child's report prints to the parent line by line, so that the lines
// before a crash are not lost.
class PipeBuffer final : public std::streambuf {
 public:
  explicit PipeBuffer(int fd) : fd_(fd) {}
  ~PipeBuffer() override { sync(); }
  PipeBuffer(const PipeBuffer&) = delete;
  PipeBuffer& operator=(const PipeBuffer&) = delete;

 protected:
  int_type overflow(int_type c) override {
    if (c == traits_type::eof()) return traits_type::not_eof(c);
    pending_.push_back(traits_type::to_char_type(c));
    if (c == '\n') sync();
    return c;
  }
  std::streamsize xsputn(const char* text, std::streamsize count) override {
    pending_.append(text, static_cast<std::size_t>(count));
    if (pending_.find('\n') != std::string::npos) sync();
    return count;
  }
  int sync() override {
    std::size_t written = 0;
    while (written < pending_.size()) {
      const ssize_t n = ::write(fd_, pending_.data() + written, pending_.size() - written);
      if (n <= 0) break;
      written += static_cast<std::size_t>(n);
    }
    pending_.clear();
    return 0;
  }

 private:
  int fd_;
  std::string pending_;
};

// Runs one file in a child process, so that nothing going wrong while it runs (a fault
// outside a library call, a stack overflow) ends the run: the parent reports the crash,
// removes the file's temporary tree and goes on with the next file. The child's
// temporary trees are made in a directory of the parent's (TMPDIR), which the parent
// removes unless the file ran to its end with --keep.
void RunFileInChild(ObjectFinder finder, const std::filesystem::path& file, std::string_view text,
                    const RunOptions& options, Report& report, std::ostream& out) {
  std::string holder = (std::filesystem::temp_directory_path() / "loomsim-run-XXXXXX").string();
  void* shared = mmap(nullptr, sizeof(FileProgress), PROT_READ | PROT_WRITE,
                      MAP_SHARED | MAP_ANONYMOUS, -1, 0);
  int fds[2];
  if (mkdtemp(holder.data()) == nullptr || shared == MAP_FAILED || pipe(fds) != 0) {
    throw std::runtime_error(std::string("cannot start a process for the file: ") +
                             strerror(errno));
  }
  auto* progress = new (shared) FileProgress();
  out.flush();
  std::fflush(nullptr);
  const pid_t child = fork();
  if (child == 0) {
    close(fds[0]);
    setenv("TMPDIR", holder.c_str(), 1);
    g_progress = progress;
    {
      PipeBuffer buffer(fds[1]);
      std::ostream childOut(&buffer);
      Report childReport(childOut, options.quiet);
      RunScenario(finder, file, text, options, childReport);
      NoteProgress(progress->line, childReport);
      progress->finished = true;
    }
    // No exit handlers: they belong to the parent (the library's unload among them).
    _exit(0);
  }
  close(fds[1]);
  char chunk[4096];
  for (ssize_t n; (n = read(fds[0], chunk, sizeof chunk)) != 0;) {
    if (n > 0)
      out.write(chunk, n);
    else if (errno != EINTR)
      break;
  }
  close(fds[0]);
  int status = 0;
  if (child > 0) waitpid(child, &status, 0);
  report.Resume(file.string(), progress->passed, progress->failed);
  if (!progress->finished) {
    const std::string how = child < 0 ? "could not be started"
                            : WIFSIGNALED(status)
                                ? std::string("crashed: ") + strsignal(WTERMSIG(status))
                                : "ended with status " + std::to_string(WEXITSTATUS(status));
    report.Error(StatementError(0, {},
                                "the file " + how + " at line " + std::to_string(progress->line) +
                                    "; the rest of it did not run"));
  }
  if (!progress->finished || !options.keep) {
    std::error_code ignored;
    std::filesystem::remove_all(holder, ignored);
  }
  munmap(shared, sizeof(FileProgress));
}

}  // namespace

void RunScenario(ObjectFinder finder, const std::filesystem::path& file, std::string_view text,
                 const RunOptions& options, Report& report) {
  report.BeginFile(file.string());
  std::optional<std::vector<Step>> steps = ParseFile(text, report);
  if (!steps) return;
  try {
    Scenario scenario(finder, file, report);
    for (const Facility& facility : Facilities()) {
      if (facility.start != nullptr) facility.start(scenario);
    }
    RunSteps(scenario, *steps, report);
    if (options.keep) {
      scenario.sandbox().Keep();
      report.Note("kept the directory tree of " + file.string() + " in " +
                  scenario.sandbox().root().string());
    }
  } catch (const std::exception& error) {
    report.Error(StatementError(0, {}, std::string("cannot run: ") + error.what()));
  }
}

bool RunScenarioFiles(const LibraryLoader& load, std::span<const std::filesystem::path> files,
                      const RunOptions& options, std::ostream& out) {
  Report report(out, options.quiet);
  for (const std::filesystem::path& file : files) {
    const std::optional<std::string> text = refhost::ReadWholeFile(file);
    if (!text) {
      report.BeginFile(file.string());
      report.Error(StatementError(0, {}, "cannot read the file: " + ReadFailure(file)));
      continue;
    }
    // Unloaded again when the file has run: the next file meets a library that has never
    // been called.
    const LoadedLibrary library = load();
    if (library.finder == nullptr) {
      report.BeginFile(file.string());
      report.Error(StatementError(0, {}, "cannot load the library: " + library.error));
      continue;
    }
    try {
      RunFileInChild(library.finder, file, *text, options, report, out);
    } catch (const std::exception& error) {
      report.BeginFile(file.string());
      report.Error(StatementError(0, {}, error.what()));
    }
  }
  report.Summary();
  return report.failed() == 0;
}

}  // namespace loomsim
