#include "tools/loomsim/text_values.h"

#include <cstdint>
#include <cstdio>
#include <utility>

namespace loomsim {
namespace {

bool IsSurrogate(char32_t c) { return c >= 0xD800 && c <= 0xDFFF; }
bool IsHighSurrogate(char32_t c) { return c >= 0xD800 && c <= 0xDBFF; }
bool IsLowSurrogate(char32_t c) { return c >= 0xDC00 && c <= 0xDFFF; }

struct Decoded {
  char32_t codePoint;
  std::size_t length;
};

// One character at the start of `bytes`, surrogates included (utfcpp refuses those, and
// they are how a lone UTF-16 unit travels in a narrow value); nothing for a byte that
// does not start a well-formed sequence.
std::optional<Decoded> DecodeOne(std::string_view bytes) {
  const auto byte = [&](std::size_t i) { return static_cast<std::uint8_t>(bytes[i]); };
  const std::uint8_t lead = byte(0);
  if (lead < 0x80) return Decoded{lead, 1};
  std::size_t length = 0;
  char32_t value = 0;
  std::uint8_t low = 0x80, high = 0xBF;  // the range of the second byte
  if (lead >= 0xC2 && lead <= 0xDF) {
    length = 2;
    value = lead & 0x1F;
  } else if (lead >= 0xE0 && lead <= 0xEF) {
    length = 3;
    value = lead & 0x0F;
    if (lead == 0xE0) low = 0xA0;
  } else if (lead >= 0xF0 && lead <= 0xF4) {
    length = 4;
    value = lead & 0x07;
    if (lead == 0xF0) low = 0x90;
    if (lead == 0xF4) high = 0x8F;
  } else {
    return std::nullopt;
  }
  if (bytes.size() < length) return std::nullopt;
  for (std::size_t i = 1; i < length; ++i) {
    const std::uint8_t next = byte(i);
    const bool inRange = i == 1 ? next >= low && next <= high : next >= 0x80 && next <= 0xBF;
    if (!inRange) return std::nullopt;
    value = (value << 6) | (next & 0x3F);
  }
  return Decoded{value, length};
}

void AppendEscape(std::string& out, const char* format, unsigned value) {
  char escape[8];
  std::snprintf(escape, sizeof escape, format, value);
  out += escape;
}

void AppendQuoted(std::string& out, char32_t c) {
  switch (c) {
    case '"':
      out += "\\\"";
      return;
    case '\\':
      out += "\\\\";
      return;
    case '\n':
      out += "\\n";
      return;
    case '\r':
      out += "\\r";
      return;
    case '\t':
      out += "\\t";
      return;
    default:
      break;
  }
  if (c < 0x20 || c == 0x7F || IsSurrogate(c)) {
    AppendEscape(out, "\\u%04X", static_cast<unsigned>(c));
  } else {
    AppendUtf8(out, c);
  }
}

}  // namespace

void AppendUtf8(std::string& out, char32_t c) {
  if (c < 0x80) {
    out += static_cast<char>(c);
  } else if (c < 0x800) {
    out += static_cast<char>(0xC0 | (c >> 6));
    out += static_cast<char>(0x80 | (c & 0x3F));
  } else if (c < 0x10000) {
    out += static_cast<char>(0xE0 | (c >> 12));
    out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
    out += static_cast<char>(0x80 | (c & 0x3F));
  } else {
    out += static_cast<char>(0xF0 | (c >> 18));
    out += static_cast<char>(0x80 | ((c >> 12) & 0x3F));
    out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
    out += static_cast<char>(0x80 | (c & 0x3F));
  }
}

namespace {

// The first `limit` characters of `bytes` in the notation of Quote, without the quotes,
// and how many bytes they took. A byte that is no UTF-8 counts as a character.
std::pair<std::string, std::size_t> Escaped(std::string_view bytes, std::size_t limit) {
  std::string out;
  std::size_t taken = 0;
  for (std::size_t characters = 0; taken < bytes.size() && characters < limit; ++characters) {
    const std::string_view rest = bytes.substr(taken);
    if (const std::optional<Decoded> decoded = DecodeOne(rest)) {
      AppendQuoted(out, decoded->codePoint);
      taken += decoded->length;
    } else {
      AppendEscape(out, "\\x%02X", static_cast<std::uint8_t>(rest.front()));
      ++taken;
    }
  }
  return {std::move(out), taken};
}

}  // namespace

std::string Quote(std::string_view bytes) {
  return "\"" + Escaped(bytes, bytes.size()).first + "\"";
}

std::string Quote(std::u16string_view units) { return Quote(NarrowText(units)); }

std::string ReportValue(std::string_view bytes) {
  auto [escaped, taken] = Escaped(bytes, kReportedCharacters);
  if (taken == bytes.size()) return "\"" + escaped + "\"";
  return "\"" + escaped + "\u2026\" (" + std::to_string(bytes.size()) + " bytes)";
}

std::string ReportValue(std::u16string_view units) { return ReportValue(NarrowText(units)); }

std::optional<std::u16string> WideText(std::string_view bytes) {
  std::u16string out;
  while (!bytes.empty()) {
    const std::optional<Decoded> decoded = DecodeOne(bytes);
    if (!decoded) return std::nullopt;
    const char32_t c = decoded->codePoint;
    if (c < 0x10000) {
      out += static_cast<char16_t>(c);
    } else {
      out += static_cast<char16_t>(0xD800 + ((c - 0x10000) >> 10));
      out += static_cast<char16_t>(0xDC00 + ((c - 0x10000) & 0x3FF));
    }
    bytes.remove_prefix(decoded->length);
  }
  return out;
}

std::string NarrowText(std::u16string_view units) {
  std::string out;
  for (std::size_t i = 0; i < units.size(); ++i) {
    const char32_t unit = units[i];
    if (IsHighSurrogate(unit) && i + 1 < units.size() && IsLowSurrogate(units[i + 1])) {
      AppendUtf8(out, 0x10000 + ((unit - 0xD800) << 10) + (units[i + 1] - 0xDC00));
      ++i;
    } else {
      AppendUtf8(out, unit);
    }
  }
  return out;
}

}  // namespace loomsim
