// The common end of expectations about one value: `== "text"`, `absent` or `present`.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "tools/loomsim/cursor.h"

namespace loomsim {

class Scenario;

struct ValueExpectation {
  enum class Op { kEquals, kAbsent, kPresent };
  Op op;
  std::string text{};  // for kEquals
};

// Reads `== "text"`, `absent` or `present`; throws ParseError.
ValueExpectation ParseValueExpectation(Cursor& cursor);
std::string ValueExpectationText(const ValueExpectation& expectation);

// Checks `actual` (nothing when the value is absent; `missing` then says how, e.g.
// "absent" or "no element #x in basic"). `== "text"` needs the value present and equal,
// byte for byte: an absent attribute does not read as "".
void CheckValue(Scenario& scenario, const ValueExpectation& expectation,
                const std::optional<std::string>& actual, std::string_view missing = "absent");

}  // namespace loomsim
