// "overwrite" (xOverWrite): The overwrite confirmation dialog: shows the text that triggered it.
#pragma once

#include "host/xclass.h"

class xOverWrite final : public xClass {
 public:
  bool call(const char* method, int argc, xarg_entry* args, xarg_entry* result) override;
};
