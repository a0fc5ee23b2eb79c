// "inputValidation" (xInputValidation): checks edit fields while the user types and when a
// field is left. Each method reads the element's text and the bounds the element itself
// carries (max 146, min 155, decimal places 67, the named "defaultvalue"), and when the
// text breaks its rule corrects it in place: the refused keystroke is dropped, characters
// that are not allowed are removed, or a default or the minimum is put back. Only the
// nick-name check also tells the user, with a message box. Keeps no state.
#pragma once

#include "core/dispatch.h"
#include "host/xclass.h"

class xInputValidation final : public xClass {
 public:
  // Every call is answered true, matched or not: input handlers never look at it, and a
  // method never says whether it corrected anything.
  bool call(const char* method, int argc, xarg_entry* args, xarg_entry* result) override;

 private:
  static const spindle::Method<xInputValidation> kMethods[];

  // Integer fields.
  bool VerifyInputRangeMax(spindle::CallArgs& args);
  bool VerifyInputRangeMin(spindle::CallArgs& args);
  // Shared by VerifyInputRangeMinSetMin and VerifyInputRangeMinOrBlank, which behave alike:
  // a non-empty text below the minimum becomes the minimum, an empty one stays.
  bool RaiseToMinimum(spindle::CallArgs& args);
  bool VerifyInputIntegerEditing(spindle::CallArgs& args);
  bool VerifyInputIntegerEditingFinish(spindle::CallArgs& args);
  // Decimal fields.
  bool VerifyInputRangeMaxFloat(spindle::CallArgs& args);
  bool VerifyInputRangeMinFloat(spindle::CallArgs& args);
  bool VerifyInputRangeMinFloatOrBlank(spindle::CallArgs& args);
  bool VerifyDecimalPtLimit(spindle::CallArgs& args);
  // Text fields.
  bool VerifyPvtPrntPassword(spindle::CallArgs& args);
  bool VerifyVaultBoxFolder(spindle::CallArgs& args);
  bool VerifyVaultBoxPassword(spindle::CallArgs& args);
  bool VerifyInvalidDeptCode(spindle::CallArgs& args);
  bool VerifyDeptCode(spindle::CallArgs& args);
  bool VerifyNickname(spindle::CallArgs& args);
  bool VerifyTextInput(spindle::CallArgs& args);
  bool VerifyPageNumbersEntered(spindle::CallArgs& args);
  // The nick name in the per-printer file "wlk.xml", when the device keeps it there.
  bool LoadNickname(spindle::CallArgs& args);
  bool SaveNickNameToFile(spindle::CallArgs& args);
};
