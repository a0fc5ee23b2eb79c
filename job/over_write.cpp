#include "job/over_write.h"

#include "job/dialog_trigger.h"

using spindle::Count;

const spindle::Method<xOverWrite> xOverWrite::kMethods[] = {
    {{"setTrigger", Count::kExactly, 1, {Loom::kArgDocument}}, &xOverWrite::SetTrigger},
};

bool xOverWrite::call(const char* method, int argc, xarg_entry* args, xarg_entry*) {
  spindle::Dispatch<xOverWrite>(*this, kMethods, true, method, argc, args);
  return true;
}

bool xOverWrite::SetTrigger(spindle::CallArgs& args) {
  spindle::job_internal::CopyTriggerText(args.doc(0), 1, u"edt_ComOverWriteTrigger",
                                         u"edt_OvwTrigger");
  return true;
}
