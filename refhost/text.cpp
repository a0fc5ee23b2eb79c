#include "refhost/text.h"

#include <utf8.h>

#include <algorithm>
#include <iterator>

namespace refhost {

std::string Utf8(std::u16string_view text) {
  std::string out;
  out.reserve(text.size());  // no regrowth for ASCII, which long values mostly are
  utf8::utf16to8(text.begin(), text.end(), std::back_inserter(out));
  return out;
}

namespace {

template <class Wide>
Wide ToUtf16(std::string_view text) {
  Wide out;
  out.reserve(text.size());  // an upper bound: no UTF-8 sequence gives more units than bytes
  utf8::utf8to16(text.begin(), text.end(), std::back_inserter(out));
  return out;
}

}  // namespace

Loom::wstring Utf16(std::string_view text) { return ToUtf16<Loom::wstring>(text); }
std::u16string Utf16String(std::string_view text) { return ToUtf16<std::u16string>(text); }

int LineAt(std::string_view text, std::ptrdiff_t offset) {
  const auto end = text.begin() +
                   std::clamp<std::ptrdiff_t>(offset, 0, static_cast<std::ptrdiff_t>(text.size()));
  return 1 + static_cast<int>(std::count(text.begin(), end, '\n'));
}

}  // namespace refhost
