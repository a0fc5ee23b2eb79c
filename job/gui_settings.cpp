#include "job/gui_settings.h"

#include "core/dispatch.h"

bool xGuiSettings::call(const char* method, int argc, xarg_entry* args, xarg_entry*) {
  // Every tab calls this toolbox without looking at the answer: every call is answered true.
  return spindle::Dispatch<xGuiSettings>(*this, {}, true, method, argc, args);
}
