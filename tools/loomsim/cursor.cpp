#include "tools/loomsim/cursor.h"

#include <charconv>
#include <optional>

#include "tools/loomsim/text_values.h"

namespace loomsim {
namespace {

constexpr std::string_view kEscapes = "an escape: \\\" \\\\ \\n \\r \\t \\uXXXX or \\xHH";

bool IsBlank(char c) { return c == ' ' || c == '\t' || c == '\r'; }

std::optional<unsigned> HexDigits(std::string_view digits) {
  unsigned value = 0;
  const auto [end, error] =
      std::from_chars(digits.data(), digits.data() + digits.size(), value, 16);
  if (error != std::errc() || end != digits.data() + digits.size()) return std::nullopt;
  return value;
}

}  // namespace

ParseError::ParseError(std::string expected, std::string found, std::string hint)
    : std::runtime_error("expected " + expected),
      expected_(std::move(expected)),
      found_(std::move(found)),
      hint_(std::move(hint)) {}

bool IsNameChar(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_' ||
         c == '-';
}

void Cursor::SkipBlanks() {
  while (pos_ < text_.size() && IsBlank(text_[pos_])) ++pos_;
}

std::string_view Cursor::Rest() {
  SkipBlanks();
  return text_.substr(pos_);
}

void Cursor::Fail(std::string_view what) {
  throw ParseError(std::string(what), std::string(Rest()));
}

bool Cursor::AtEnd() { return Rest().empty(); }

bool Cursor::Accept(std::string_view token) {
  const std::string_view rest = Rest();
  if (!rest.starts_with(token)) return false;
  const bool keyword = !token.empty() && IsNameChar(token.back());
  if (keyword && rest.size() > token.size() && IsNameChar(rest[token.size()])) return false;
  pos_ += token.size();
  return true;
}

void Cursor::Expect(std::string_view token, std::string_view what) {
  if (!Accept(token)) Fail(what);
}

void Cursor::ExpectEnd(std::string_view what) {
  if (!AtEnd()) Fail(what);
}

bool Cursor::AtName(std::string_view extra) {
  const std::string_view rest = Rest();
  return !rest.empty() && (IsNameChar(rest[0]) || extra.find(rest[0]) != std::string_view::npos);
}

std::string Cursor::Name(std::string_view what, std::string_view extra) {
  if (!AtName(extra)) Fail(what);
  const std::size_t start = pos_;
  while (pos_ < text_.size() &&
         (IsNameChar(text_[pos_]) || extra.find(text_[pos_]) != std::string_view::npos)) {
    ++pos_;
  }
  return std::string(text_.substr(start, pos_ - start));
}

bool Cursor::AtText() { return Rest().starts_with('"'); }

char32_t Cursor::Escape(std::string_view what) {
  // pos_ stands after "\u".
  const std::optional<unsigned> unit = HexDigits(text_.substr(pos_, 4));
  if (text_.size() - pos_ < 4 || !unit) Fail(what);
  pos_ += 4;
  return *unit;
}

std::string Cursor::Text(std::string_view what) {
  if (!AtText()) Fail(what);
  const std::size_t opening = pos_++;
  std::string value;
  while (true) {
    if (pos_ >= text_.size()) {
      pos_ = opening;
      Fail("a closing '\"' of the text");
    }
    const char c = text_[pos_++];
    if (c == '"') return value;
    if (c != '\\') {
      value += c;
      continue;
    }
    if (pos_ >= text_.size()) Fail(kEscapes);
    const char kind = text_[pos_++];
    switch (kind) {
      case '"':
      case '\\':
        value += kind;
        break;
      case 'n':
        value += '\n';
        break;
      case 'r':
        value += '\r';
        break;
      case 't':
        value += '\t';
        break;
      case 'x': {
        const std::optional<unsigned> byte = HexDigits(text_.substr(pos_, 2));
        if (text_.size() - pos_ < 2 || !byte) Fail("two hexadecimal digits after \\x");
        value += static_cast<char>(*byte);
        pos_ += 2;
        break;
      }
      case 'u': {
        char32_t unit = Escape("four hexadecimal digits after \\u");
        if (unit >= 0xD800 && unit <= 0xDBFF && text_.substr(pos_).starts_with("\\u")) {
          const std::size_t mark = pos_;
          pos_ += 2;
          const char32_t low = Escape("four hexadecimal digits after \\u");
          if (low >= 0xDC00 && low <= 0xDFFF) {
            unit = 0x10000 + ((unit - 0xD800) << 10) + (low - 0xDC00);
          } else {
            pos_ = mark;  // not a pair: the next escape stands on its own
          }
        }
        AppendUtf8(value, unit);
        break;
      }
      default:
        pos_ -= 2;
        Fail(kEscapes);
    }
  }
}

std::int64_t Cursor::Integer(std::string_view what) {
  const std::string_view rest = Rest();
  if (rest.starts_with("+-")) Fail(what);
  std::int64_t value = 0;
  const char* begin = rest.data() + (rest.starts_with('+') ? 1 : 0);
  const auto [end, error] = std::from_chars(begin, rest.data() + rest.size(), value);
  if (error != std::errc() || (end < rest.data() + rest.size() && IsNameChar(*end))) Fail(what);
  pos_ += end - rest.data();
  return value;
}

double Cursor::Number(std::string_view what) {
  const std::string_view rest = Rest();
  if (rest.starts_with("+-")) Fail(what);
  double value = 0;
  const char* begin = rest.data() + (rest.starts_with('+') ? 1 : 0);
  const auto [end, error] =
      std::from_chars(begin, rest.data() + rest.size(), value, std::chars_format::general);
  if (error != std::errc() || (end < rest.data() + rest.size() && IsNameChar(*end))) Fail(what);
  pos_ += end - rest.data();
  return value;
}

}  // namespace loomsim
