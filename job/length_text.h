// Lengths between the unit fields of the pages and the stored settings: inches and
// millimetres, shown with the decimals of their unit or stored as whole thousandths.
#pragma once

#include <string_view>

#include "host/loom_base.h"

namespace spindle::job_internal {

// `value` read as a single-precision number, converted by `toMillimetres` ("true": inches
// to millimetres, "false": millimetres to inches, " ": a millimetre value as it is,
// anything else unchanged), divided by 1000 first for `mode` "load" (stored thousandths),
// and written for `mode`: "true" as whole thousandths ("%d" of the value times 1000),
// "false" or "load" with one decimal for millimetres and three for inches; any other mode
// gives "". The arithmetic stays in single precision, as the stored values were made.
Loom::wstring ConvertedLengthText(std::u16string_view value, std::string_view toMillimetres,
                                  std::string_view mode);

}  // namespace spindle::job_internal
