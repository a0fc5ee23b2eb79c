#include "core/util.h"

#include "core/dispatch.h"

bool xUtil::call(const char* method, int argc, xarg_entry* args, xarg_entry*) {
  return spindle::Dispatch<xUtil>(*this, {}, false, method, argc, args);
}
