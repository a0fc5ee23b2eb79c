// "overwrite" (xOverWrite): the overwrite confirmation dialog. Shows the text that made
// its parent page ask (the parent's "edt_ComOverWriteTrigger") in "edt_OvwTrigger".
#pragma once

#include "core/dispatch.h"
#include "host/xclass.h"

class xOverWrite final : public xClass {
 public:
  // Every call is answered true, matched or not: the dialog never looks at it.
  bool call(const char* method, int argc, xarg_entry* args, xarg_entry* result) override;

 private:
  static const spindle::Method<xOverWrite> kMethods[];

  // setTrigger(dialog): copies the parent's trigger text into the dialog.
  bool SetTrigger(spindle::CallArgs& args);
};
