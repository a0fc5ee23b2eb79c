#include "settings/profile_validator.h"

#include <algorithm>
#include <iterator>
#include <span>
#include <string_view>

namespace {

using Loom::Dom::AttributeMap;
using Loom::Dom::ChildVector;
using Loom::Dom::Node;

constexpr char16_t kValue[] = u"value";
constexpr char16_t kId[] = u"id";
constexpr std::u16string_view kTemplateTab = u"pro_tab_template";

// Fields whose value is blanked in every stored copy.
constexpr std::u16string_view kAlwaysBlanked[] = {u"ePTKWJobAuthentication_NickName"};

// Fields whose value is blanked only in strict mode, in the order they are tested.
constexpr std::u16string_view kStrictBlanked[] = {
    u"ePTKWJobAuthentication_DepartmentCode",
    u"ePTKWJobAuthentication_DepartmentCodeEx",
    u"tbx_DptCode",
    u"ePTKWJobPrintType_Schedule_True_Date",
    u"ePTKWJobPrintType_Schedule_True_ScheduleTime",
    u"ePTKWJobPrintType_Private_True_PrivatePassword",
    u"ePTKWJobPrintType_Private_True_PrivatePasswordEx",
    u"ePTKWJobPrintType_Destination_Box_BoxName",
    u"ePTKWJobPrintType_Destination_Box_BoxNumber",
    u"ePTKWJobPrintType_Destination_Box_BoxFolder",
    u"ePTKWJobPrintType_Destination_Box_BoxPassword",
    u"ePTKWJobPrintType_Destination_Box_BoxPasswordEx",
    u"ePTKWJobOutputQualityType_Advanced_DestinationProfile",
};

// Attributes every stored node loses, in the order they are removed: tab order,
// namespace, then the event handlers.
constexpr std::u16string_view kLiveOnlyAttributes[] = {
    u"tabindex",        u"xmlns",           u"onbeforeaccept",   u"onbookmarkgroup",
    u"onchange",        u"onclick",         u"onclosetab",       u"oncommand",
    u"oncommandupdate", u"ondialogaccept",  u"ondialogcancel",   u"ondialogclosure",
    u"ondialogextra1",  u"ondialogextra2",  u"ondialoghelp",     u"ondragdrop",
    u"onerror",         u"onerrorcommand",  u"onextra1",         u"onextra2",
    u"onfocus",         u"oninput",         u"onload",           u"onnewtab",
    u"onpageadvanced",  u"onpagehide",      u"onpagerewound",    u"onpageshow",
    u"onpaneload",      u"onpopuphidden",   u"onpopuphiding",    u"onpopupshowing",
    u"onpopupshown",    u"onsearchcomplete", u"onselect",        u"ontextcommand",
    u"ontextentered",   u"ontextrevert",    u"ontextreverted",   u"onwizardback",
    u"onwizardcancel",  u"onwizardfinish",  u"onwizardnext",
};

// Elements handled by their name: the attribute each loses, or (none) the whole element.
struct NamedElement {
  std::u16string_view name;
  std::u16string_view dropped[2];
  bool removed;
};
constexpr NamedElement kNamedElements[] = {
    {u"propertypage", {u"selected"}, false},
    {u"propertysheet", {u"value", u"title"}, false},
    {u"overlay", {u"overlaypath"}, false},
    {u"separator", {}, true},
    {u"spacer", {}, true},
};

bool Listed(std::u16string_view id, std::span<const std::u16string_view> list) {
  return std::find(list.begin(), list.end(), id) != list.end();
}

void RemoveAll(AttributeMap& attributes, std::span<const std::u16string_view> names) {
  for (std::u16string_view name : names) {
    if (!name.empty()) attributes.remove(Loom::wstring(name));
  }
}

}  // namespace

void ProfileValidator::validateChild(ChildVector& children, std::size_t index) const {
  Node* child = children[index];
  if (child == nullptr) return;
  const std::u16string_view name = child->getName();
  const auto named = std::find_if(std::begin(kNamedElements), std::end(kNamedElements),
                                  [name](const NamedElement& row) { return row.name == name; });
  if (named != std::end(kNamedElements)) {
    if (named->removed) {
      children.remove(index);
    } else {
      RemoveAll(child->attributes(), named->dropped);
    }
    return;
  }
  AttributeMap& attributes = child->attributes();
  if (!attributes.contains(kId)) return;
  const Loom::wstring id = attributes[kId];
  if (Listed(id, kAlwaysBlanked) || (strict_ && Listed(id, kStrictBlanked))) {
    attributes.remove(kValue);
  }
  if (id == kTemplateTab) children.remove(index);
}

void ProfileValidator::validateTree(Node* node) {
  if (node == nullptr) return;
  ChildVector& children = node->children();
  for (std::size_t index = children.getNumChildren(); index-- > 0;) validateChild(children, index);
  RemoveAll(node->attributes(), kLiveOnlyAttributes);
  BasicDocValidator::validateTree(node);
}
