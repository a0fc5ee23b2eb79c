#include "tools/loomsim/integer_range.h"

#include <string_view>

namespace loomsim {

std::int64_t IntegerInRange(Cursor& cursor, std::int64_t low, std::int64_t high,
                            const std::string& what) {
  const std::string_view written = cursor.Rest();
  const std::int64_t value = cursor.Integer(what);
  if (value < low || value > high) {
    throw ParseError(what + " from " + std::to_string(low) + " to " + std::to_string(high),
                     std::string(written));
  }
  return value;
}

}  // namespace loomsim
