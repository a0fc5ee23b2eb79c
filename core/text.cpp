#include "core/text.h"

#include <cstdio>
#include <iterator>
#include <utf8.h>

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

}  // namespace spindle
