#include "tools/loomsim/element_ref.h"

#include "tools/loomsim/scenario.h"
#include "tools/loomsim/text_values.h"

namespace loomsim {
namespace {

constexpr std::string_view kIdChars = ":";
// The element that hands results back to scripts.
constexpr char16_t kVarsId[] = u"vars";

}  // namespace

ElementRef ParseElementRef(Cursor& cursor) {
  ElementRef ref;
  if (!cursor.Accept("#")) {
    ref.document = cursor.Name("an element: #id or NAME#id");
    cursor.Expect("#", "'#' and an element id after the document name");
  }
  ref.id = cursor.Name("an element id", kIdChars);
  return ref;
}

std::string ElementRefText(const ElementRef& ref) {
  switch (ref.kind) {
    case ElementRef::Kind::kVars:
      return "vars";
    case ElementRef::Kind::kArgs:
      return "args";
    case ElementRef::Kind::kById:
      break;
  }
  return ref.document + "#" + ref.id;
}

refhost::Document* DocumentOf(const Scenario& scenario, const ElementRef& ref) {
  return scenario.FindDocument(ref.document.empty() ? "document" : ref.document);
}

refhost::Element* ResolveElement(const Scenario& scenario, const ElementRef& ref,
                                 std::string& missing) {
  refhost::Document* document = DocumentOf(scenario, ref);
  if (document == nullptr) {
    missing = "no document " + (ref.document.empty() ? std::string("document") : ref.document);
    return nullptr;
  }
  switch (ref.kind) {
    case ElementRef::Kind::kArgs:
      return &document->argsElement();
    case ElementRef::Kind::kVars:
      if (refhost::Element* vars = document->elementById(kVarsId)) return vars;
      missing = "no element #vars in " + scenario.NameOf(document);
      return nullptr;
    case ElementRef::Kind::kById:
      break;
  }
  refhost::Element* element = document->elementById(*WideText(ref.id));
  if (element == nullptr) missing = "no element #" + ref.id + " in " + scenario.NameOf(document);
  return element;
}

}  // namespace loomsim
