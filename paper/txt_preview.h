// "txtPreview" (xTxtPreview): turns a length that a preview or summary script holds as
// text into a label with its unit, at the unit's usual precision: "210.0 mm", "8.27"".
// Keeps no state.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "core/dispatch.h"
#include "host/xclass.h"

class xTxtPreview final : public xClass {
 public:
  // Every call is answered true, matched or not: preview scripts never look at it.
  bool call(const char* method, int argc, xarg_entry* args, xarg_entry* result) override;

 private:
  static const spindle::Method<xTxtPreview> kMethods[];

  // setLengthValueLabel(doc, label, value, unit): the label's value becomes the length
  // with its unit; an empty value leaves the label as it is.
  bool SetLengthValueLabel(spindle::CallArgs& args);
};

namespace spindle::preview {

// `value`'s leading decimal number (0 when it does not begin with one) formatted for
// `unit`: "mm" gives one decimal and " mm", "inch" two decimals and the inch mark ";
// any other unit (the comparison is exact) gives "".
std::string LengthLabel(const char* value, std::string_view unit);

}  // namespace spindle::preview
