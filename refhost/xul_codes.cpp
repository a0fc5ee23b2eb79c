#include "refhost/xul_codes.h"

#include <array>

namespace refhost {
namespace {

// "page" is the root of a sub-page document, shown inside its parent's window, so it
// counts as a window. Layout containers all share kElemBox: the library never tells them
// apart.
constexpr std::array kElementTags = {
    ElementTagRow{Loom::kElemWindow, u"window"},
    ElementTagRow{Loom::kElemWindow, u"page"},
    ElementTagRow{Loom::kElemDialog, u"dialog"},
    ElementTagRow{Loom::kElemBox, u"box"},
    ElementTagRow{Loom::kElemBox, u"vbox"},
    ElementTagRow{Loom::kElemBox, u"hbox"},
    ElementTagRow{Loom::kElemBox, u"groupbox"},
    ElementTagRow{Loom::kElemBox, u"grid"},
    ElementTagRow{Loom::kElemBox, u"columns"},
    ElementTagRow{Loom::kElemBox, u"column"},
    ElementTagRow{Loom::kElemBox, u"rows"},
    ElementTagRow{Loom::kElemBox, u"row"},
    ElementTagRow{Loom::kElemBox, u"stack"},
    ElementTagRow{Loom::kElemBox, u"deck"},
    ElementTagRow{Loom::kElemBox, u"tabs"},
    ElementTagRow{Loom::kElemBox, u"tab"},
    ElementTagRow{Loom::kElemBox, u"tabpanels"},
    ElementTagRow{Loom::kElemBox, u"tabpanel"},
    ElementTagRow{Loom::kElemLabel, u"label"},
    ElementTagRow{Loom::kElemLabel, u"description"},
    ElementTagRow{Loom::kElemTextbox, u"textbox"},
    ElementTagRow{Loom::kElemButton, u"button"},
    ElementTagRow{Loom::kElemCheckbox, u"checkbox"},
    ElementTagRow{Loom::kElemRadioGroup, u"radiogroup"},
    ElementTagRow{Loom::kElemRadio, u"radio"},
    ElementTagRow{Loom::kElemImage, u"image"},
    ElementTagRow{Loom::kElemTabBox, u"tabbox"},
    ElementTagRow{Loom::kElemPropertySheet, u"propertysheet"},
    ElementTagRow{Loom::kElemPropertyPage, u"propertypage"},
    ElementTagRow{Loom::kElemSeparator, u"separator"},
    ElementTagRow{Loom::kElemSpacer, u"spacer"},
    ElementTagRow{Loom::kElemOverlay, u"overlay"},
    ElementTagRow{Loom::kElemScript, u"script"},
    ElementTagRow{Loom::kElemArgs, u"args"},
    ElementTagRow{Loom::kElemMenuItem, u"menuitem"},
    ElementTagRow{Loom::kElemMenuList, u"menulist"},
    ElementTagRow{Loom::kElemMenuPopup, u"menupopup"},
};

constexpr std::array kAttributeNames = {
    AttributeNameRow{Loom::kAttrChecked, kAttrNameChecked},
    AttributeNameRow{Loom::kAttrDecimalPlaces, u"decimalplaces"},
    AttributeNameRow{Loom::kAttrDisabled, u"disabled"},
    AttributeNameRow{Loom::kAttrHidden, kAttrNameHidden},
    AttributeNameRow{Loom::kAttrId, kAttrNameId},
    AttributeNameRow{Loom::kAttrLabel, kAttrNameLabel},
    AttributeNameRow{Loom::kAttrMax, u"max"},
    AttributeNameRow{Loom::kAttrMin, u"min"},
    AttributeNameRow{Loom::kAttrCommand, u"oncommand"},
    AttributeNameRow{Loom::kAttrSelected, kAttrNameSelected},
    AttributeNameRow{Loom::kAttrSelectedIndex, kAttrNameSelectedIndex},
    AttributeNameRow{Loom::kAttrValue, kAttrNameValue},
};

}  // namespace

std::span<const ElementTagRow> ElementTagTable() { return kElementTags; }
std::span<const AttributeNameRow> AttributeNameTable() { return kAttributeNames; }

Loom::ElementType ElementTypeOfTag(std::u16string_view tag) {
  for (const ElementTagRow& row : kElementTags) {
    if (row.tag == tag) return row.type;
  }
  return Loom::kElemUnknown;
}

std::u16string_view TagOfElementType(int type) {
  for (const ElementTagRow& row : kElementTags) {
    if (row.type == type) return row.tag;
  }
  return {};
}

std::u16string_view AttributeNameOfCode(int code) {
  for (const AttributeNameRow& row : kAttributeNames) {
    if (row.code == code) return row.name;
  }
  return {};
}

}  // namespace refhost
