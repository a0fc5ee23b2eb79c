// "xcompart" (xCommonPart): keeps the basic tab's job type list "ePTKWJobPrintType"
// consistent with the device's account and option settings (which job types the user may
// pick, where a forbidden selection moves, the document box flags the page's scripts
// read), and fills the private print password field from the per-printer file. Keeps no
// state.
#pragma once

#include "core/dispatch.h"
#include "host/xclass.h"

class xCommonPart final : public xClass {
 public:
  // A matched call answers true whatever the method did; an unmatched one false.
  bool call(const char* method, int argc, xarg_entry* args, xarg_entry* result) override;

 private:
  static const spindle::Method<xCommonPart> kMethods[];

  // Hides the job types the account settings forbid (never un-hides one), sets the
  // document box flag elements, moves a forbidden selection to private or hold print and
  // then runs the page's job rules.
  bool UpdatePrintJobList(spindle::CallArgs& args);
  // "txt_BasicTabVaultboxEnabled" = whether the device has a document box.
  bool CheckVaultboxEnabled(spindle::CallArgs& args);
  // The element's value = the stored private print password ("" without a file), when the
  // device keeps that password in the per-printer file.
  bool LoadPrivatePrintFromFile(spindle::CallArgs& args);
};
