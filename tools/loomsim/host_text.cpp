#include "tools/loomsim/host_text.h"

#include <optional>

#include "tools/loomsim/text_values.h"

namespace loomsim {

std::u16string WideQuotedText(Cursor& cursor, std::string_view what) {
  const std::string_view written = cursor.Rest();
  const std::optional<std::u16string> wide = WideText(cursor.Text(what));
  if (!wide) throw ParseError(std::string(what) + " in UTF-8", std::string(written));
  return *wide;
}

}  // namespace loomsim
