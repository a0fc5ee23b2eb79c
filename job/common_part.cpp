#include "job/common_part.h"

#include <initializer_list>
#include <string_view>

#include "core/elements.h"
#include "core/printer_file.h"
#include "core/spindleui.h"
#include "core/text.h"
#include "host/properties.h"
#include "host/script.h"

using spindle::Count;

const spindle::Method<xCommonPart> xCommonPart::kMethods[] = {
    {{"updatePrintJobList", Count::kExactly, 1, {Loom::kArgDocument}},
     &xCommonPart::UpdatePrintJobList},
    {{"checkVaultboxEnabled", Count::kExactly, 1, {Loom::kArgDocument}},
     &xCommonPart::CheckVaultboxEnabled},
    {{"loadPrivatePrintFromFile", Count::kExactly, 2, {Loom::kArgDocument, Loom::kArgElement}},
     &xCommonPart::LoadPrivatePrintFromFile},
};

bool xCommonPart::call(const char* method, int argc, xarg_entry* args, xarg_entry*) {
  return spindle::Dispatch<xCommonPart>(*this, kMethods, false, method, argc, args);
}

namespace {

using spindle::DocPtr;
using spindle::ElemPtr;

constexpr char16_t kJobTypeList[] = u"ePTKWJobPrintType";
constexpr char16_t kPaper[] = u"ePTKWJobPrintType_Destination_Paper";
constexpr char16_t kSchedule[] = u"ePTKWJobPrintType_Schedule";
constexpr char16_t kPrivate[] = u"ePTKWJobPrintType_Private";
constexpr char16_t kHold[] = u"ePTKWJobPrintType_Hold";
constexpr char16_t kProof[] = u"ePTKWJobPrintType_Proof";
constexpr char16_t kBox[] = u"ePTKWJobPrintType_Destination_Box";

constexpr char16_t kVaultboxEnabledFlag[] = u"txt_BasicTabVaultboxEnabled";
constexpr char16_t kBoxDisabledByAccountFlag[] =
    u"txt_BasicTabStoreToVaultboxDisabledbyAccountSettings";
constexpr char16_t kBoxDisabledFlag[] = u"txt_BasicTabStoreToVaultboxDisabled";
constexpr char16_t kBoxDisabledByInserterFlag[] = u"txt_BasicTabStoreToVaultboxDisabledbyInserter";
constexpr char16_t kInsertPagesCheck[] = u"chk_pagehandling_insert";

// The page's job rules, run in this order after a forced re-selection.
constexpr std::string_view kJobRules[] = {
    "rule rul_ChangePrintJob;",
    "rule rul_PreviewPrintJob;",
    "rule rul_checkPageHandling;",
    "rule updateCopyHandling;",
};
constexpr char kRuleSource[] = "updatePrintJobList";

bool ValueIsTrue(const ElemPtr& elem) { return spindle::IsTrue(spindle::ValueOf(elem)); }

bool IsOneOf(std::u16string_view value, std::initializer_list<std::u16string_view> choices) {
  for (const std::u16string_view choice : choices) {
    if (value == choice) return true;
  }
  return false;
}

// Where a selection that the restrictions forbid moves to; "" when it stays.
std::u16string_view ForcedSelection(std::u16string_view current, bool privateRestriction,
                                    bool holdRestriction) {
  const bool printsDirectly = IsOneOf(current, {kPaper, kSchedule, kProof});
  if (privateRestriction) {
    // With both restrictions a held job stays held.
    if (printsDirectly || (!holdRestriction && current == kHold)) return kPrivate;
    return u"";
  }
  if (printsDirectly || current == kPrivate) return kHold;
  return u"";
}

}  // namespace

bool xCommonPart::UpdatePrintJobList(spindle::CallArgs& args) {
  const DocPtr& doc = args.doc(0);
  if (!doc) return true;
  const Loom::SmartPtr<Loom::PropertyManager> properties = doc->getUserData();
  if (!properties || properties->getString("loom.driver.name").empty()) return true;

  const bool useUserAuth = spindle::DeviceFlag(doc, "ACCTSETTINGS", "UseUserAuthentication");
  const bool privateRestriction =
      spindle::DeviceFlag(doc, "ACCTSETTINGS", "PrivatePrintRestriction");
  const bool holdRestriction = spindle::DeviceFlag(doc, "ACCTSETTINGS", "HoldPrintRestriction");
  const bool vaultboxEnabled = spindle::DeviceFlag(doc, "VAULTBOX", "Enabled");
  const bool universal = spindle::IsUniversalDriver(doc);

  // The flag function writes only some outputs for some combinations, so these starting
  // values are part of its contract; in particular the box starts forbidden.
  bool paperAllowed = true, privateAllowed = true, holdAllowed = true, proofAllowed = true,
       scheduleAllowed = true, boxAllowed = false;
  getPrintJobFlagByAccoutSettings(universal, useUserAuth, privateRestriction, holdRestriction,
                                  paperAllowed, privateAllowed, holdAllowed, proofAllowed,
                                  scheduleAllowed, boxAllowed);
  bool vaultboxAllowed = vaultboxEnabled && boxAllowed;

  const ElemPtr list = spindle::FindById(doc, kJobTypeList);
  if (!list) return true;
  const struct {
    bool allowed;
    const char16_t* value;
  } kHideable[] = {{paperAllowed, kPaper},
                   {scheduleAllowed, kSchedule},
                   {privateAllowed, kPrivate},
                   {holdAllowed, kHold},
                   {proofAllowed, kProof}};
  // Only ever hides: an item the page hid for its own reasons stays hidden.
  for (const auto& item : kHideable) {
    if (!item.allowed) list->hideMenuItemByVal(item.value);
  }

  if (vaultboxAllowed && spindle::DeviceFlag(doc, "Option", "Inserter")) {
    const ElemPtr insertPages = spindle::FindById(doc, kInsertPagesCheck);
    const ElemPtr byInserter = spindle::FindById(doc, kBoxDisabledByInserterFlag);
    if (insertPages && spindle::IsChecked(insertPages) && byInserter && ValueIsTrue(byInserter)) {
      vaultboxAllowed = false;
    }
  }
  if (const ElemPtr flag = spindle::FindById(doc, kBoxDisabledByAccountFlag)) {
    spindle::SetValue(flag, spindle::BoolText(!vaultboxAllowed));
  }
  // The box item is hidden only on a page that has this flag; a page without it keeps the
  // item even when storing is not allowed, which is intended.
  if (const ElemPtr flag = spindle::FindById(doc, kBoxDisabledFlag)) {
    if (!vaultboxAllowed) list->hideMenuItemByVal(kBox);
    spindle::SetValue(flag, spindle::BoolText(!vaultboxAllowed));
  }

  if (!privateRestriction && !holdRestriction) return true;
  const Loom::wstring current = list->getValfromMenulist();
  const std::u16string_view target = ForcedSelection(current, privateRestriction, holdRestriction);
  if (!target.empty()) list->selMenulistWithVal(Loom::wstring(target));

  if (const Loom::SmartPtr<Loom::JS::Environment> script = doc->getScriptEnv()) {
    for (const std::string_view rule : kJobRules) {
      script->doString(Loom::string(rule), kRuleSource, nullptr);
    }
  }
  return true;
}

bool xCommonPart::CheckVaultboxEnabled(spindle::CallArgs& args) {
  const DocPtr& doc = args.doc(0);
  if (const ElemPtr flag = spindle::FindById(doc, kVaultboxEnabledFlag)) {
    spindle::SetValue(flag, spindle::BoolText(spindle::DeviceFlag(doc, "VAULTBOX", "Enabled")));
  }
  return true;
}

bool xCommonPart::LoadPrivatePrintFromFile(spindle::CallArgs& args) {
  const DocPtr& doc = args.doc(0);
  const ElemPtr& field = args.elem(1);
  if (!field || !spindle::DeviceFlag(doc, "PDENHANCEMENT", "PrivatePrintInFile")) return true;
  // A missing file, or one without a password, clears the field.
  const std::optional<Loom::string> password = spindle::ReadPrinterFile(doc, "PrivPrint", "pwd");
  spindle::SetValue(field, spindle::Widen(password.value_or("")));
  return true;
}
