#include "core/text.h"

#include <utf8.h>

#include <algorithm>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <iterator>
#include <string>

namespace spindle {

Loom::wstring Widen(std::string_view utf8) {
  Loom::wstring wide;
  utf8::utf8to16(utf8.begin(), utf8.end(), std::back_inserter(wide));
  return wide;
}

Loom::string Narrow(std::u16string_view utf16) {
  Loom::string narrow;
  utf8::utf16to8(utf16.begin(), utf16.end(), std::back_inserter(narrow));
  return narrow;
}

Loom::wstring DecimalText(std::int64_t value) {
  // Digits are ASCII, so widening them unit by unit is exact.
  char digits[24];
  const int length = std::snprintf(digits, sizeof digits, "%lld", static_cast<long long>(value));
  return Loom::wstring(digits, digits + length);
}

Loom::wstring FixedText(double value, int decimals) {
  // Room for the widest double printed in full with a few decimals; a longer text is cut.
  char digits[352];
  const int length = std::snprintf(digits, sizeof digits, "%.*f", decimals, value);
  return Loom::wstring(digits, digits + std::clamp(length, 0, int{sizeof digits} - 1));
}

namespace {

// The ASCII characters `text` starts with: a number never holds anything else, and the C
// conversions below need narrow, NUL-terminated text.
std::string AsciiPrefix(std::u16string_view text) {
  std::string ascii;
  for (const char16_t unit : text) {
    if (unit == 0 || unit > 0x7F) break;
    ascii.push_back(static_cast<char>(unit));
  }
  return ascii;
}

}  // namespace

int LeadingInteger(std::u16string_view text) {
  const std::string ascii = AsciiPrefix(text);
  const long long value = std::strtoll(ascii.c_str(), nullptr, 10);
  if (value < INT_MIN) return INT_MIN;
  if (value > INT_MAX) return INT_MAX;
  return static_cast<int>(value);
}

double LeadingNumber(std::u16string_view text) {
  return std::strtod(AsciiPrefix(text).c_str(), nullptr);
}

}  // namespace spindle
