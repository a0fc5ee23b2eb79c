// "xulguisettings" (xGuiSettings): The UI's toolbox for document state: restoring defaults, copying
// and converting values between documents, and the administrator and control-panel modes.
#pragma once

#include "host/xclass.h"

class xGuiSettings final : public xClass {
 public:
  bool call(const char* method, int argc, xarg_entry* args, xarg_entry* result) override;
};
