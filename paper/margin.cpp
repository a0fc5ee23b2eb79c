#include "paper/margin.h"

#include <array>
#include <cmath>
#include <string_view>

#include "core/elements.h"
#include "core/text.h"
#include "host/codes.h"
#include "paper/lengths.h"

using spindle::Count;

const spindle::Method<xMargin> xMargin::kMethods[] = {
    {{"toggle", Count::kExactly, 2, {Loom::kArgDocument, Loom::kArgInteger}}, &xMargin::Toggle},
    {{"setCustomMargin", Count::kExactly, 1, {Loom::kArgDocument}}, &xMargin::SetCustomMargin},
    {{"updateDlg", Count::kExactly, 1, {Loom::kArgDocument}}, &xMargin::UpdateDlg},
    {{"validateValues", Count::kExactly, 2, {Loom::kArgDocument, Loom::kArgString}},
     &xMargin::ValidateValues},
};

bool xMargin::call(const char* method, int argc, xarg_entry* args, xarg_entry*) {
  // The dialog's scripts never look at the answer: unmatched calls are answered true.
  return spindle::Dispatch<xMargin>(*this, kMethods, true, method, argc, args);
}

namespace {

using spindle::DocPtr;
using spindle::ElemPtr;

struct Limits {
  double minimum;
  double maximum;
};

// Everything that depends on the unit the dialog shows.
struct Unit {
  double micrometres;  // per inch or millimetre
  int decimals;        // shown as "%.02f" or "%.01f"
  Limits fullRange;    // product types "EXBP", "EXMASH" and "Universal"
  Limits standard;     // every other product type
  std::u16string_view widthRange;
  std::u16string_view lengthRange;
};

constexpr Unit kInches = {spindle::paper::kMicrometresPerInch,
                          2,
                          {0.17, 3.94},
                          {0.2, 3.94},
                          u"inches (3.94-12.00)",
                          u"inches (5.83-47.24)"};
constexpr Unit kMillimetres = {spindle::paper::kMicrometresPerMillimetre,
                               1,
                               {4.2, 100.0},
                               {5.0, 100.0},
                               u"mm (100.0 - 313.4)",
                               u"mm (148.0 - 1200.0)"};

const Unit& UnitOf(bool inches) { return inches ? kInches : kMillimetres; }

// The stored unit word; updateDlg tests only for it, anything else means millimetres.
constexpr std::u16string_view kInchWord = u"inch";
constexpr std::u16string_view kMillimetreWord = u"mm";

// Stored margins are micrometres with two decimals whatever the unit.
constexpr int kStoredDecimals = 2;

// The radio group's items: inches first, then millimetres.
constexpr int kInchItem = 0;
constexpr int kMillimetreItem = 1;

constexpr std::u16string_view kFullRangeProductTypes[] = {u"EXBP", u"EXMASH", u"Universal"};
constexpr std::u16string_view kDefaultProductType = u"Universal";

struct MarginField {
  std::u16string_view stored;  // micrometres
  std::u16string_view edit;    // in the shown unit
  std::u16string_view label;
};

// In the order of the flags of xMargin.
constexpr MarginField kFields[] = {
    {u"ePTKWPageCustomMargin_MarginLeft", u"edt_MarginLeft", u"txt_MarginLeft"},
    {u"ePTKWPageCustomMargin_MarginRight", u"edt_MarginRight", u"txt_MarginRight"},
    {u"ePTKWPageCustomMargin_MarginTop", u"edt_MarginTop", u"txt_MarginTop"},
    {u"ePTKWPageCustomMargin_MarginBottom", u"edt_MarginBottom", u"txt_MarginBottom"},
};
constexpr std::size_t kFieldCount = std::size(kFields);

// Whether the product type has the wider limits; "Universal" when the document does not
// say.
bool IsFullRangeProduct(const DocPtr& doc) {
  const ElemPtr typeField = spindle::FindById(doc, u"edt_MarginProdType");
  const Loom::wstring type =
      typeField ? spindle::ValueOf(typeField) : Loom::wstring(kDefaultProductType);
  for (const std::u16string_view fullRange : kFullRangeProductTypes) {
    if (type == fullRange) return true;
  }
  return false;
}

// The minimum first, then the maximum.
double Clamp(double value, const Limits& limits) {
  if (value < limits.minimum) value = limits.minimum;
  if (value > limits.maximum) value = limits.maximum;
  return value;
}

double Bounded(double value, const Unit& unit, bool fullRangeProduct) {
  return Clamp(value, fullRangeProduct ? unit.fullRange : unit.standard);
}

// `value` rounded up or down at `decimals` places. Products such as 1.5 × 25.4 come out
// of binary arithmetic a hair below 38.1; a value within a millionth of a step is taken
// as on it, so such a length does not lose a step.
double RoundAt(double value, int decimals, bool up) {
  const double scale = std::pow(10.0, decimals);
  double scaled = value * scale;
  const double nearest = std::round(scaled);
  if (std::fabs(scaled - nearest) < 1e-6) scaled = nearest;
  return (up ? std::ceil(scaled) : std::floor(scaled)) / scale;
}

// Item `index` of a radio group selected as the host's radio helpers select it.
void SelectRadio(const ElemPtr& group, int index) {
  const Loom::XUL::ElemList radios = spindle::ChildrenOfType(group, Loom::kElemRadio);
  if (index < static_cast<int>(radios.size())) {
    group->setRadioGroupWithVal(spindle::ValueOf(radios[index]));
  }
}

using FieldElements = std::array<ElemPtr, kFieldCount>;

// The element `id` names for each margin field; false when one is missing.
bool FindFields(const DocPtr& doc, std::u16string_view MarginField::*id, FieldElements& found) {
  for (std::size_t i = 0; i < kFieldCount; ++i) {
    found[i] = spindle::FindById(doc, kFields[i].*id);
    if (!found[i]) return false;
  }
  return true;
}

}  // namespace

void xMargin::ConvertField(const ElemPtr& edit, int field, bool toInches, bool fullRangeProduct) {
  const Unit& unit = UnitOf(toInches);
  const double typed = spindle::LeadingNumber(spindle::ValueOf(edit));
  // Into inches the value rounds up, into millimetres down.
  const double converted =
      toInches ? RoundAt(typed / spindle::paper::kMillimetresPerInch, unit.decimals, true)
               : RoundAt(typed * spindle::paper::kMillimetresPerInch, unit.decimals, false);
  spindle::SetValue(edit,
                    spindle::FixedText(Bounded(converted, unit, fullRangeProduct), unit.decimals));
  flags_[field] = toInches;
}

bool xMargin::Toggle(spindle::CallArgs& args) {
  const DocPtr& doc = args.doc(0);
  // The flag is the position of the chosen item in the unit radio group.
  const bool inches = args.integer(1) == kInchItem;
  const Unit& unit = UnitOf(inches);
  if (const ElemPtr width = spindle::FindById(doc, u"txt_CusPapSizLabAVal")) {
    spindle::SetValue(width, unit.widthRange);
  }
  if (const ElemPtr length = spindle::FindById(doc, u"txt_CusPapSizLabBVal")) {
    spindle::SetValue(length, unit.lengthRange);
  }
  // Fields this object never wrote hold the page's own texts, in no known unit.
  if (!flags_[kFieldsKnown]) return true;
  const bool fullRangeProduct = IsFullRangeProduct(doc);
  for (std::size_t i = 0; i < kFieldCount; ++i) {
    if (static_cast<bool>(flags_[i]) == inches) continue;
    if (const ElemPtr edit = spindle::FindById(doc, kFields[i].edit)) {
      ConvertField(edit, static_cast<int>(i), inches, fullRangeProduct);
    }
  }
  return true;
}

bool xMargin::SetCustomMargin(spindle::CallArgs& args) {
  const DocPtr& doc = args.doc(0);
  const ElemPtr unitGroup = spindle::FindById(doc, u"rdg_MarginUnit");
  const ElemPtr storedUnit = spindle::FindById(doc, u"txt_FshCustomMarginUnit");
  FieldElements edits;
  FieldElements stored;
  if (!unitGroup || !storedUnit || !FindFields(doc, &MarginField::edit, edits) ||
      !FindFields(doc, &MarginField::stored, stored)) {
    return true;
  }
  const bool inches = unitGroup->getValFromRadioGroup() == kInchWord;
  for (std::size_t i = 0; i < kFieldCount; ++i) {
    const double typed = spindle::LeadingNumber(spindle::ValueOf(edits[i]));
    spindle::SetValue(stored[i],
                      spindle::FixedText(typed * UnitOf(inches).micrometres, kStoredDecimals));
  }
  // Only "inch" is ever tested for; "mm" says the other unit for whoever reads the page.
  spindle::SetValue(storedUnit, inches ? kInchWord : kMillimetreWord);
  return true;
}

bool xMargin::UpdateDlg(spindle::CallArgs& args) {
  const DocPtr& doc = args.doc(0);
  const ElemPtr unitGroup = spindle::FindById(doc, u"rdg_MarginUnit");
  const ElemPtr storedUnit = spindle::FindById(doc, u"txt_FshCustomMarginUnit");
  FieldElements stored;
  FieldElements edits;
  FieldElements labels;
  if (!unitGroup || !storedUnit || !FindFields(doc, &MarginField::stored, stored) ||
      !FindFields(doc, &MarginField::edit, edits) ||
      !FindFields(doc, &MarginField::label, labels)) {
    return true;
  }
  const bool inches = spindle::ValueOf(storedUnit) == kInchWord;
  const Unit& unit = UnitOf(inches);
  const bool fullRangeProduct = IsFullRangeProduct(doc);
  SelectRadio(unitGroup, inches ? kInchItem : kMillimetreItem);
  // The labels name the sides only; they do not depend on the unit and stay as they are.
  for (std::size_t i = 0; i < kFieldCount; ++i) {
    const double shown = spindle::LeadingNumber(spindle::ValueOf(stored[i])) / unit.micrometres;
    spindle::SetValue(edits[i],
                      spindle::FixedText(Bounded(shown, unit, fullRangeProduct), unit.decimals));
    flags_[i] = inches;
  }
  flags_[kFieldsKnown] = true;
  return true;
}

bool xMargin::ValidateValues(spindle::CallArgs& args) {
  const DocPtr& doc = args.doc(0);
  const bool toInches = spindle::IsTrue(std::string_view(args.str(1)));
  const bool fullRangeProduct = IsFullRangeProduct(doc);
  for (std::size_t i = 0; i < kFieldCount; ++i) {
    if (const ElemPtr edit = spindle::FindById(doc, kFields[i].edit)) {
      ConvertField(edit, static_cast<int>(i), toInches, fullRangeProduct);
    }
  }
  flags_[kFieldsKnown] = true;
  return true;
}
