#include "core/input_validation.h"

#include <algorithm>
#include <cstdint>
#include <functional>
#include <string_view>

#include "core/elements.h"
#include "core/printer_file.h"
#include "core/text.h"
#include "host/os.h"
#include "host/settings.h"

using spindle::Count;

namespace {

// Every method but verifyTextInput takes the document and the edit field.
constexpr spindle::Signature FieldCall(const char* name) {
  return {name, Count::kExactly, 2, {Loom::kArgDocument, Loom::kArgElement}};
}

}  // namespace

const spindle::Method<xInputValidation> xInputValidation::kMethods[] = {
    {FieldCall("VerifyInputRangeMax"), &xInputValidation::VerifyInputRangeMax},
    {FieldCall("VerifyInputRangeMin"), &xInputValidation::VerifyInputRangeMin},
    {FieldCall("VerifyInputRangeMinSetMin"), &xInputValidation::RaiseToMinimum},
    {FieldCall("VerifyInputIntegerEditing"), &xInputValidation::VerifyInputIntegerEditing},
    {FieldCall("VerifyInputIntegerEditingFinish"),
     &xInputValidation::VerifyInputIntegerEditingFinish},
    {FieldCall("VerifyInputRangeMinOrBlank"), &xInputValidation::RaiseToMinimum},
    {FieldCall("VerifyInputRangeMaxFloat"), &xInputValidation::VerifyInputRangeMaxFloat},
    {FieldCall("VerifyInputRangeMinFloat"), &xInputValidation::VerifyInputRangeMinFloat},
    {FieldCall("VerifyInputRangeMinFloatOrBlank"),
     &xInputValidation::VerifyInputRangeMinFloatOrBlank},
    {FieldCall("VerifyPvtPrntPassword"), &xInputValidation::VerifyPvtPrntPassword},
    {FieldCall("VerifyVaultBoxFolder"), &xInputValidation::VerifyVaultBoxFolder},
    {FieldCall("VerifyVaultBoxPassword"), &xInputValidation::VerifyVaultBoxPassword},
    {FieldCall("VerifyInvalidDeptCode"), &xInputValidation::VerifyInvalidDeptCode},
    {FieldCall("VerifyDeptCode"), &xInputValidation::VerifyDeptCode},
    {FieldCall("VerifyNickname"), &xInputValidation::VerifyNickname},
    {FieldCall("loadNickname"), &xInputValidation::LoadNickname},
    {FieldCall("saveNickNameToFile"), &xInputValidation::SaveNickNameToFile},
    {FieldCall("VerifyDecimalPtLimit"), &xInputValidation::VerifyDecimalPtLimit},
    {{"verifyTextInput",
      Count::kExactly,
      3,
      {Loom::kArgDocument, Loom::kArgElement, Loom::kArgString}},
     &xInputValidation::VerifyTextInput},
    {FieldCall("verifyPageNumbersEntered"), &xInputValidation::VerifyPageNumbersEntered},
};

bool xInputValidation::call(const char* method, int argc, xarg_entry* args, xarg_entry*) {
  return spindle::Dispatch<xInputValidation>(*this, kMethods, true, method, argc, args);
}

namespace {

using spindle::DocPtr;
using spindle::ElemPtr;
using Text = Loom::wstring;
using CharTest = std::function<bool(char16_t)>;

constexpr std::u16string_view kDecimalCharacters = u"0123456789.";
constexpr std::u16string_view kPageNumberCharacters = u"0123456789,-";
constexpr std::u16string_view kVaultBoxPunctuation = u"!#()*+,-./:;=?@\\^_`{|}~";
constexpr std::u16string_view kDeptCodePunctuation = u"-._";
// The characters a nick name may not hold: the job's name travels in the device's job
// list, where these separate or quote fields.
constexpr std::u16string_view kNicknameForbidden = u"/\\[]\":;|<>+=,?*";
constexpr char16_t kNicknameMessage[] = u"$IDS_ERRORMES_NICKNAME_SPECIALCHAR;";
constexpr char16_t kErrorCaption[] = u"Error";
constexpr unsigned kExclamationIcon = 48;  // MB_ICONEXCLAMATION, OK button only

constexpr std::string_view kNicknameSection = "NICKNAME";
constexpr std::string_view kNicknameKey = "ePTKWJobAuthentication_NickName";

// The limits within which integer typing is followed; far beyond any field's bounds.
constexpr std::int64_t kValueCeiling = 1'000'000'000'000;

bool IsIn(std::u16string_view set, char16_t c) { return set.find(c) != std::u16string_view::npos; }
bool IsAsciiLetter(char16_t c) { return (c >= u'A' && c <= u'Z') || (c >= u'a' && c <= u'z'); }
bool IsDigit(char16_t c) { return c >= u'0' && c <= u'9'; }
bool IsPrintableAscii(char16_t c) { return c >= 33 && c <= 126; }
bool IsDeptCodeCharacter(char16_t c) {
  return IsAsciiLetter(c) || IsDigit(c) || IsIn(kDeptCodePunctuation, c);
}

Text KeepOnly(std::u16string_view text, const CharTest& allowed) {
  Text kept;
  std::copy_if(text.begin(), text.end(), std::back_inserter(kept), allowed);
  return kept;
}

CharTest OneOf(std::u16string_view set) {
  return [set](char16_t c) { return IsIn(set, c); };
}

void DropLast(Text& text) {
  if (!text.empty()) text.pop_back();
}

// Everything after the first "." that is itself a "." is removed: a second point is a
// refused keystroke, not a new decimal part.
Text WithoutSecondPoint(std::u16string_view text) {
  const std::size_t first = text.find(u'.');
  if (first == std::u16string_view::npos) return Text(text);
  Text kept(text.substr(0, first + 1));
  for (const char16_t c : text.substr(first + 1)) {
    if (c != u'.') kept += c;
  }
  return kept;
}

int Bound(const ElemPtr& field, int code) { return spindle::LeadingInteger(field->getAttr(code)); }

// A text field's length limit: its maximum (146) as the department code fields carry it,
// else the XUL "maxlength"; 0 when it has neither, and then the text is not cut.
std::size_t LengthLimit(const ElemPtr& field) {
  int limit = Bound(field, Loom::kAttrMax);
  if (limit <= 0) limit = spindle::LeadingInteger(field->getAttribute(u"maxlength"));
  return limit > 0 ? static_cast<std::size_t>(limit) : 0;
}

void CutTo(Text& text, std::size_t limit) {
  if (limit > 0 && text.size() > limit) text.resize(limit);
}

// Writes `corrected` into the field when it differs from what the field holds.
void Correct(const ElemPtr& field, const Text& corrected) {
  if (corrected != spindle::ValueOf(field)) spindle::SetValue(field, corrected);
}

void PutBackDefault(const ElemPtr& field) {
  spindle::SetValue(field, field->getAttribute(u"defaultvalue"));
}

// --- Integers with a sign and "," thousands separators ---

struct TypedInteger {
  bool hasDigits = false;
  std::int64_t value = 0;  // held at kValueCeiling in magnitude
};

TypedInteger ReadGrouped(std::u16string_view text) {
  TypedInteger typed;
  const bool negative = !text.empty() && text.front() == u'-';
  for (const char16_t c : text) {
    if (!IsDigit(c)) continue;
    typed.hasDigits = true;
    typed.value = std::min(typed.value * 10 + (c - u'0'), kValueCeiling);
  }
  if (negative) typed.value = -typed.value;
  return typed;
}

// Whether a number being typed has left the bounds for good: more digits only make a
// positive number larger and a negative one smaller, so a positive number below the
// minimum (or a negative one above the maximum) may still be on its way.
bool OutOfReach(const TypedInteger& typed, int min, int max) {
  if (!typed.hasDigits) return false;
  return typed.value >= 0 ? typed.value > max : typed.value < min;
}

Text Grouped(std::int64_t value) {
  const Text digits = spindle::DecimalText(value < 0 ? -value : value);
  Text grouped = value < 0 ? Text(u"-") : Text();
  for (std::size_t i = 0; i < digits.size(); ++i) {
    if (i > 0 && (digits.size() - i) % 3 == 0) grouped += u',';
    grouped += digits[i];
  }
  return grouped;
}

}  // namespace

bool xInputValidation::VerifyInputRangeMax(spindle::CallArgs& args) {
  const ElemPtr& field = args.elem(1);
  if (!field) return true;
  Text text = spindle::ValueOf(field);
  if (text.empty()) return true;
  if (spindle::LeadingInteger(text) > Bound(field, Loom::kAttrMax)) {
    DropLast(text);
    spindle::SetValue(field, text);
  }
  return true;
}

bool xInputValidation::VerifyInputRangeMin(spindle::CallArgs& args) {
  const ElemPtr& field = args.elem(1);
  if (!field) return true;
  // An empty text reads as 0, so it gets the default whenever the minimum is above 0.
  if (spindle::LeadingInteger(spindle::ValueOf(field)) < Bound(field, Loom::kAttrMin)) {
    PutBackDefault(field);
  }
  return true;
}

bool xInputValidation::RaiseToMinimum(spindle::CallArgs& args) {
  const ElemPtr& field = args.elem(1);
  if (!field) return true;
  const Text text = spindle::ValueOf(field);
  if (!text.empty() && spindle::LeadingInteger(text) < Bound(field, Loom::kAttrMin)) {
    spindle::SetValue(field, field->getAttr(Loom::kAttrMin));
  }
  return true;
}

bool xInputValidation::VerifyInputIntegerEditing(spindle::CallArgs& args) {
  const ElemPtr& field = args.elem(1);
  if (!field) return true;
  const int min = Bound(field, Loom::kAttrMin);
  const int max = Bound(field, Loom::kAttrMax);
  // A leading "-" only where the bounds reach below zero; a "," only right after a digit.
  const bool negativeAllowed = min < 0 || max < 0;
  Text text;
  for (const char16_t c : spindle::ValueOf(field)) {
    const bool keep = IsDigit(c) || (c == u'-' && text.empty() && negativeAllowed) ||
                      (c == u',' && !text.empty() && IsDigit(text.back()));
    if (keep) text += c;
  }
  // The keystroke that takes the number out of reach is refused, together with a ","
  // it leaves at the end; a pasted number is cut back as far as it takes.
  while (OutOfReach(ReadGrouped(text), min, max)) {
    DropLast(text);
    while (!text.empty() && text.back() == u',') DropLast(text);
  }
  Correct(field, text);
  return true;
}

bool xInputValidation::VerifyInputIntegerEditingFinish(spindle::CallArgs& args) {
  const ElemPtr& field = args.elem(1);
  if (!field) return true;
  const int min = Bound(field, Loom::kAttrMin);
  const int max = Bound(field, Loom::kAttrMax);
  const TypedInteger typed = ReadGrouped(spindle::ValueOf(field));
  // A field left without a number takes the minimum; every value ends within the bounds
  // (the minimum wins should a page give a maximum below it), grouped in threes.
  const std::int64_t value = typed.hasDigits ? typed.value : min;
  Correct(field, Grouped(std::max<std::int64_t>(std::min<std::int64_t>(value, max), min)));
  return true;
}

bool xInputValidation::VerifyInputRangeMaxFloat(spindle::CallArgs& args) {
  const ElemPtr& field = args.elem(1);
  if (!field) return true;
  Text text = WithoutSecondPoint(KeepOnly(spindle::ValueOf(field), OneOf(kDecimalCharacters)));
  // The bounds are whole numbers, so a plain comparison of the typed decimal is exact enough.
  if (!text.empty() && spindle::LeadingNumber(text) > Bound(field, Loom::kAttrMax)) {
    DropLast(text);
  }
  Correct(field, text);
  return true;
}

bool xInputValidation::VerifyInputRangeMinFloat(spindle::CallArgs& args) {
  const ElemPtr& field = args.elem(1);
  if (!field) return true;
  if (spindle::LeadingNumber(spindle::ValueOf(field)) < Bound(field, Loom::kAttrMin)) {
    PutBackDefault(field);
  }
  return true;
}

bool xInputValidation::VerifyInputRangeMinFloatOrBlank(spindle::CallArgs& args) {
  const ElemPtr& field = args.elem(1);
  if (!field || spindle::ValueOf(field).empty()) return true;
  return VerifyInputRangeMinFloat(args);
}

bool xInputValidation::VerifyDecimalPtLimit(spindle::CallArgs& args) {
  const ElemPtr& field = args.elem(1);
  if (!field) return true;
  const Text typed = spindle::ValueOf(field);
  const std::size_t point = typed.find(u'.');
  if (point == Text::npos) return true;
  Text text = WithoutSecondPoint(typed);
  const int places = Bound(field, Loom::kAttrDecimalPlaces);
  if (static_cast<std::int64_t>(text.size() - point - 1) > places) DropLast(text);
  Correct(field, text);
  return true;
}

bool xInputValidation::VerifyPvtPrntPassword(spindle::CallArgs& args) {
  const ElemPtr& field = args.elem(1);
  if (!field) return true;
  Text text = KeepOnly(spindle::ValueOf(field), IsPrintableAscii);
  CutTo(text, LengthLimit(field));
  Correct(field, text);
  return true;
}

bool xInputValidation::VerifyVaultBoxFolder(spindle::CallArgs&) {
  // Any folder name is accepted as typed: the device checks it when the job arrives.
  return true;
}

bool xInputValidation::VerifyVaultBoxPassword(spindle::CallArgs& args) {
  const ElemPtr& field = args.elem(1);
  if (!field) return true;
  Correct(field, KeepOnly(spindle::ValueOf(field), [](char16_t c) {
            return IsAsciiLetter(c) || IsDigit(c) || IsIn(kVaultBoxPunctuation, c);
          }));
  return true;
}

bool xInputValidation::VerifyInvalidDeptCode(spindle::CallArgs& args) {
  const ElemPtr& field = args.elem(1);
  if (!field) return true;
  const std::size_t limit = LengthLimit(field);
  const Text typed = spindle::ValueOf(field);
  if (typed.empty()) return true;
  // The model-independent driver may send the job to any model, so it keeps only what
  // every model takes as a department code: digits. A model's own driver keeps the
  // department code characters of VerifyDeptCode.
  Text text =
      KeepOnly(typed, spindle::IsUniversalDriver(args.doc(0)) ? CharTest(IsDigit)
                                                              : CharTest(IsDeptCodeCharacter));
  CutTo(text, limit);
  Correct(field, text);
  return true;
}

bool xInputValidation::VerifyDeptCode(spindle::CallArgs& args) {
  const ElemPtr& field = args.elem(1);
  if (!field) return true;
  Text text = spindle::ValueOf(field);
  CutTo(text, LengthLimit(field));
  Correct(field, KeepOnly(text, IsDeptCodeCharacter));
  return true;
}

bool xInputValidation::VerifyNickname(spindle::CallArgs& args) {
  const ElemPtr& field = args.elem(1);
  if (!field) return true;
  const Text typed = spindle::ValueOf(field);
  const Text kept = KeepOnly(typed, [](char16_t c) { return !IsIn(kNicknameForbidden, c); });
  if (kept == typed) return true;
  spindle::SetValue(field, kept);
  const DocPtr& doc = args.doc(0);
  const Loom::SmartPtr<Loom::XUL::xWindow> window = spindle::WindowOf(doc);
  const Text message = window ? window->resolveString(kNicknameMessage) : Text(kNicknameMessage);
  Loom::OS::messageBox(Loom::XUL::getXULRootHWND(doc.get()), message, kErrorCaption,
                       kExclamationIcon);
  return true;
}

bool xInputValidation::VerifyTextInput(spindle::CallArgs& args) {
  const ElemPtr& field = args.elem(1);
  if (!field) return true;
  // The string argument lists the characters the field accepts; all others are removed.
  const Text allowed = spindle::Widen(args.str(2));
  Correct(field, KeepOnly(spindle::ValueOf(field), OneOf(allowed)));
  return true;
}

bool xInputValidation::VerifyPageNumbersEntered(spindle::CallArgs& args) {
  const ElemPtr& field = args.elem(1);
  if (!field) return true;
  Correct(field, KeepOnly(spindle::ValueOf(field), OneOf(kPageNumberCharacters)));
  return true;
}

bool xInputValidation::LoadNickname(spindle::CallArgs& args) {
  const DocPtr& doc = args.doc(0);
  const ElemPtr& field = args.elem(1);
  if (!field || !spindle::DeviceFlag(doc, "PDENHANCEMENT", "NickNameInFile")) return true;
  // Without a stored nick name the field keeps what the sheet put there (the user's own
  // or network name), rather than going blank.
  if (const std::optional<Loom::string> nickname =
          spindle::ReadPrinterFile(doc, kNicknameSection, kNicknameKey)) {
    spindle::SetValue(field, spindle::Widen(*nickname));
  }
  return true;
}

bool xInputValidation::SaveNickNameToFile(spindle::CallArgs& args) {
  const DocPtr& doc = args.doc(0);
  const ElemPtr& field = args.elem(1);
  if (!field || !spindle::DeviceFlag(doc, "PDENHANCEMENT", "NickNameInFile")) return true;
  const Loom::string nickname = spindle::Narrow(spindle::ValueOf(field));
  spindle::WritePrinterFile(doc, kNicknameSection, kNicknameKey, nickname);
  // From the sheet's OK the nick name also becomes the user's own ("UserNickName"), which
  // the next sheet offers before any file is read.
  const ElemPtr vars = spindle::FindById(doc, u"vars");
  const Loom::SmartPtr<Loom::XUL::xWindow> window = spindle::WindowOf(doc);
  if (window && vars && spindle::IsTrue(vars->getAttribute(u"onDialogAcceptRun"))) {
    window->getSettings()["UserNickName"] = nickname;
  }
  return true;
}
