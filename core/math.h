// "Math" (xMath): integer rounding for scripts. The only object that accepts numbers of
// every script number kind; it returns its result as "out_param" on the document's
// "args" element.
#pragma once

#include <cstdint>

#include "core/dispatch.h"
#include "host/xclass.h"

class xMath final : public xClass {
 public:
  bool call(const char* method, int argc, xarg_entry* args, xarg_entry* result) override;

 private:
  static const spindle::Method<xMath> kMethods[];

  // round(document, number): the number rounded with halves going up.
  bool Round(spindle::CallArgs& args);
  // clampMultiple(document, value, step): the value moved to a multiple of step.
  bool ClampMultiple(spindle::CallArgs& args);
};

namespace spindle::math {

// floor(x) unless x is at least halfway to the next integer: 2.5 gives 3, -2.5 gives -2.
std::int32_t RoundHalfUp(double x);
// The rounding of clampMultiple, including its arithmetic for negative values. Throws
// std::domain_error where the processor's integer division faults (step 0, or
// -2147483648 by -1).
std::int32_t ClampToMultiple(std::int32_t value, std::int32_t step);
// The processor's truncating conversion: out of range (or NaN) gives -2147483648.
std::int32_t TruncateToInt32(double x);

}  // namespace spindle::math
