// "inputValidation" (xInputValidation): Checks edit fields while the user types and when a field is
// left, correcting the text in place against the bounds the field itself carries.
#pragma once

#include "host/xclass.h"

class xInputValidation final : public xClass {
 public:
  bool call(const char* method, int argc, xarg_entry* args, xarg_entry* result) override;
};
