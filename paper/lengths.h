// Lengths as the paper objects hold them: printer properties, page sizes and spooler forms
// in micrometres, the dialogs in inches or millimetres, the zoom computation in device
// dots at the printer's default resolution.
//
// Used only by paper/; the unit factors are defined here and nowhere else.
#pragma once

#include <cstdint>

namespace spindle::paper {

inline constexpr int kMicrometresPerInch = 25400;
inline constexpr int kMicrometresPerMillimetre = 1000;
inline constexpr double kMillimetresPerInch =
    static_cast<double>(kMicrometresPerInch) / kMicrometresPerMillimetre;

// `micrometres` at `dpi` dots per inch, truncated toward zero. Exact integer arithmetic:
// a length of a whole number of dots (8.5 in at 600 dpi) never loses a dot to rounding.
inline int MicrometresToDots(std::int64_t micrometres, int dpi) {
  return static_cast<int>(micrometres * dpi / kMicrometresPerInch);
}

// `dots` at `dpi` in tenths of a millimetre, truncated toward zero; `dpi` must not be 0.
inline int DotsToTenthsOfMillimetre(int dots, int dpi) {
  constexpr int kMicrometresPerTenth = kMicrometresPerMillimetre / 10;
  return static_cast<int>(std::int64_t{dots} * kMicrometresPerInch / dpi / kMicrometresPerTenth);
}

}  // namespace spindle::paper
