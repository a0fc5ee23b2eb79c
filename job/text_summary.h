// "textsummary" (xTextSummary): puts texts into the settings summary page's output field
// "setting_out": the chosen item of a menu list, or a text cleaned of the "$short_key;"
// marker. Keeps no state.
#pragma once

#include <string_view>

#include "core/dispatch.h"
#include "host/loom_base.h"
#include "host/xclass.h"

class xTextSummary final : public xClass {
 public:
  // Unmatched names, counts and kinds answer false; otherwise the method's answer.
  bool call(const char* method, int argc, xarg_entry* args, xarg_entry* result) override;

 private:
  static const spindle::Method<xTextSummary> kMethods[];

  // selectedItem(doc, list, attribute): the named attribute of the list's selected item
  // ("" without one) becomes the output. False, writing nothing, unless the element is a
  // menu list.
  bool SelectedItem(spindle::CallArgs& args);
  // stripSpecialText(doc, text): the text without any "$short_key;" becomes the output.
  bool StripSpecialText(spindle::CallArgs& args);
};

namespace spindle::summary {

// `text` with every occurrence of "$short_key;" removed, in one left-to-right pass.
Loom::wstring WithoutShortKeyMarkers(std::u16string_view text);

}  // namespace spindle::summary
