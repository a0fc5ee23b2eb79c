#include "job/over_write.h"

bool xOverWrite::call(const char*, int, xarg_entry*, xarg_entry*) {
  // Dialog scripts never look at the answer: every call is answered true.
  return true;
}
