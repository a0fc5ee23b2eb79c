// Host wide strings (UTF-16 in char16_t) at the Win32 API, whose wchar_t is also UTF-16
// code units: the same bytes, so they cross without copies.
#pragma once

#include <windows.h>

#include "host/loom_base.h"

namespace spindle::win32 {

static_assert(sizeof(wchar_t) == sizeof(Loom::wchar), "Windows' wchar_t is a UTF-16 unit");

inline const wchar_t* Wide(const Loom::wstring& text) {
  return reinterpret_cast<const wchar_t*>(text.c_str());
}
// Null for an empty text: the API's "not given".
inline const wchar_t* WideOrNull(const Loom::wstring& text) {
  return text.empty() ? nullptr : Wide(text);
}
// The text up to the first terminator of a buffer the API filled.
inline Loom::wstring FromWide(const wchar_t* text) {
  return Loom::wstring(reinterpret_cast<const Loom::wchar*>(text));
}

// The system's ANSI code page, for the API's narrow ("A") functions.
std::string Ansi(const Loom::wstring& text);
Loom::wstring FromAnsi(const char* text, std::size_t length);

}  // namespace spindle::win32
