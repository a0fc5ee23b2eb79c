#include "core/math.h"

#include <cmath>
#include <cstdlib>
#include <limits>
#include <optional>
#include <stdexcept>

#include "core/arg_record.h"
#include "core/elements.h"
#include "core/text.h"

using spindle::Count;

const spindle::Method<xMath> xMath::kMethods[] = {
    // Only the document is typed: the numbers may be of any number kind and are read by
    // the methods themselves.
    {{"round", Count::kExactly, 2, {Loom::kArgDocument, spindle::kAnyNumber}}, &xMath::Round},
    {{"clampMultiple",
      Count::kExactly,
      3,
      {Loom::kArgDocument, spindle::kAnyNumber, spindle::kAnyNumber}},
     &xMath::ClampMultiple},
};

bool xMath::call(const char* method, int argc, xarg_entry* args, xarg_entry*) {
  return spindle::Dispatch<xMath>(*this, kMethods, false, method, argc, args);
}

namespace spindle::math {

std::int32_t TruncateToInt32(double x) {
  constexpr double kLimit = 2147483648.0;
  if (!(x >= -kLimit && x < kLimit)) return std::numeric_limits<std::int32_t>::min();
  return static_cast<std::int32_t>(x);
}

std::int32_t RoundHalfUp(double x) {
  const double f = std::floor(x);
  return TruncateToInt32(f + 0.5 > x ? f : std::ceil(x));
}

std::int32_t ClampToMultiple(std::int32_t value, std::int32_t step) {
  if (step == 0 || (value == std::numeric_limits<std::int32_t>::min() && step == -1)) {
    // Unguarded on purpose, as on the processor: the host sees the failed call.
    throw std::domain_error("integer division fault");
  }
  const std::int32_t remainder = value % step;
  if (remainder == 0) return value;
  const double quotient = static_cast<double>(value) / static_cast<double>(step);
  // Wrapping 32-bit arithmetic, as the processor does. For a negative value the upward
  // branch adds step - remainder, more than one step; scripts rely on it as it is.
  const auto wrap = [](std::uint32_t u) { return static_cast<std::int32_t>(u); };
  const std::uint32_t v = static_cast<std::uint32_t>(value);
  const std::uint32_t r = static_cast<std::uint32_t>(remainder);
  if (std::floor(quotient) + 0.5 > quotient) return wrap(v - r);
  return wrap(v + (static_cast<std::uint32_t>(step) - r));
}

}  // namespace spindle::math

namespace {

// A number record of any number kind; nothing for other kinds, and for an address
// kind whose address is null (there is no number to read).
std::optional<double> ReadNumber(const xarg_entry& record) {
  using namespace spindle;
  switch (record.kind) {
    case Loom::kArgString:
      if (StringIn(record) == nullptr) return std::nullopt;
      return std::atof(StringIn(record));
    case Loom::kArgFloat:
      if (PointerIn<float>(record) == nullptr) return std::nullopt;
      return static_cast<double>(FloatAt(record));
    case Loom::kArgDouble:
      return InlineDouble(record);
    case Loom::kArgInteger:
      if (PointerIn<std::int32_t>(record) == nullptr) return std::nullopt;
      return static_cast<double>(IntegerAt(record));
    default:
      return std::nullopt;
  }
}

void WriteOutParam(const spindle::DocPtr& doc, std::int32_t value) {
  if (spindle::ElemPtr args = spindle::SearchElement(doc, u"args")) {
    args->setAttribute(u"out_param", spindle::DecimalText(value));
  }
}

}  // namespace

bool xMath::Round(spindle::CallArgs& args) {
  const std::optional<double> x = ReadNumber(args.record(1));
  if (!x) return false;
  WriteOutParam(args.doc(0), spindle::math::RoundHalfUp(*x));
  return true;
}

bool xMath::ClampMultiple(spindle::CallArgs& args) {
  const std::optional<double> value = ReadNumber(args.record(1));
  const std::optional<double> step = ReadNumber(args.record(2));
  if (!value || !step) return false;
  // Integers pass through double exactly, so one truncation serves every kind.
  WriteOutParam(args.doc(0), spindle::math::ClampToMultiple(spindle::math::TruncateToInt32(*value),
                                                            spindle::math::TruncateToInt32(*step)));
  return true;
}
