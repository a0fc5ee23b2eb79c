// "xcBypass" (xConfirmBypass): The bypass tray confirmation dialog: its remembered "do not show again" state.
#pragma once

#include "host/xclass.h"

class xConfirmBypass final : public xClass {
 public:
  bool call(const char* method, int argc, xarg_entry* args, xarg_entry* result) override;
};
