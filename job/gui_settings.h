// "xulguisettings" (xGuiSettings): The UI's toolbox for document state: restoring defaults, copying
// and converting values between documents, and the administrator and control-panel modes.
// Keeps no state.
#pragma once

#include "core/dispatch.h"
#include "host/xclass.h"

class xGuiSettings final : public xClass {
 public:
  // Every tab calls this toolbox without looking at the answer: every call is answered true.
  bool call(const char* method, int argc, xarg_entry* args, xarg_entry* result) override;

 private:
  static const spindle::Method<xGuiSettings> kMethods[];

  // Runs the page's restoreDefaults script for the tab (or "ALL"), then applies the user's
  // stored defaults file over it.
  bool RestoreDefault(spindle::CallArgs& args);
  // Forgets the window's stored state of a sub-document.
  bool RestoreSubDefault(spindle::CallArgs& args);
  // "true" / "false" into the result element: whether the element exists.
  bool ElementExists(spindle::CallArgs& args);
  // Sets one item's, or a comma-separated list of items', hidden flag.
  bool HideMenuItem(spindle::CallArgs& args);
  bool HideMenuItems(spindle::CallArgs& args);
  // A value from one document's element into another's.
  bool CopyValueBetweenElements(spindle::CallArgs& args);
  // "true" when the source's value is "" or " ".
  bool IsValueEmpty(spindle::CallArgs& args);
  // The job type list's value into "edt_ComCurSelPrintJob".
  bool SetPrintJob(spindle::CallArgs& args);
  // A length converted between inches and millimetres into another element.
  bool ConvertInchMMAndSaveValue(spindle::CallArgs& args);
  // Enable an element in administrator / control-panel mode, disable it otherwise.
  bool EnableForAdmin(spindle::CallArgs& args);
  bool EnableForControlPanel(spindle::CallArgs& args);
  // Disable the element in control-panel mode; otherwise leave it.
  bool DisableForControlPanel(spindle::CallArgs& args);
  // Cuts the insert-page edit boxes to their allowed decimals.
  bool VerifyDecimalPlaces(spindle::CallArgs& args);
  // Selects the region's default output paper size.
  bool RestoreOSDefault(spindle::CallArgs& args);
};
