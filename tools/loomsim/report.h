// What a run prints, and the count of passed and failed checks.
//
// A check is one expectation, or the reference check after one call. A statement that
// cannot be parsed or set up is an error: it counts as one failed check and stops its
// file. Failures and errors are always printed; everything else (the statements as they
// run, comments, results and changes) only without --quiet.
//
// Line shapes:
//   == FILE                                      a file starts
//   # text                                       a comment of the file
//     12  STATEMENT                              a statement runs (ok appended for a check)
//           -> true                              what a call returned
//           + doc#id.attr = "v"                  one change a line (see call_watch.h)
//   FAIL FILE:LINE: expected ..., got ...        a failed check
//   ERROR FILE:LINE: STATEMENT                   a statement that stopped its file...
//         expected WHAT, found "TEXT"          ...and why it did
//   N passed, N failed                           the last line of a run
#pragma once

#include <ostream>
#include <string>
#include <string_view>

#include "tools/loomsim/statement_reader.h"

namespace loomsim {

class Report {
 public:
  Report(std::ostream& out, bool quiet) : out_(out), quiet_(quiet) {}

  bool quiet() const { return quiet_; }
  void BeginFile(std::string_view file);
  void Comment(std::string_view text);
  void Statement(int line, std::string_view echo);
  // A line under the statement that runs.
  void Detail(std::string_view text);
  void Note(std::string_view text);  // printed also with --quiet

  void Pass(int line, std::string_view echo);
  // A check that passed and has nothing to show (a call's reference check).
  void PassSilently() { ++passed_; }
  void Fail(int line, std::string_view message);
  // A statement that stopped its file; line 0 for the file as a whole.
  void Error(const StatementError& error);

  // Takes over the counts of `file`, which another Report (a child process's) printed.
  void Resume(std::string_view file, int passed, int failed);

  int passed() const { return passed_; }
  int failed() const { return failed_; }
  // "N passed, N failed".
  void Summary();

 private:
  std::ostream& out_;
  bool quiet_;
  std::string file_;
  bool inComment_ = true;  // the last line printed is a comment or a file's start
  int passed_ = 0;
  int failed_ = 0;
};

}  // namespace loomsim
