#include "job/schedule.h"

#include "core/dispatch.h"

bool xSchedule::call(const char* method, int argc, xarg_entry* args, xarg_entry*) {
  // The schedule dialog's scripts never look at the answer: every call is answered true.
  return spindle::Dispatch<xSchedule>(*this, {}, true, method, argc, args);
}
