// "schedule" (xSchedule): Converts the schedule print dialog's date and time between the edited,
// stored and shown forms, and tells whether a schedule time has passed.
#pragma once

#include "host/xclass.h"

class xSchedule final : public xClass {
 public:
  bool call(const char* method, int argc, xarg_entry* args, xarg_entry* result) override;
};
