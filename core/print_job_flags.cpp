// Which print job types the device's account settings allow.
#include <array>

#include "core/spindleui.h"

namespace {

// What a combination does to one output: keep the caller's value, set it, or set it to
// the opposite of the universal-driver flag.
enum class Out { kKept, kTrue, kFalse, kNotUniversal };

enum class When { kFalse, kTrue, kAny };

struct FlagRow {
  bool userAuthentication;
  bool privateRestriction;
  When holdRestriction;
  // paper, private, hold, proof, schedule, box
  std::array<Out, 6> outputs;
};

constexpr Out K = Out::kKept, T = Out::kTrue, F = Out::kFalse, N = Out::kNotUniversal;

// One row per combination of the three account flags; the first that matches applies.
// With authentication on and a private restriction, only private and hold are decided:
// the rest is left as the caller set it, and the callers rely on their starting values.
constexpr FlagRow kFlagRows[] = {
    {false, false, When::kFalse, {T, T, T, T, T, T}},
    {false, true, When::kFalse, {F, T, F, F, F, N}},
    {false, true, When::kTrue, {F, T, T, F, F, N}},
    {false, false, When::kTrue, {F, F, T, F, F, N}},
    {true, true, When::kAny, {K, F, T, K, K, K}},
    {true, false, When::kFalse, {T, F, T, T, T, T}},
    {true, false, When::kTrue, {F, F, T, F, F, N}},
};

bool RowMatches(const FlagRow& row, bool userAuthentication, bool privateRestriction,
                bool holdRestriction) {
  return row.userAuthentication == userAuthentication &&
         row.privateRestriction == privateRestriction &&
         (row.holdRestriction == When::kAny ||
          (row.holdRestriction == When::kTrue) == holdRestriction);
}

void Apply(Out out, bool universal, bool& flag) {
  switch (out) {
    case Out::kKept:
      return;
    case Out::kTrue:
      flag = true;
      return;
    case Out::kFalse:
      flag = false;
      return;
    case Out::kNotUniversal:
      flag = !universal;
      return;
  }
}

}  // namespace

void getPrintJobFlagByAccoutSettings(bool universal, bool userAuthentication,
                                     bool privateRestriction, bool holdRestriction, bool& paper,
                                     bool& privatePrint, bool& hold, bool& proof, bool& schedule,
                                     bool& box) {
  bool* const flags[] = {&paper, &privatePrint, &hold, &proof, &schedule, &box};
  for (const FlagRow& row : kFlagRows) {
    if (!RowMatches(row, userAuthentication, privateRestriction, holdRestriction)) continue;
    for (std::size_t i = 0; i < row.outputs.size(); ++i)
      Apply(row.outputs[i], universal, *flags[i]);
    return;
  }
}
