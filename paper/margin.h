// "margin" (xMargin): the custom margin dialog. Shows the four stored margins in the
// user's unit, clamped to the limits of the product type; stores what the user typed as
// micrometres; converts the typed values when the unit changes; and keeps the unit's texts
// current, among them the range labels of the custom paper size.
//
// Called by the custom margin dialog's scripts (and the custom paper size page's, for the
// range labels). Every call is answered true. A method whose elements are missing does
// nothing, except where a method below says it works on the elements it finds.
//
// The object remembers, for each of the four margin fields, which unit it last wrote into
// it, so that toggle converts only fields still in the other unit. A unit change is
// therefore made either with validateValues and then toggle (toggle only relabels) or with
// toggle alone; validateValues after toggle would convert twice.
#pragma once

#include <cstdint>

#include "core/dispatch.h"
#include "host/xclass.h"

class xMargin final : public xClass {
 public:
  bool call(const char* method, int argc, xarg_entry* args, xarg_entry* result) override;

 private:
  static const spindle::Method<xMargin> kMethods[];

  // toggle(document, unit): unit 0 is inches, any other millimetres (the positions of the
  // unit radio group's items). Sets "txt_CusPapSizLabAVal" and "txt_CusPapSizLabBVal" to
  // the unit's range texts and converts, like validateValues, each margin field this
  // object last wrote in the other unit; each element is updated when present.
  bool Toggle(spindle::CallArgs& args);
  // setCustomMargin(document): stores the four typed margins as micrometres ("%.02f") and
  // the unit as "inch" or "mm" in "txt_FshCustomMarginUnit".
  bool SetCustomMargin(spindle::CallArgs& args);
  // updateDlg(document): shows the stored margins in the stored unit, clamped to the
  // product type's limits, and selects that unit in "rdg_MarginUnit".
  bool UpdateDlg(spindle::CallArgs& args);
  // validateValues(document, toInches): converts each margin field present to inches
  // ("true", rounding up at two places) or millimetres (any other text, rounding down at
  // one place), bounded by the product type's limits for that unit.
  bool ValidateValues(spindle::CallArgs& args);

  // Converts the margin field `field` (a position in the field table) to the unit and
  // records the unit it now shows.
  void ConvertField(const spindle::ElemPtr& edit, int field, bool toInches, bool fullRangeProduct);

  // One flag per margin field (left, right, top, bottom: set when it shows inches), and
  // one set once this object has written the fields, making the other four meaningful.
  static constexpr int kFieldsKnown = 4;
  static constexpr int kFlagCount = 5;
  std::uint8_t flags_[kFlagCount] = {};
};
