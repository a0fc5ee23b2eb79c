// "deleteconfirm" (xDeleteConfirm): The delete confirmation dialog: shows the text that triggered it.
#pragma once

#include "host/xclass.h"

class xDeleteConfirm final : public xClass {
 public:
  bool call(const char* method, int argc, xarg_entry* args, xarg_entry* result) override;
};
