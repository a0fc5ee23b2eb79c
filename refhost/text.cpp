#include "refhost/text.h"

#include <utf8.h>

#include <algorithm>
#include <iterator>

namespace refhost {

std::string Utf8(std::u16string_view text) {
  std::string out;
  utf8::utf16to8(text.begin(), text.end(), std::back_inserter(out));
  return out;
}

Loom::wstring Utf16(std::string_view text) {
  Loom::wstring out;
  utf8::utf8to16(text.begin(), text.end(), std::back_inserter(out));
  return out;
}

int LineAt(std::string_view text, std::ptrdiff_t offset) {
  const auto end = text.begin() +
                   std::clamp<std::ptrdiff_t>(offset, 0, static_cast<std::ptrdiff_t>(text.size()));
  return 1 + static_cast<int>(std::count(text.begin(), end, '\n'));
}

}  // namespace refhost
