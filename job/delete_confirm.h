// "deleteconfirm" (xDeleteConfirm): the delete confirmation dialog. It is opened from a
// sub-dialog, so the text that triggered it ("edt_ComDelConfirmTrigger") is read two
// levels up, in the parent's parent, and shown in "edt_DelTrigger".
#pragma once

#include "core/dispatch.h"
#include "host/xclass.h"

class xDeleteConfirm final : public xClass {
 public:
  // Every call is answered true, matched or not: the dialog never looks at it.
  bool call(const char* method, int argc, xarg_entry* args, xarg_entry* result) override;

 private:
  static const spindle::Method<xDeleteConfirm> kMethods[];

  // setTrigger(dialog): copies the grandparent's trigger text into the dialog; nothing
  // without a parent's parent.
  bool SetTrigger(spindle::CallArgs& args);
};
