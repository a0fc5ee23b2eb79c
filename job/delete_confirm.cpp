#include "job/delete_confirm.h"

#include "job/dialog_trigger.h"

using spindle::Count;

const spindle::Method<xDeleteConfirm> xDeleteConfirm::kMethods[] = {
    {{"setTrigger", Count::kExactly, 1, {Loom::kArgDocument}}, &xDeleteConfirm::SetTrigger},
};

bool xDeleteConfirm::call(const char* method, int argc, xarg_entry* args, xarg_entry*) {
  spindle::Dispatch<xDeleteConfirm>(*this, kMethods, true, method, argc, args);
  return true;
}

bool xDeleteConfirm::SetTrigger(spindle::CallArgs& args) {
  spindle::job_internal::CopyTriggerText(args.doc(0), 2, u"edt_ComDelConfirmTrigger",
                                         u"edt_DelTrigger");
  return true;
}
