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

}  // namespace spindle
