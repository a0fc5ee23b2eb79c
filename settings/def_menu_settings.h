// "defMenuSettings" (xdefMenuSettings): The default menu choice: which entries of "cmb_DefMenSet" may be chosen, and the stored
// choice.
#pragma once

#include "host/xclass.h"

class xdefMenuSettings final : public xClass {
 public:
  bool call(const char* method, int argc, xarg_entry* args, xarg_entry* result) override;
};
