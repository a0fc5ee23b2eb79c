// "xcBypass" (xConfirmBypass): the bypass tray confirmation dialog. Its "do not show this
// again" check box ("bypass_noagain") is remembered from one opening of the sheet to the
// next as the document "BypassDlg" of the window's setting serialiser, and handed to the
// parent page ("Isavailable_bypassDlg"), whose scripts decide whether to ask again.
#pragma once

#include "core/dispatch.h"
#include "host/xclass.h"

class xConfirmBypass final : public xClass {
 public:
  // Every call is answered true, matched or not: the dialog never looks at it.
  bool call(const char* method, int argc, xarg_entry* args, xarg_entry* result) override;

 private:
  static const spindle::Method<xConfirmBypass> kMethods[];

  // Gives the dialog its parent's properties (user data), then loads the remembered
  // state into it. Nothing without a parent.
  bool UpdateBypassDlg(spindle::CallArgs& args);
  // Remembers the dialog's state as "BypassDlg".
  bool SaveBypassDlg(spindle::CallArgs& args);
  // Writes the check box state, "true" or "false", as the parent's
  // "Isavailable_bypassDlg" value.
  bool CheckBypassStatus(spindle::CallArgs& args);
};
