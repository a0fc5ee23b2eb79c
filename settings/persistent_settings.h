// "settings" (xPersistentSettings): Script access to the user settings tree of the calling document's window: store,
// recall, select from, remove, snapshot and factory-reset settings.
#pragma once

#include "host/xclass.h"

class xPersistentSettings final : public xClass {
 public:
  bool call(const char* method, int argc, xarg_entry* args, xarg_entry* result) override;
};
