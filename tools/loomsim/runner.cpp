#include "tools/loomsim/runner.h"

#include <exception>
#include <optional>
#include <vector>

#include "refhost/file_io.h"
#include "tools/loomsim/file_process.h"
#include "tools/loomsim/grammar.h"
#include "tools/loomsim/scenario.h"
#include "tools/loomsim/source_text.h"
#include "tools/loomsim/statement_reader.h"

namespace loomsim {
namespace {

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
      RunFileInOwnProcess(library.finder, file, *text, options, report, out);
    } catch (const std::exception& error) {
      report.BeginFile(file.string());
      report.Error(StatementError(0, {}, error.what()));
    }
  }
  report.Summary();
  return report.failed() == 0;
}

}  // namespace loomsim
