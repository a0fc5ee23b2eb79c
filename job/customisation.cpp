#include "job/customisation.h"

#include "core/dispatch.h"

bool xCustomisation::call(const char* method, int argc, xarg_entry* args, xarg_entry*) {
  return spindle::Dispatch<xCustomisation>(*this, {}, false, method, argc, args);
}
