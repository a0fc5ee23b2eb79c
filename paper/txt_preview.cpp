#include "paper/txt_preview.h"

#include <array>
#include <charconv>
#include <string_view>

#include "core/elements.h"
#include "core/text.h"

using spindle::Count;

const spindle::Method<xTxtPreview> xTxtPreview::kMethods[] = {
    {{"setLengthValueLabel",
      Count::kExactly,
      4,
      {Loom::kArgDocument, Loom::kArgElement, Loom::kArgString, Loom::kArgString}},
     &xTxtPreview::SetLengthValueLabel},
};

bool xTxtPreview::call(const char* method, int argc, xarg_entry* args, xarg_entry*) {
  spindle::Dispatch<xTxtPreview>(*this, kMethods, true, method, argc, args);
  return true;
}

namespace spindle::preview {

namespace {

struct LengthUnit {
  std::string_view name;
  int decimals;
  std::string_view suffix;
};

constexpr LengthUnit kLengthUnits[] = {
    {"mm", 1, " mm"},
    {"inch", 2, "\""},
};

// The leading decimal number of `text`: an optional sign, digits with at most one point,
// and an optional exponent. Anything else ("NaN", "inf", the "x" of "0x1A", a leading
// blank) ends the number, and text without a digit where it starts gives 0. A number
// too large for a double gives 0 as well: no length label can show it.
double LeadingDecimal(std::string_view text) {
  std::size_t end = 0;
  const auto digits = [&text, &end] {
    const std::size_t from = end;
    while (end < text.size() && text[end] >= '0' && text[end] <= '9') ++end;
    return end - from;
  };
  const bool negative = !text.empty() && text[0] == '-';
  if (!text.empty() && (text[0] == '-' || text[0] == '+')) ++end;
  const std::size_t start = end;
  std::size_t count = digits();
  if (end < text.size() && text[end] == '.') {
    ++end;
    count += digits();
  }
  if (count == 0) return 0.0;
  if (end < text.size() && (text[end] == 'e' || text[end] == 'E')) {
    const std::size_t mantissaEnd = end;
    ++end;
    if (end < text.size() && (text[end] == '-' || text[end] == '+')) ++end;
    if (digits() == 0) end = mantissaEnd;
  }
  double value = 0.0;
  const auto result =
      std::from_chars(text.data() + start, text.data() + end, value, std::chars_format::general);
  if (result.ec != std::errc()) return 0.0;
  return negative ? -value : value;
}

}  // namespace

std::string LengthLabel(const char* value, std::string_view unit) {
  for (const LengthUnit& row : kLengthUnits) {
    if (unit != row.name) continue;
    // The standard library's correctly rounded fixed-point conversion; large enough for
    // every finite double at two decimals.
    std::array<char, 400> digits;
    const auto [end, error] =
        std::to_chars(digits.data(), digits.data() + digits.size(), LeadingDecimal(value),
                      std::chars_format::fixed, row.decimals);
    if (error != std::errc()) return std::string();
    return std::string(digits.data(), end) + std::string(row.suffix);
  }
  return std::string();
}

}  // namespace spindle::preview

bool xTxtPreview::SetLengthValueLabel(spindle::CallArgs& args) {
  const spindle::ElemPtr& label = args.elem(1);
  const char* value = args.str(2);
  if (!args.doc(0) || !label || *value == '\0') return true;
  spindle::SetValue(label, spindle::Widen(spindle::preview::LengthLabel(value, args.str(3))));
  return true;
}
