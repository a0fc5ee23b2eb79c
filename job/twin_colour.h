// "twincolour" (xTwinColour): Keeps the twin colour choice in step between its visible list and the two hidden
// printer property fields the driver saves.
#pragma once

#include "host/xclass.h"

class xTwinColour final : public xClass {
 public:
  bool call(const char* method, int argc, xarg_entry* args, xarg_entry* result) override;
};
