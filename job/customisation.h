// "customisation" (xCustomisation): The customisation dialog: UI language and the driver's
// plug-ins, with their exclusions, output-language support and factory selection.
#pragma once

#include "host/xclass.h"

class xCustomisation final : public xClass {
 public:
  bool call(const char* method, int argc, xarg_entry* args, xarg_entry* result) override;
};
