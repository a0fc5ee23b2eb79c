// Reading the parts of one scenario statement, left to right: names, quoted texts,
// numbers and punctuation.
//
// Every reader either consumes what it was asked for or throws ParseError, which says what
// was expected and what stood there instead; nothing is skipped silently. Blanks between
// parts are skipped.
#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>

namespace loomsim {

class ParseError : public std::runtime_error {
 public:
  // `expected` names what should have stood at the place where `found` begins; `hint`
  // may add what was probably meant ("did you mean expect result?").
  ParseError(std::string expected, std::string found, std::string hint = {});
  const std::string& expected() const { return expected_; }
  const std::string& found() const { return found_; }
  const std::string& hint() const { return hint_; }

 private:
  std::string expected_;
  std::string found_;
  std::string hint_;
};

class Cursor {
 public:
  explicit Cursor(std::string_view text) : text_(text) {}

  // Whether only blanks are left.
  bool AtEnd();
  // Consumes `token` when it stands next. A token that ends in a letter or digit (a
  // keyword) must not be followed by one.
  bool Accept(std::string_view token);
  // Consumes `token`, or throws ParseError expecting `what`.
  void Expect(std::string_view token, std::string_view what);
  // Throws ParseError expecting `what` unless only blanks are left.
  void ExpectEnd(std::string_view what);

  // A name: letters, digits, '_' and '-', plus the characters in `extra`. Throws
  // ParseError expecting `what` when none stands next.
  std::string Name(std::string_view what, std::string_view extra = {});
  // Whether the next character starts a name (with the characters in `extra`).
  bool AtName(std::string_view extra = {});
  // A double-quoted text with its escapes (\" \\ \n \r \t \uXXXX \xHH) resolved; a pair of
  // \u escapes that form a surrogate pair gives one character.
  std::string Text(std::string_view what);
  bool AtText();
  // A decimal integer with an optional sign, within the range of int64.
  std::int64_t Integer(std::string_view what);
  // A decimal number with an optional sign and exponent; "inf" and "nan" too.
  double Number(std::string_view what);

  // Whether `c` stands right at the cursor, with no blank before it.
  bool Touches(char c) const { return pos_ < text_.size() && text_[pos_] == c; }
  // What is left, blanks skipped.
  std::string_view Rest();
  // Consumes the first `count` characters of Rest().
  void Advance(std::size_t count) {
    Rest();
    pos_ += count;
  }
  // Throws ParseError expecting `what`, found at the current place.
  [[noreturn]] void Fail(std::string_view what);

 private:
  void SkipBlanks();
  char32_t Escape(std::string_view what);

  std::string_view text_;
  std::size_t pos_ = 0;
};

// Whether `c` may stand in a name (letters, digits, '_', '-').
bool IsNameChar(char c);

}  // namespace loomsim
