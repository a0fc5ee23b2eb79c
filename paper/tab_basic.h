// "tabBasic" (xTabBasic): Keeps the basic tab's paper controls consistent with each other and with the device:
// postcard and A6 by region, media type and print paper size from the input bin, the
// insert page's media type, the output bin, and the automatic zoom.
#pragma once

#include "host/xclass.h"

class xTabBasic final : public xClass {
 public:
  bool call(const char* method, int argc, xarg_entry* args, xarg_entry* result) override;
};
