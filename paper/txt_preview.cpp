#include "paper/txt_preview.h"

#include <array>
#include <charconv>
#include <cstdlib>

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

}  // namespace

std::string LengthLabel(const char* value, std::string_view unit) {
  for (const LengthUnit& row : kLengthUnits) {
    if (unit != row.name) continue;
    // The standard library's correctly rounded fixed-point conversion; large enough for
    // every finite double at two decimals.
    std::array<char, 400> digits;
    const auto [end, error] =
        std::to_chars(digits.data(), digits.data() + digits.size(), std::strtod(value, nullptr),
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
