// "txtPreview" (xTxtPreview): Turns a length held as text into a label with its unit, at the unit's usual precision.
#pragma once

#include "host/xclass.h"

class xTxtPreview final : public xClass {
 public:
  bool call(const char* method, int argc, xarg_entry* args, xarg_entry* result) override;
};
