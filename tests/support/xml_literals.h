// Large XML literals for tests of the host's limits: markup repeated, and elements nested.
#pragma once

#include <string>
#include <string_view>

namespace testing_support {

inline std::string Repeat(std::string_view text, int times) {
  std::string out;
  out.reserve(text.size() * static_cast<std::size_t>(times));
  for (int i = 0; i < times; ++i) out += text;
  return out;
}

// `levels` elements, each inside the one before.
inline std::string Nested(std::string_view open, std::string_view close, int levels) {
  return Repeat(open, levels) + Repeat(close, levels);
}

}  // namespace testing_support
