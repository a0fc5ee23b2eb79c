#include "tools/loomsim/report.h"

#include <iomanip>

namespace loomsim {
namespace {

constexpr int kLineColumn = 4;
constexpr std::string_view kDetailIndent = "          ";

}  // namespace

void Report::BeginFile(std::string_view file) {
  inComment_ = true;
  file_ = file;
  if (!quiet_) out_ << "== " << file << '\n';
}

void Report::Comment(std::string_view text) {
  if (quiet_) return;
  // A comment after a statement starts a new paragraph of the narrative.
  if (!inComment_) out_ << '\n';
  inComment_ = true;
  out_ << (text.empty() ? "#" : "# ") << text << '\n';
}

void Report::Statement(int line, std::string_view echo) {
  inComment_ = false;
  if (!quiet_) out_ << std::setw(kLineColumn) << line << "  " << echo << '\n';
}

void Report::Detail(std::string_view text) {
  if (!quiet_) out_ << kDetailIndent << text << '\n';
}

void Report::Note(std::string_view text) { out_ << text << '\n'; }

void Report::Pass(int line, std::string_view echo) {
  inComment_ = false;
  ++passed_;
  if (!quiet_) out_ << std::setw(kLineColumn) << line << "  " << echo << "  ok\n";
}

void Report::Fail(int line, std::string_view message) {
  inComment_ = false;
  ++failed_;
  out_ << "FAIL " << file_ << ':' << line << ": " << message << '\n';
}

void Report::Error(const StatementError& error) {
  inComment_ = false;
  ++failed_;
  if (error.line == 0) {
    out_ << "ERROR " << file_ << ": " << error.reason << '\n';
    return;
  }
  out_ << "ERROR " << file_ << ':' << error.line << ": " << error.statement << '\n'
       << "      " << error.reason << '\n';
}

void Report::Resume(std::string_view file, int passed, int failed) {
  file_ = file;
  inComment_ = false;
  passed_ += passed;
  failed_ += failed;
}

void Report::Summary() { out_ << passed_ << " passed, " << failed_ << " failed\n"; }

}  // namespace loomsim
