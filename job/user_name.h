// "username" (xUserName): Fills the job nickname field with the stored nickname or the network user name.
#pragma once

#include "host/xclass.h"

class xUserName final : public xClass {
 public:
  bool call(const char* method, int argc, xarg_entry* args, xarg_entry* result) override;
};
