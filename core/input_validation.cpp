#include "core/input_validation.h"

#include "core/dispatch.h"

bool xInputValidation::call(const char* method, int argc, xarg_entry* args, xarg_entry*) {
  // Input handlers never look at the answer: every call is answered true.
  return spindle::Dispatch<xInputValidation>(*this, {}, true, method, argc, args);
}
