// The statement table of scenario files.
//
// Every statement form is a row {head, usage, parse}. The head is the leading words that
// select the row ("prop", "expect result", "expect no script"); the word "#" in a head
// stands for an element reference (#id or NAME#id), which is left for the parser to read.
// The row with the longest matching head wins. A facility (documents, settings, files,
// calls, the simulated OS, ...) keeps its rows in its own source file and is listed once
// in facilities.cpp; nothing else needs to change to add statements.
//
// A parser reads the rest of the statement from its input and returns the statement's
// canonical text (its echo, which the report prints and the tests compare) and the action
// that runs it. It throws ParseError for anything it cannot read.
#pragma once

#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "tools/loomsim/cursor.h"
#include "tools/loomsim/statement_reader.h"

namespace loomsim {

class Scenario;

// Expectations are the statements that start with this word; they report themselves
// as checks, and their echo without it says what was expected.
inline constexpr std::string_view kExpectPrefix = "expect ";

using Action = std::function<void(Scenario& scenario)>;

struct Parsed {
  std::string echo;
  Action run;
};

// What a parser reads: the statement after its head, and its block.
class StatementInput {
 public:
  StatementInput(Cursor& cursor, const std::optional<Block>& block)
      : cursor_(cursor), block_(block) {}

  Cursor& cursor() { return cursor_; }
  bool hasBlock() const { return block_.has_value(); }
  // The statement's <<WORD block; throws ParseError expecting one when there is none.
  const Block& TakeBlock();
  bool blockTaken() const { return blockTaken_; }

 private:
  Cursor& cursor_;
  const std::optional<Block>& block_;
  bool blockTaken_ = false;
};

struct StatementForm {
  std::string_view head;
  std::string_view usage;  // the form as the documentation writes it; lines split by '\n'
  Parsed (*parse)(StatementInput& input);
};

struct Facility {
  std::string_view name;
  std::span<const StatementForm> forms;
  // Prepares the facility's simulated state for a new scenario file; null for none.
  void (*start)(Scenario& scenario);
};

// Every facility, in the order --help lists them (facilities.cpp).
std::span<const Facility> Facilities();

// Parses one statement against the rows of `facilities`. Throws ParseError naming what was
// expected: the known heads when none matches, or what the row's parser wanted; also when
// a block is missing, or given to a statement that takes none, or text is left over.
Parsed ParseStatement(std::span<const Facility> facilities, std::string_view text,
                      const std::optional<Block>& block);

}  // namespace loomsim
