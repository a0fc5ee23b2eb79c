#include "job/common_part.h"

#include "core/dispatch.h"

bool xCommonPart::call(const char* method, int argc, xarg_entry* args, xarg_entry*) {
  return spindle::Dispatch<xCommonPart>(*this, {}, false, method, argc, args);
}
