#include "job/text_summary.h"

#include "core/elements.h"
#include "core/text.h"
#include "host/codes.h"

using spindle::Count;

const spindle::Method<xTextSummary> xTextSummary::kMethods[] = {
    {{"selectedItem",
      Count::kExactly,
      3,
      {Loom::kArgDocument, Loom::kArgElement, Loom::kArgString}},
     &xTextSummary::SelectedItem},
    {{"stripSpecialText", Count::kExactly, 2, {Loom::kArgDocument, Loom::kArgString}},
     &xTextSummary::StripSpecialText},
};

bool xTextSummary::call(const char* method, int argc, xarg_entry* args, xarg_entry*) {
  return spindle::Dispatch<xTextSummary>(*this, kMethods, false, method, argc, args);
}

namespace {

constexpr char16_t kSummaryOutput[] = u"setting_out";

void WriteSummary(const spindle::DocPtr& doc, std::u16string_view text) {
  if (const spindle::ElemPtr output = spindle::FindById(doc, kSummaryOutput)) {
    spindle::SetValue(output, text);
  }
}

}  // namespace

namespace spindle::summary {

Loom::wstring WithoutShortKeyMarkers(std::u16string_view text) {
  // Every occurrence goes: a label may carry the marker more than once.
  constexpr std::u16string_view kMarker = u"$short_key;";
  Loom::wstring result;
  for (std::size_t at = text.find(kMarker); at != std::u16string_view::npos;
       at = text.find(kMarker)) {
    result.append(text.substr(0, at));
    text.remove_prefix(at + kMarker.size());
  }
  result.append(text);
  return result;
}

}  // namespace spindle::summary

bool xTextSummary::SelectedItem(spindle::CallArgs& args) {
  const spindle::ElemPtr& list = args.elem(1);
  if (!list || list->getType() != Loom::kElemMenuList) return false;
  const Loom::XUL::ElemList items = spindle::ChildrenOfType(list, Loom::kElemMenuItem);
  const int selected = list->getSelectedIndex();
  Loom::wstring text;
  if (selected >= 0 && static_cast<std::size_t>(selected) < items.size()) {
    text = items[selected]->getAttribute(spindle::Widen(args.str(2)));
  }
  WriteSummary(args.doc(0), text);
  return true;
}

bool xTextSummary::StripSpecialText(spindle::CallArgs& args) {
  WriteSummary(args.doc(0), spindle::summary::WithoutShortKeyMarkers(spindle::Widen(args.str(1))));
  return true;
}
