// "schedule" (xSchedule): converts the schedule print dialog's date and time between the
// form the user edits ("2011-5-3", "17:30:00"), the form stored with the job ("20110503",
// "1730") and the form shown in summaries ("03/05/2011 5:30 PM"), fills in the current date
// and time, and tells the scripts whether a schedule time has passed. The clock is the
// host's local time (Loom::OS::localTime). Keeps no state.
#pragma once

#include "core/dispatch.h"
#include "host/xclass.h"

class xSchedule final : public xClass {
 public:
  // Unmatched names, counts and kinds answer true: the dialog's scripts never look at it.
  bool call(const char* method, int argc, xarg_entry* args, xarg_entry* result) override;

 private:
  static const spindle::Method<xSchedule> kMethods[];

  // target.value = the source's edited date (today when it has none) in the stored form;
  // false, nothing written, when an element is missing.
  bool FormatDate(spindle::CallArgs& args);
  // The same for the time: "9:5:00" -> "0905".
  bool FormatTime(spindle::CallArgs& args);
  // vars.scheduleTimeElapsed = whether the stored date and time are not later than the
  // current minute; false when the page has no "vars".
  bool HasTimeElapsed(spindle::CallArgs& args);
  // target.value = the stored date and time in the shown form, when they have the stored
  // lengths.
  bool DisplayTime(spindle::CallArgs& args);
  // The job's stored date and time fields = now.
  bool SetCurrentDateTime(spindle::CallArgs& args);
};
