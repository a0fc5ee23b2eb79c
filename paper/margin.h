// "margin" (xMargin): The custom margin dialog: shows the stored margins in the user's unit, clamped to the
// product's limits, stores what the user typed, and keeps the range labels current.
#pragma once

#include "host/xclass.h"

class xMargin final : public xClass {
 public:
  bool call(const char* method, int argc, xarg_entry* args, xarg_entry* result) override;
};
