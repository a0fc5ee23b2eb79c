#include "job/confirm_bypass.h"

#include "core/elements.h"
#include "core/text.h"
#include "host/properties.h"
#include "host/serialiser.h"

using spindle::Count;

const spindle::Method<xConfirmBypass> xConfirmBypass::kMethods[] = {
    {{"updateBypassDlg", Count::kExactly, 1, {Loom::kArgDocument}},
     &xConfirmBypass::UpdateBypassDlg},
    {{"saveBypassDlg", Count::kExactly, 1, {Loom::kArgDocument}}, &xConfirmBypass::SaveBypassDlg},
    {{"checkBypassStatus", Count::kExactly, 1, {Loom::kArgDocument}},
     &xConfirmBypass::CheckBypassStatus},
};

bool xConfirmBypass::call(const char* method, int argc, xarg_entry* args, xarg_entry*) {
  spindle::Dispatch<xConfirmBypass>(*this, kMethods, true, method, argc, args);
  return true;
}

namespace {

constexpr char kStoredDialog[] = "BypassDlg";

}  // namespace

bool xConfirmBypass::UpdateBypassDlg(spindle::CallArgs& args) {
  const spindle::DocPtr& dialog = args.doc(0);
  if (!dialog) return true;
  const spindle::DocPtr parent = dialog->getOwnerDoc();
  const Loom::SmartPtr<Loom::XUL::xWindow> window = spindle::WindowOf(dialog);
  if (!parent || !window) return true;
  dialog->setUserData(parent->getUserData());
  window->getSettingSerialiser().loadSettings(dialog.get(), kStoredDialog);
  return true;
}

bool xConfirmBypass::SaveBypassDlg(spindle::CallArgs& args) {
  const spindle::DocPtr& dialog = args.doc(0);
  if (const Loom::SmartPtr<Loom::XUL::xWindow> window = spindle::WindowOf(dialog)) {
    window->getSettingSerialiser().writeSettings(dialog.get(), kStoredDialog);
  }
  return true;
}

bool xConfirmBypass::CheckBypassStatus(spindle::CallArgs& args) {
  const spindle::DocPtr& dialog = args.doc(0);
  const spindle::ElemPtr box = spindle::FindById(dialog, u"bypass_noagain");
  const spindle::ElemPtr status =
      dialog ? spindle::FindById(dialog->getOwnerDoc(), u"Isavailable_bypassDlg") : nullptr;
  if (!box || !status) return true;
  // An unchecked box may carry no "checked" at all; the parent reads "false" either way.
  spindle::SetValue(status, spindle::BoolText(spindle::IsChecked(box)));
  return true;
}
