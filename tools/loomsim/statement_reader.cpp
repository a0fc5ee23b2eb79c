#include "tools/loomsim/statement_reader.h"

#include <algorithm>

#include "tools/loomsim/text_values.h"

namespace loomsim {
namespace {

constexpr std::string_view kBlanks = " \t";

std::string_view Trim(std::string_view text) {
  const std::size_t first = text.find_first_not_of(kBlanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

// The lines of `text` without their line ends (a "\r\n" end counts as one).
std::vector<std::string_view> Lines(std::string_view text) {
  std::vector<std::string_view> lines;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    std::string_view line = text.substr(0, end);
    if (line.ends_with('\r')) line.remove_suffix(1);
    lines.push_back(line);
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return lines;
}

// The WORD of a statement ending in `<<WORD` (a word of its own), or nothing.
std::optional<std::string> BlockMarker(std::string_view statement) {
  const std::size_t start = statement.find_last_of(kBlanks);
  const std::string_view last = statement.substr(start == std::string_view::npos ? 0 : start + 1);
  if (!last.starts_with("<<") || last.size() == 2) return std::nullopt;
  const std::string_view word = last.substr(2);
  if (!std::all_of(word.begin(), word.end(), IsNameChar)) return std::nullopt;
  return std::string(word);
}

}  // namespace

StatementError::StatementError(int line, std::string statement, const ParseError& error)
    : StatementError(line, std::move(statement),
                     "expected " + error.expected() + ", found " +
                         (error.found().empty() ? "the end of the line" : Quote(error.found())) +
                         (error.hint().empty() ? "" : ": " + error.hint())) {}

std::vector<SourceStatement> ReadStatements(std::string_view fileText) {
  // Editors on Windows start UTF-8 files with a byte order mark.
  constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
  if (fileText.starts_with(kByteOrderMark)) fileText.remove_prefix(kByteOrderMark.size());
  const std::vector<std::string_view> lines = Lines(fileText);
  std::vector<SourceStatement> statements;
  for (std::size_t i = 0; i < lines.size(); ++i) {
    const int lineNumber = static_cast<int>(i) + 1;
    const std::string_view text = Trim(lines[i]);
    if (text.empty()) continue;
    if (text.starts_with('#')) {
      std::string_view comment = text.substr(1);
      if (comment.starts_with(' ')) comment.remove_prefix(1);
      statements.push_back({lineNumber, true, std::string(comment), std::string(text), {}});
      continue;
    }
    SourceStatement statement{lineNumber, false, std::string(text), std::string(text), {}};
    if (const std::optional<std::string> marker = BlockMarker(text)) {
      statement.text = std::string(Trim(text.substr(0, text.size() - marker->size() - 2)));
      Block block{*marker, lineNumber + 1, {}};
      std::size_t end = i + 1;
      while (end < lines.size() && Trim(lines[end]) != *marker) {
        block.text.append(lines[end]).append("\n");
        ++end;
      }
      if (end == lines.size()) {
        throw StatementError(lineNumber, std::string(text),
                             "expected a line holding only " + *marker +
                                 " to close the block, found the end of the file");
      }
      statement.block = std::move(block);
      i = end;
    }
    statements.push_back(std::move(statement));
  }
  return statements;
}

}  // namespace loomsim
