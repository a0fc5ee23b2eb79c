// The host's numeric codes: argument kinds, element types and attribute codes.
//
// These numbers are the host's, fixed by its binary interface; they are named here once
// and every other file uses the names. The reference host maps element types to XUL tag
// names and attribute codes to attribute names in one table (refhost/xul_codes.cpp).
#pragma once

#include <cstdint>

namespace Loom {

// Kinds of xarg_entry records.
enum ArgKind : std::uint32_t {
  kArgInteger = 1,   // signed 32-bit integer in the low half of the value field
  kArgString = 3,    // const char* to NUL-terminated UTF-8
  kArgFloat = 5,     // address of a 32-bit float
  kArgDouble = 6,    // the double itself
  kArgDocument = 7,  // Loom::XUL::xXULDoc*
  kArgElement = 8,   // Loom::XUL::xXULElem*
};

// Element type codes (xXULElem::getType, xXULDoc::createElement).
enum ElementType : int {
  kElemUnknown = 0,
  kElemWindow = 1,
  kElemDialog = 2,
  kElemBox = 3,  // vbox, hbox, box, groupbox and the like: layout only
  kElemLabel = 4,
  kElemTextbox = 5,
  kElemButton = 6,
  kElemCheckbox = 7,
  kElemRadioGroup = 8,
  kElemRadio = 9,
  kElemImage = 10,
  kElemTabBox = 11,
  kElemPropertySheet = 12,
  kElemPropertyPage = 13,
  kElemSeparator = 14,
  kElemSpacer = 15,
  kElemOverlay = 16,
  kElemScript = 17,
  kElemArgs = 18,  // a document's script-argument element, named "args"
  kElemMenuItem = 46,
  kElemMenuList = 47,
  kElemMenuPopup = 48,  // the item list that holds a menu list's items
};

// Attribute codes (xXULElem::getAttr / setAttr). The same attribute is reachable by
// name through getAttribute / setAttribute.
enum AttrCode : int {
  kAttrChecked = 39,         // "checked": "true" / "false"
  kAttrDecimalPlaces = 67,   // "decimalplaces": decimal text
  kAttrDisabled = 77,        // "disabled": "true" / "false"
  kAttrHidden = 111,         // "hidden": "true" when hidden
  kAttrId = 120,             // "id"
  kAttrLabel = 140,          // "label": an item's visible text
  kAttrMax = 146,            // "max": decimal text
  kAttrMin = 155,            // "min": decimal text
  kAttrCommand = 181,        // "oncommand": a list's command script
  kAttrSelected = 256,       // "selected": an item's selected flag, "true" / "false"
  kAttrSelectedIndex = 257,  // "selectedIndex": a list's selected position, decimal
  kAttrValue = 299,          // "value"
};

// Search mode of xXULDoc::findElement / takeFoundElement: the whole document, with
// "args" resolving to the script-argument element. The only mode the library uses.
inline constexpr int kSearchWholeDocument = 1;

// Product code keywords (values of PrintProperty::e_PTKW).
inline constexpr int kProductCodeKestrel = 594;
inline constexpr int kProductCodeUniversal = 597;
inline constexpr int kProductCodeUnknown = 1977;
inline constexpr int kProductCount = 11;  // get_productCodeKW(0 .. 10)

}  // namespace Loom
