// "textsummary" (xTextSummary): Puts texts into the summary page's output field "setting_out".
#pragma once

#include "host/xclass.h"

class xTextSummary final : public xClass {
 public:
  bool call(const char* method, int argc, xarg_entry* args, xarg_entry* result) override;
};
