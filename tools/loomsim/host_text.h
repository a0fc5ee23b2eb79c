// Quoted texts that the host keeps as UTF-16: plug-in labels, string tables, user names.
//
// A scenario writes them as any other text value (text_values.h), with its escapes; the
// bytes must then be UTF-8, because the host cannot hold anything else in such a place.
#pragma once

#include <string>
#include <string_view>

#include "tools/loomsim/cursor.h"

namespace loomsim {

// The quoted text at the cursor as UTF-16 units; throws ParseError expecting `what` (in
// UTF-8 when the bytes are not) at the place where the text begins.
std::u16string WideQuotedText(Cursor& cursor, std::string_view what);

}  // namespace loomsim
