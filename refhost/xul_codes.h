// The one table between the host's numeric codes and XUL names.
//
// Element type codes (host/codes.h ElementType) map to XUL tag names and attribute codes
// (AttrCode) to attribute names. Documents use it to type the elements they load and to
// name the elements they create; elements use it so that an attribute reached by code and
// the same attribute reached by name are one attribute. The rows are also the tables of
// refhost/README.md.
#pragma once

#include <span>
#include <string_view>

#include "host/codes.h"

namespace refhost {

// The attribute names the host itself works with; the table below uses the same constants.
inline constexpr std::u16string_view kAttrNameChecked = u"checked";
inline constexpr std::u16string_view kAttrNameHidden = u"hidden";
inline constexpr std::u16string_view kAttrNameId = u"id";
inline constexpr std::u16string_view kAttrNameLabel = u"label";
inline constexpr std::u16string_view kAttrNameSelected = u"selected";
inline constexpr std::u16string_view kAttrNameSelectedIndex = u"selectedIndex";
inline constexpr std::u16string_view kAttrNameValue = u"value";

struct ElementTagRow {
  Loom::ElementType type;
  std::u16string_view tag;
};

struct AttributeNameRow {
  Loom::AttrCode code;
  std::u16string_view name;
};

// Every tag the host knows, in table order. A type may have several tags; its first row
// names the elements createElement makes.
std::span<const ElementTagRow> ElementTagTable();
// Every attribute code the host knows, in table order.
std::span<const AttributeNameRow> AttributeNameTable();

// The type of the tag `tag` (exact, case-sensitive); kElemUnknown for a tag not in the
// table.
Loom::ElementType ElementTypeOfTag(std::u16string_view tag);
// The tag createElement uses for `type`; "" for a type without one.
std::u16string_view TagOfElementType(int type);
// The attribute name behind `code`; "" for a code the host does not know.
std::u16string_view AttributeNameOfCode(int code);

}  // namespace refhost
