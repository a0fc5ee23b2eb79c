#include "tools/loomsim/grammar.h"

#include <algorithm>
#include <vector>

namespace loomsim {
namespace {

constexpr std::string_view kElementWord = "#";

std::vector<std::string_view> Words(std::string_view head) {
  std::vector<std::string_view> words;
  while (!head.empty()) {
    const std::size_t blank = head.find(' ');
    words.push_back(head.substr(0, blank));
    head.remove_prefix(blank == std::string_view::npos ? head.size() : blank + 1);
  }
  return words;
}

// Consumes the literal words of `head` from `cursor`; false when one does not match. An
// element word only looks: the parser reads the reference itself. A literal word right
// before '#' is a document's name (`expect user#id`), not the keyword.
bool MatchHead(Cursor& cursor, std::string_view head) {
  for (std::string_view word : Words(head)) {
    if (word == kElementWord) {
      const std::string_view rest = cursor.Rest();
      const std::string_view next = rest.substr(0, rest.find(' '));
      if (next.find('#') == std::string_view::npos) return false;
    } else if (!cursor.Accept(word) || cursor.Touches('#')) {
      return false;
    }
  }
  return true;
}

// The first word of a head of several words that `text` starts with, or "".
std::string_view MatchedFirstWord(std::span<const Facility> facilities, std::string_view text) {
  for (const Facility& facility : facilities) {
    for (const StatementForm& form : facility.forms) {
      const std::vector<std::string_view> words = Words(form.head);
      Cursor cursor(text);
      if (words.size() > 1 && cursor.Accept(words[0])) return words[0];
    }
  }
  return {};
}

// What may follow `matchedFirst`: the next words of each head that starts with it, or
// every first word when it is "".
std::string Choices(std::span<const Facility> facilities, std::string_view matchedFirst) {
  std::vector<std::string_view> choices;
  for (const Facility& facility : facilities) {
    for (const StatementForm& form : facility.forms) {
      const std::vector<std::string_view> words = Words(form.head);
      std::string_view choice;
      if (matchedFirst.empty()) {
        choice = words[0];
      } else if (words[0] == matchedFirst && words.size() > 1) {
        choice = form.head.substr(words[0].size() + 1);
        if (choice == kElementWord) choice = "#id, NAME#id";
      }
      if (!choice.empty() && std::find(choices.begin(), choices.end(), choice) == choices.end()) {
        choices.push_back(choice);
      }
    }
  }
  std::string list;
  for (std::string_view choice : choices) list.append(list.empty() ? "" : ", ").append(choice);
  if (matchedFirst.empty()) return "a statement: " + list;
  return "after \"" + std::string(matchedFirst) + "\" one of: " + list;
}

}  // namespace

const Block& StatementInput::TakeBlock() {
  if (!block_) cursor_.Fail("a <<END block");
  blockTaken_ = true;
  return *block_;
}

Parsed ParseStatement(std::span<const Facility> facilities, std::string_view text,
                      const std::optional<Block>& block) {
  const StatementForm* best = nullptr;
  std::size_t bestWords = 0;
  for (const Facility& facility : facilities) {
    for (const StatementForm& form : facility.forms) {
      Cursor probe(text);
      const std::size_t words = Words(form.head).size();
      if (words > bestWords && MatchHead(probe, form.head)) {
        best = &form;
        bestWords = words;
      }
    }
  }
  Cursor cursor(text);
  if (best == nullptr) {
    const std::string_view first = MatchedFirstWord(facilities, text);
    cursor.Accept(first);
    cursor.Fail(Choices(facilities, first));
  }
  MatchHead(cursor, best->head);
  StatementInput input(cursor, block);
  Parsed parsed = best->parse(input);
  cursor.ExpectEnd("the end of the statement");
  if (block && !input.blockTaken()) {
    throw ParseError("the end of the statement: it takes no block", "<<" + block->marker);
  }
  return parsed;
}

}  // namespace loomsim
