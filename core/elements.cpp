#include "core/elements.h"

#include "core/spindleui.h"
#include "core/text.h"
#include "host/codes.h"
#include "host/settings.h"

namespace spindle {

ElemPtr FindById(const DocPtr& doc, std::u16string_view id) {
  if (!doc) return nullptr;
  return doc->getElementById(Loom::wstring(id));
}

ElemPtr SearchElement(const DocPtr& doc, std::u16string_view id) {
  return getXULElembyID(Loom::wstring(id), doc);
}

void SetVar(const DocPtr& doc, std::u16string_view name, std::u16string_view value) {
  if (ElemPtr vars = FindById(doc, u"vars")) {
    vars->setAttribute(Loom::wstring(name), Loom::wstring(value));
  }
}

Loom::wstring ValueOf(const ElemPtr& elem) { return elem->getAttr(Loom::kAttrValue); }

void SetValue(const ElemPtr& elem, std::u16string_view value) {
  elem->setAttr(Loom::kAttrValue, Loom::wstring(value));
}

bool IsChecked(const ElemPtr& elem) { return IsTrue(elem->getAttr(Loom::kAttrChecked)); }

Loom::XUL::ElemList ChildrenOfType(const ElemPtr& elem, int type) {
  Loom::XUL::ElemList items;
  if (!elem->getChildrenOfType(type, items)) items.clear();
  return items;
}

Loom::SmartPtr<Loom::XUL::xWindow> WindowOf(const DocPtr& doc) {
  if (!doc) return nullptr;
  return doc->getXWindow();
}

std::optional<Loom::string> DeviceSetting(const DocPtr& doc, std::string_view branch,
                                          std::string_view key) {
  const Loom::SmartPtr<Loom::XUL::xWindow> window = WindowOf(doc);
  if (!window) return std::nullopt;
  Loom::Services::PersistentItem* node = window->getDevSettings().find(Loom::string(branch));
  if (node != nullptr) node = node->find(Loom::string(key));
  if (node == nullptr) return std::nullopt;
  return static_cast<Loom::string>(*node);
}

bool DeviceFlag(const DocPtr& doc, std::string_view branch, std::string_view key) {
  const std::optional<Loom::string> value = DeviceSetting(doc, branch, key);
  return value && IsTrue(*value);
}

bool IsUniversalDriver(const DocPtr& doc) {
  const std::optional<Loom::string> model = DeviceSetting(doc, "PRODUCTCODE", "ModelName");
  return model && *model == "Universal";
}

}  // namespace spindle

Loom::SmartPtr<Loom::XUL::xXULElem> getXULElembyID(Loom::wstring id,
                                                   Loom::SmartPtr<Loom::XUL::xXULDoc> doc) {
  if (!doc) return nullptr;
  doc->findElement(id, Loom::kSearchWholeDocument);
  return doc->takeFoundElement(Loom::kSearchWholeDocument);
}

void copyMenulistItems(Loom::wstring targetId, Loom::wstring sourceId,
                       Loom::SmartPtr<Loom::XUL::xXULDoc> targetDoc,
                       Loom::SmartPtr<Loom::XUL::xXULDoc> sourceDoc) {
  using spindle::ElemPtr;
  if (!targetDoc || !sourceDoc) return;

  const ElemPtr target = spindle::SearchElement(targetDoc, targetId);
  if (!target || target->getType() != Loom::kElemMenuPopup) return;
  Loom::XUL::ElemList old = spindle::ChildrenOfType(target, Loom::kElemMenuItem);
  while (!old.empty()) {
    target->removeChild(old.back().get());
    old.pop_back();
  }

  const ElemPtr source = spindle::SearchElement(sourceDoc, sourceId);
  if (!source || source->getType() != Loom::kElemMenuPopup) return;
  const Loom::XUL::ElemList items = spindle::ChildrenOfType(source, Loom::kElemMenuItem);
  // By design the copy starts at the source's second item; its first is never copied.
  for (std::size_t i = 1; i < items.size(); ++i) {
    const ElemPtr copy = targetDoc->createElement(Loom::kElemMenuItem);
    copy->setAttr(Loom::kAttrValue, items[i]->getAttr(Loom::kAttrValue));
    const Loom::wstring label = items[i]->getAttr(Loom::kAttrLabel);
    if (!label.empty()) copy->setAttr(Loom::kAttrLabel, label);
    target->appendChild(copy.get());
  }
}
