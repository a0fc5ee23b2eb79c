// Integers that a statement allows only within a range: drawer numbers, media codes, form
// sizes, argument values.
#pragma once

#include <cstdint>
#include <string>

#include "tools/loomsim/cursor.h"

namespace loomsim {

// The integer at the cursor, from `low` to `high`. Throws ParseError expecting `what`
// when no integer stands there, and `what` "from LOW to HIGH" when it lies outside, found
// where the integer begins.
std::int64_t IntegerInRange(Cursor& cursor, std::int64_t low, std::int64_t high,
                            const std::string& what);

}  // namespace loomsim
