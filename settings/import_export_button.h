// "impexpbut" (xImportExportButton): Export of the driver's configuration into one archive file,
// and its import after the user confirms (the Others tab's Export and Import buttons).
#pragma once

#include "host/xclass.h"

class xImportExportButton final : public xClass {
 public:
  bool call(const char* method, int argc, xarg_entry* args, xarg_entry* result) override;
};
