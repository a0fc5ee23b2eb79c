#include "job/length_text.h"

#include <cmath>
#include <limits>

#include "core/text.h"

namespace spindle::job_internal {
namespace {

constexpr float kMillimetresPerInch = 25.4f;
constexpr float kThousandths = 1000.0f;
// The text buffer holds 31 characters and its terminator.
constexpr std::size_t kMaxTextLength = 31;

// The conversion of a float to int the way the processor truncates: toward zero, and a
// value out of range (or not a number) gives the "integer indefinite" INT_MIN.
int Truncated(float value) {
  constexpr float kLimit = 2147483648.0f;
  if (!(value > -kLimit && value < kLimit)) return std::numeric_limits<int>::min();
  return static_cast<int>(value);
}

}  // namespace

Loom::wstring ConvertedLengthText(std::u16string_view value, std::string_view toMillimetres,
                                  std::string_view mode) {
  float length = static_cast<float>(LeadingNumber(value));
  if (toMillimetres == "true") {
    length *= kMillimetresPerInch;
  } else if (toMillimetres == "false") {
    length /= kMillimetresPerInch;
  }
  if (mode == "load") length /= kThousandths;

  Loom::wstring text;
  if (mode == "true") {
    text = DecimalText(Truncated(length * kThousandths));
  } else if (mode == "false" || mode == "load") {
    const bool millimetres = toMillimetres == "true" || toMillimetres == " ";
    text = FixedText(length, millimetres ? 1 : 3);
  }
  if (text.size() > kMaxTextLength) text.resize(kMaxTextLength);
  return text;
}

}  // namespace spindle::job_internal
