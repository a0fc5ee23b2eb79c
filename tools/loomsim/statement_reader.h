// Cutting a scenario file into statements, comments and heredoc blocks.
//
// One statement per line; leading blanks are ignored; blank lines are dropped; a line
// whose first non-blank character is '#' is a comment (kept, because the runner prints
// comments as the narrative of a run). A statement whose last word is `<<WORD` takes the
// following lines, up to a line holding only WORD, as its block.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tools/loomsim/cursor.h"

namespace loomsim {

struct Block {
  std::string marker;  // the WORD of <<WORD
  int firstLine;       // the file line of the block's first line
  std::string text;    // the lines, each ending in '\n'
};

struct SourceStatement {
  int line;
  bool comment;
  // The statement without its `<<WORD`, or the comment without its '#' and first blank.
  std::string text;
  // The line as written, without its leading and trailing blanks.
  std::string written;
  std::optional<Block> block;
};

// A statement that cannot be read, parsed or set up, which stops its file: where, its
// text, and why ("expected WHAT, found TEXT" for one that does not parse).
struct StatementError {
  StatementError(int line, std::string statement, const ParseError& error);
  StatementError(int line, std::string statement, std::string reason)
      : line(line), statement(std::move(statement)), reason(std::move(reason)) {}

  int line;
  std::string statement;
  std::string reason;
};

// The statements and comments of `fileText`, in order. Throws StatementError for a block
// whose closing line is missing.
std::vector<SourceStatement> ReadStatements(std::string_view fileText);

}  // namespace loomsim
