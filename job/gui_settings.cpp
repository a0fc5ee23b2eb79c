#include "job/gui_settings.h"

#include <algorithm>
#include <optional>

#include "core/elements.h"
#include "core/text.h"
#include "core/user_modes.h"
#include "host/printer.h"
#include "host/script.h"
#include "host/serialiser.h"
#include "job/length_text.h"
#include "job/sheet_defaults.h"

using Loom::kArgDocument;
using Loom::kArgElement;
using Loom::kArgString;
using spindle::CallArgs;
using spindle::Count;
using spindle::DocPtr;
using spindle::ElemPtr;

const spindle::Method<xGuiSettings> xGuiSettings::kMethods[] = {
    {{"restoreDefault", Count::kExactly, 2, {kArgString, kArgDocument}},
     &xGuiSettings::RestoreDefault},
    {{"restoreSubDefault", Count::kExactly, 2, {kArgString, kArgDocument}},
     &xGuiSettings::RestoreSubDefault},
    {{"elementExists", Count::kExactly, 3, {kArgString, kArgString, kArgDocument}},
     &xGuiSettings::ElementExists},
    {{"hideMenuItem", Count::kExactly, 4, {kArgString, kArgString, kArgString, kArgDocument}},
     &xGuiSettings::HideMenuItem},
    {{"hideMenuItems", Count::kExactly, 4, {kArgString, kArgString, kArgString, kArgDocument}},
     &xGuiSettings::HideMenuItems},
    {{"copyValueBetweenElements",
      Count::kExactly,
      4,
      {kArgString, kArgString, kArgDocument, kArgDocument}},
     &xGuiSettings::CopyValueBetweenElements},
    {{"isValueEmpty", Count::kExactly, 4, {kArgString, kArgString, kArgDocument, kArgDocument}},
     &xGuiSettings::IsValueEmpty},
    {{"setPrintJob", Count::kExactly, 1, {kArgDocument}}, &xGuiSettings::SetPrintJob},
    {{"convertInchMMAndSaveValue",
      Count::kExactly,
      6,
      {kArgString, kArgString, kArgDocument, kArgDocument, kArgString, kArgString}},
     &xGuiSettings::ConvertInchMMAndSaveValue},
    {{"enableForAdmin", Count::kExactly, 2, {kArgString, kArgDocument}},
     &xGuiSettings::EnableForAdmin},
    {{"enableForControlPanel", Count::kExactly, 2, {kArgString, kArgDocument}},
     &xGuiSettings::EnableForControlPanel},
    {{"disableForControlPanel", Count::kExactly, 2, {kArgDocument, kArgElement}},
     &xGuiSettings::DisableForControlPanel},
    {{"VerifyDecimalPlaces", Count::kExactly, 1, {kArgDocument}},
     &xGuiSettings::VerifyDecimalPlaces},
    {{"restoreOSDefault", Count::kExactly, 1, {kArgDocument}}, &xGuiSettings::RestoreOSDefault},
};

bool xGuiSettings::call(const char* method, int argc, xarg_entry* args, xarg_entry*) {
  return spindle::Dispatch<xGuiSettings>(*this, kMethods, true, method, argc, args);
}

namespace {

constexpr char16_t kDisabled[] = u"disabled";
// The item ids of hideMenuItems are separated by commas; blanks around an id are left
// out, so scripts may write "A4, A5".
constexpr char16_t kItemSeparator = u',';
// An item id longer than the work buffer's 259 characters is cut there.
constexpr std::size_t kMaxItemIdLength = 259;

ElemPtr Find(const DocPtr& doc, const char* id) {
  return spindle::FindById(doc, spindle::Widen(id));
}

// A list's selected item's value, or else the element's value; nothing without the element.
std::optional<Loom::wstring> SourceValue(const DocPtr& doc, const char* id) {
  const ElemPtr source = Find(doc, id);
  if (!source) return std::nullopt;
  if (source->getType() == Loom::kElemMenuList && source->getSelectedIndex() >= 0) {
    return source->getValfromMenulist();
  }
  return spindle::ValueOf(source);
}

void SetDisabled(const ElemPtr& elem, bool disabled) {
  elem->setAttribute(kDisabled, Loom::wstring(spindle::BoolText(disabled)));
}

void HideItem(const DocPtr& doc, std::u16string_view itemId, const Loom::wstring& state) {
  if (const ElemPtr item = spindle::FindById(doc, itemId.substr(0, kMaxItemIdLength))) {
    item->setAttr(Loom::kAttrHidden, state);
  }
}

std::u16string_view Trimmed(std::u16string_view text) {
  const std::size_t first = text.find_first_not_of(u' ');
  if (first == std::u16string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(u' ') - first + 1);
}

}  // namespace

bool xGuiSettings::RestoreDefault(CallArgs& args) {
  const std::string_view tab = args.str(0);
  const DocPtr& doc = args.doc(1);
  if (!doc) return true;
  // The script first, so that the page resets what the file does not hold; the file's
  // values then win. A tab name is a script expression (a tab variable): unquoted.
  const Loom::string statement = tab == spindle::job_internal::kAllTabs
                                     ? Loom::string("restoreDefaults(document);")
                                     : "restoreDefaults(document, " + Loom::string(tab) + ");";
  if (const Loom::SmartPtr<Loom::JS::Environment> script = doc->getScriptEnv()) {
    script->doString(statement, "xGuiSettings::restoreDefault", nullptr);
  }
  spindle::job_internal::ApplyStoredDefaults(doc, tab);
  return true;
}

bool xGuiSettings::RestoreSubDefault(CallArgs& args) {
  if (const Loom::SmartPtr<Loom::XUL::xWindow> window = spindle::WindowOf(args.doc(1))) {
    window->getSettingSerialiser().removeDoc(args.str(0));
  }
  return true;
}

bool xGuiSettings::ElementExists(CallArgs& args) {
  const DocPtr& doc = args.doc(2);
  const bool exists = static_cast<bool>(Find(doc, args.str(0)));
  if (const ElemPtr result = Find(doc, args.str(1)))
    spindle::SetValue(result, spindle::BoolText(exists));
  return true;
}

bool xGuiSettings::HideMenuItem(CallArgs& args) {
  HideItem(args.doc(3), spindle::Widen(args.str(1)), spindle::Widen(args.str(2)));
  return true;
}

bool xGuiSettings::HideMenuItems(CallArgs& args) {
  const DocPtr& doc = args.doc(3);
  if (!doc) return true;
  const Loom::wstring ids = spindle::Widen(args.str(1));
  const Loom::wstring state = spindle::Widen(args.str(2));
  const std::u16string_view list = ids;
  for (std::size_t start = 0; start <= list.size();) {
    const std::size_t end = std::min(list.find(kItemSeparator, start), list.size());
    const std::u16string_view id = Trimmed(list.substr(start, end - start));
    if (!id.empty()) HideItem(doc, id, state);
    start = end + 1;
  }
  return true;
}

bool xGuiSettings::CopyValueBetweenElements(CallArgs& args) {
  const std::optional<Loom::wstring> value = SourceValue(args.doc(2), args.str(0));
  if (!value) return true;
  const ElemPtr target = Find(args.doc(3), args.str(1));
  if (!target) return true;
  const bool selected =
      target->getType() == Loom::kElemMenuList && target->selMenulistWithVal(*value);
  if (!selected) spindle::SetValue(target, *value);
  return true;
}

bool xGuiSettings::IsValueEmpty(CallArgs& args) {
  const std::optional<Loom::wstring> value = SourceValue(args.doc(2), args.str(0));
  if (!value) return true;
  if (const ElemPtr result = Find(args.doc(3), args.str(1))) {
    spindle::SetValue(result, spindle::BoolText(value->empty() || *value == u" "));
  }
  return true;
}

bool xGuiSettings::SetPrintJob(CallArgs& args) {
  const DocPtr& doc = args.doc(0);
  const ElemPtr jobTypes = spindle::FindById(doc, u"ePTKWJobPrintType");
  const ElemPtr current = spindle::FindById(doc, u"edt_ComCurSelPrintJob");
  if (jobTypes && current) spindle::SetValue(current, jobTypes->getValfromMenulist());
  return true;
}

bool xGuiSettings::ConvertInchMMAndSaveValue(CallArgs& args) {
  const ElemPtr source = Find(args.doc(2), args.str(0));
  const ElemPtr target = Find(args.doc(3), args.str(1));
  if (!source || !target) return true;
  spindle::SetValue(target, spindle::job_internal::ConvertedLengthText(spindle::ValueOf(source),
                                                                       args.str(4), args.str(5)));
  return true;
}

bool xGuiSettings::EnableForAdmin(CallArgs& args) {
  if (const ElemPtr elem = Find(args.doc(1), args.str(0)))
    SetDisabled(elem, !spindle::IsAdministrator());
  return true;
}

bool xGuiSettings::EnableForControlPanel(CallArgs& args) {
  const DocPtr& doc = args.doc(1);
  if (const ElemPtr elem = Find(doc, args.str(0))) SetDisabled(elem, !spindle::IsControlPanel(doc));
  return true;
}

bool xGuiSettings::DisableForControlPanel(CallArgs& args) {
  const ElemPtr& elem = args.elem(1);
  if (elem && spindle::IsControlPanel(args.doc(0))) SetDisabled(elem, true);
  return true;
}

bool xGuiSettings::VerifyDecimalPlaces(CallArgs& args) {
  // The insert-page boxes hold millimetres: one decimal unless the box names its own
  // number of decimal places in "decimalplaces".
  constexpr int kDefaultDecimals = 1;
  constexpr const char16_t* kBoxes[] = {u"edt_InsPagTabExtension", u"edt_InsPagTabImageShift"};
  for (const char16_t* id : kBoxes) {
    const ElemPtr box = spindle::FindById(args.doc(0), id);
    if (!box) continue;
    const Loom::wstring places = box->getAttr(Loom::kAttrDecimalPlaces);
    const int decimals =
        places.empty() ? kDefaultDecimals : std::max(0, spindle::LeadingInteger(places));
    Loom::wstring text = spindle::ValueOf(box);
    const std::size_t point = text.find(u'.');
    if (point == Loom::wstring::npos) continue;
    if (text.size() - point - 1 > static_cast<std::size_t>(decimals))
      text.resize(point + 1 + decimals);
    spindle::SetValue(box, text);
  }
  return true;
}

bool xGuiSettings::RestoreOSDefault(CallArgs& args) {
  if (const ElemPtr sizes = spindle::FindById(args.doc(0), u"oppsz")) {
    sizes->selMenulistWithVal(Loom::isNorthAmericanShipment() ? u"LETTER" : u"A4");
  }
  return true;
}
