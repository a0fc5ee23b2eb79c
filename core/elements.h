// Finding elements and reading and writing them: the helpers every object uses.
//
// Lookups that find nothing return a null pointer, and a method's quiet no-op is one
// early return on it. Ids and attribute names here are wide literals, never converted.
#pragma once

#include <optional>
#include <string_view>

#include "core/dispatch.h"
#include "host/loom_base.h"
#include "host/xul.h"

namespace spindle {

// The element with `id`, by the document's indexed lookup; null for a null document.
ElemPtr FindById(const DocPtr& doc, std::u16string_view id);

// The element with `id` by the document's whole-document search, which also resolves
// "args"; null for a null document.
ElemPtr SearchElement(const DocPtr& doc, std::u16string_view id);

// Sets `name` = `value` on the document's "vars" element, when there is one.
void SetVar(const DocPtr& doc, std::u16string_view name, std::u16string_view value);

// An element's value attribute (299), and setting it.
Loom::wstring ValueOf(const ElemPtr& elem);
void SetValue(const ElemPtr& elem, std::u16string_view value);

// Whether a check box's checked attribute (39) is exactly "true".
bool IsChecked(const ElemPtr& elem);

// The element's items of `type` (for a menu list, those of its item list); empty when
// the host cannot collect them.
Loom::XUL::ElemList ChildrenOfType(const ElemPtr& elem, int type);

// The window of the document (its settings trees, plug-ins, serialiser); null for a null
// document.
Loom::SmartPtr<Loom::XUL::xWindow> WindowOf(const DocPtr& doc);

// The value of the device setting branch/key of the document's window; nothing when the
// document, its window, the branch or the key is missing. Never creates a node.
std::optional<Loom::string> DeviceSetting(const DocPtr& doc, std::string_view branch,
                                          std::string_view key);
// Whether that device setting is exactly "true".
bool DeviceFlag(const DocPtr& doc, std::string_view branch, std::string_view key);
// Whether the device is driven by the model-independent driver: "PRODUCTCODE"/"ModelName"
// is exactly "Universal".
bool IsUniversalDriver(const DocPtr& doc);

}  // namespace spindle
