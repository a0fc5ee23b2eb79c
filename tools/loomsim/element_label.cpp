#include "tools/loomsim/element_label.h"

#include "refhost/document.h"
#include "tools/loomsim/scenario.h"
#include "tools/loomsim/text_values.h"

namespace loomsim {
namespace {

constexpr std::u16string_view kId = u"id";

const std::u16string* IdOf(const refhost::Element& element) {
  const std::u16string* id = element.findAttribute(kId);
  return id != nullptr && !id->empty() ? id : nullptr;
}

// "tag[n]": the element's place among its parent's children of the same tag; just "tag"
// when it is the only one.
std::string Step(const refhost::Element& element) {
  const refhost::Element& parent = *element.parent();
  int position = 0;
  int count = 0;
  for (std::size_t i = 0; i < parent.childCount(); ++i) {
    if (parent.childAt(i)->tagName() != element.tagName()) continue;
    ++count;
    if (parent.childAt(i) == &element) position = count;
  }
  const std::string tag = NarrowText(element.tagName());
  return count == 1 ? tag : tag + "[" + std::to_string(position) + "]";
}

}  // namespace

std::string ElementLabel(const Scenario& scenario, const refhost::Element& element) {
  const refhost::Document* document = element.document();
  const std::string name = scenario.NameOf(document);
  if (document != nullptr && &document->argsElement() == &element) return name + " args";
  if (document == nullptr || !document->contains(element)) {
    return name + " <" + NarrowText(element.tagName()) + "> (not in the tree)";
  }
  std::string path;
  const refhost::Element* at = &element;
  for (; at != nullptr; at = at->parent()) {
    if (const std::u16string* id = IdOf(*at)) return name + "#" + NarrowText(*id) + path;
    path = "/" + (at->parent() != nullptr ? Step(*at) : NarrowText(at->tagName())) + path;
  }
  return name + path;
}

std::string StartTag(const refhost::Element& element) {
  std::string tag = "<" + NarrowText(element.tagName());
  for (const refhost::Attribute& attribute : element.attributes()) {
    tag += " " + NarrowText(attribute.name()) + "=" + Quote(attribute.value());
  }
  return tag + ">";
}

}  // namespace loomsim
