#include "paper/margin.h"

bool xMargin::call(const char*, int, xarg_entry*, xarg_entry*) {
  // The margin dialog's scripts never look at the answer: every call is answered true.
  return true;
}
