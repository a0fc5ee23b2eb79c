#include "job/schedule.h"

bool xSchedule::call(const char*, int, xarg_entry*, xarg_entry*) {
  // The schedule dialog's scripts never look at the answer: every call is answered true.
  return true;
}
