// "xul_utils" (xUtil): Facts about the installed printer and driver for the pages (product type,
// printer language, technology, finisher, port type, market, control-panel mode), list helpers, a
// file browser, a per-page GUI state store and the host's string encryption.
#pragma once

#include "host/xclass.h"

class xUtil final : public xClass {
 public:
  bool call(const char* method, int argc, xarg_entry* args, xarg_entry* result) override;
};
