// Conversion between the host's narrow (UTF-8) and wide (UTF-16) strings, and the
// texts the library writes for numbers and booleans.
//
// Invalid input throws utfcpp's exceptions ("Invalid UTF-8", "Invalid UTF-16",
// "Invalid code point"); nothing in the library catches them, so they reach the host.
#pragma once

#include <cstdint>
#include <string_view>

#include "host/loom_base.h"

namespace spindle {

Loom::wstring Widen(std::string_view utf8);
Loom::string Narrow(std::u16string_view utf16);

// "true" / "false": the only boolean texts scripts read.
inline constexpr std::u16string_view kTrue = u"true";
inline constexpr std::u16string_view kFalse = u"false";
inline std::u16string_view BoolText(bool value) { return value ? kTrue : kFalse; }
// Every test against "true" is exact and case-sensitive; anything else is false.
inline bool IsTrue(std::u16string_view text) { return text == kTrue; }
inline bool IsTrue(std::string_view text) { return text == "true"; }

// Decimal, with a minus sign when negative, no leading zeros, no grouping.
Loom::wstring DecimalText(std::int64_t value);

// `value` with `decimals` digits after the point, as printf's "%.*f" writes it ("%.02f"
// of 0.165 is "0.17"; "%.01f" of 100 is "100.0").
Loom::wstring FixedText(double value, int decimals);

// The decimal integer that `text` starts with, as atoi reads it: optional blanks, an
// optional sign, digits ("4200.00" is 4200). 0 when there are no digits; a value outside
// the range of int is held at the nearest end.
int LeadingInteger(std::u16string_view text);

// The decimal number that `text` starts with, as atof reads it ("4.2mm" is 4.2); 0 when
// it starts with none.
double LeadingNumber(std::u16string_view text);

}  // namespace spindle
