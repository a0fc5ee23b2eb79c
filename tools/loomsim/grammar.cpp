#include "tools/loomsim/grammar.h"

#include <algorithm>
#include <vector>

#include "core/letter_difference.h"

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
std::vector<std::string_view> Choices(std::span<const Facility> facilities,
                                      std::string_view matchedFirst) {
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
  return choices;
}

std::string ChoicesText(std::span<const std::string_view> choices, std::string_view matchedFirst) {
  std::string list;
  for (std::string_view choice : choices) list.append(list.empty() ? "" : ", ").append(choice);
  if (matchedFirst.empty()) return "a statement: " + list;
  return "after \"" + std::string(matchedFirst) + "\" one of: " + list;
}

// "did you mean WORDS?" for the choice nearest to what stands in `rest` (as many of its
// words as the choice has), when one is near enough to be a slip of the keyboard.
std::string Suggestion(std::span<const std::string_view> choices, std::string_view matchedFirst,
                       std::string_view rest) {
  std::string_view nearest;
  std::size_t nearestDifference = spindle::kMaxLetterDifference + 1;
  for (std::string_view choice : choices) {
    std::size_t end = 0;
    for (std::size_t words = Words(choice).size(); words > 0 && end != std::string_view::npos;
         --words) {
      end = rest.find(' ', end == 0 ? 0 : end + 1);
    }
    const std::string_view written = rest.substr(0, end);
    // Short words are held to less: "foo" is two letters from "doc" but no slip of it.
    const std::size_t allowed = std::min(spindle::kMaxLetterDifference, written.size() / 3);
    const std::size_t difference = spindle::LetterDifference(written, choice);
    if (difference <= allowed && difference < nearestDifference) {
      nearest = choice;
      nearestDifference = difference;
    }
  }
  if (nearest.empty()) return "";
  const std::string before = matchedFirst.empty() ? "" : std::string(matchedFirst) + " ";
  return "did you mean " + before + std::string(nearest) + "?";
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
    const std::vector<std::string_view> choices = Choices(facilities, first);
    const std::string_view rest = cursor.Rest();
    throw ParseError(ChoicesText(choices, first), std::string(rest),
                     Suggestion(choices, first, rest));
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
