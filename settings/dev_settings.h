// "dev_settings" (xDevSettings): Script access to the device settings tree of the calling document's window.
#pragma once

#include "host/xclass.h"

class xDevSettings final : public xClass {
 public:
  bool call(const char* method, int argc, xarg_entry* args, xarg_entry* result) override;
};
