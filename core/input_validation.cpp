#include "core/input_validation.h"

bool xInputValidation::call(const char*, int, xarg_entry*, xarg_entry*) {
  // Input handlers never look at the answer: every call is answered true.
  return true;
}
