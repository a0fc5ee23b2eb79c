// Text values as scenario files write them, and back.
//
// A text value is a run of bytes. It is normally UTF-8, but a scenario may write any byte
// with `\xHH` (to hand the library invalid UTF-8) and any UTF-16 unit with `\uXXXX`. A lone
// surrogate written that way is kept in its three-byte form (as WTF-8 keeps it): no UTF-8
// reader accepts it, and where the value goes into a wide string it becomes that lone unit
// again, so the library meets invalid UTF-16 there. The report writes every value back in
// the same notation, so what it prints can be pasted into a scenario.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace loomsim {

// Appends `codePoint` as UTF-8; a surrogate gets its three-byte form.
void AppendUtf8(std::string& out, char32_t codePoint);

// `bytes` in double quotes, as a scenario writes it: printable text as it is, `"` and `\`
// escaped, line breaks and tabs as \n, \r, \t, other control characters and lone
// surrogates as \uXXXX, bytes that are not UTF-8 as \xHH.
std::string Quote(std::string_view bytes);
std::string Quote(std::u16string_view units);

// Values longer than this are cut in the change report: a 50 MB attribute would bury
// every other line.
inline constexpr std::size_t kReportedCharacters = 200;

// A value for the change report: Quote(`bytes`), but a value of more than
// kReportedCharacters characters is cut there and followed by its length:
// "aaaa…" (52428800 bytes).
std::string ReportValue(std::string_view bytes);
std::string ReportValue(std::u16string_view units);

// The UTF-16 units of `bytes` (UTF-8, lone surrogates in their three-byte form allowed);
// nothing when some bytes are not UTF-8.
std::optional<std::u16string> WideText(std::string_view bytes);
// UTF-16 units as bytes: UTF-8, with lone surrogates in their three-byte form.
std::string NarrowText(std::u16string_view units);

}  // namespace loomsim
