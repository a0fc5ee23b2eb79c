// UTF-8 <-> UTF-16 conversion for the reference host (utfcpp).
//
// Narrow host strings hold UTF-8, wide ones UTF-16 (host/loom_base.h). Invalid input
// throws utfcpp's exceptions (utf8::invalid_utf8, utf8::invalid_utf16, ...), as the
// library's own conversions do.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "host/loom_base.h"

namespace refhost {

// UTF-16 text as UTF-8.
std::string Utf8(std::u16string_view text);
// UTF-8 text as a host wide string / as the host's own UTF-16 text. Converted straight
// into the result, which is allocated once: a long value is never held twice.
Loom::wstring Utf16(std::string_view text);
std::u16string Utf16String(std::string_view text);

// The 1-based line of `text` on which the byte at `offset` stands (offsets outside the
// text are held to its ends): where a parser's error offset points.
int LineAt(std::string_view text, std::ptrdiff_t offset);

}  // namespace refhost
