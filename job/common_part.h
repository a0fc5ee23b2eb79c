// "xcompart" (xCommonPart): Keeps the basic tab's job type list consistent with the device's
// account and option settings, and loads the private print password from the per-printer file.
#pragma once

#include "host/xclass.h"

class xCommonPart final : public xClass {
 public:
  bool call(const char* method, int argc, xarg_entry* args, xarg_entry* result) override;
};
