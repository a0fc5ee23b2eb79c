#include "job/twin_colour.h"

#include "core/elements.h"

using spindle::Count;

const spindle::Method<xTwinColour> xTwinColour::kMethods[] = {
    {{"setTwinColor", Count::kExactly, 1, {Loom::kArgDocument}}, &xTwinColour::SetTwinColor},
    {{"loadTwinColor", Count::kExactly, 1, {Loom::kArgDocument}}, &xTwinColour::LoadTwinColor},
    {{"getTwinColor", Count::kExactly, 1, {Loom::kArgDocument}}, &xTwinColour::GetTwinColor},
};

bool xTwinColour::call(const char* method, int argc, xarg_entry* args, xarg_entry*) {
  return spindle::Dispatch<xTwinColour>(*this, kMethods, true, method, argc, args);
}

namespace {

constexpr char16_t kTwinColourList[] = u"cmb_TwnColourList";
constexpr char16_t kColourRenderMode[] = u"ePTKWPageOutputColor_Color_RenderMode";
constexpr char16_t kTwinRenderMode[] = u"ePTKWPageOutputColor_TwinColor_RenderMode";
constexpr char16_t kDefaultTwinMode[] = u"TwinColor_2KR";

// Copies the last twin colour mode (or the default) into the colour render mode and
// returns it; "" when either field is missing, and then nothing is written.
Loom::wstring ApplyTwinMode(const spindle::DocPtr& doc) {
  const spindle::ElemPtr twin = spindle::FindById(doc, kTwinRenderMode);
  const spindle::ElemPtr colour = spindle::FindById(doc, kColourRenderMode);
  if (!twin || !colour) return Loom::wstring();
  Loom::wstring mode = spindle::ValueOf(twin);
  if (mode.empty()) mode = kDefaultTwinMode;
  spindle::SetValue(colour, mode);
  return mode;
}

}  // namespace

bool xTwinColour::SetTwinColor(spindle::CallArgs& args) {
  const spindle::DocPtr& doc = args.doc(0);
  const spindle::ElemPtr list = spindle::FindById(doc, kTwinColourList);
  if (!list) return true;
  const Loom::wstring mode = list->getValfromMenulist();
  for (const char16_t* field : {kColourRenderMode, kTwinRenderMode}) {
    if (const spindle::ElemPtr target = spindle::FindById(doc, field)) {
      spindle::SetValue(target, mode);
    }
  }
  return true;
}

bool xTwinColour::LoadTwinColor(spindle::CallArgs& args) {
  const Loom::wstring mode = ApplyTwinMode(args.doc(0));
  if (mode.empty()) return true;
  if (const spindle::ElemPtr list = spindle::FindById(args.doc(0), kTwinColourList)) {
    list->selMenulistWithVal(mode);
  }
  return true;
}

bool xTwinColour::GetTwinColor(spindle::CallArgs& args) {
  ApplyTwinMode(args.doc(0));
  return true;
}
