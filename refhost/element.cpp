#include "refhost/element.h"

#include <algorithm>
#include <utility>

#include "refhost/document.h"
#include "refhost/xul_codes.h"

namespace refhost {
namespace {

constexpr std::u16string_view kTrue = u"true";

std::u16string_view View(const Loom::wstring& text) { return text; }

std::u16string_view ValueOf(const Element& element) {
  const std::u16string* value = element.findAttribute(kAttrNameValue);
  return value != nullptr ? std::u16string_view(*value) : std::u16string_view();
}

bool IsSelected(const Element& item) {
  const std::u16string* selected = item.findAttribute(kAttrNameSelected);
  return selected != nullptr && *selected == kTrue;
}

int SelectedPosition(const std::vector<Element*>& items) {
  auto it = std::find_if(items.begin(), items.end(), [](Element* e) { return IsSelected(*e); });
  return it == items.end() ? -1 : static_cast<int>(it - items.begin());
}

int PositionOfValue(const std::vector<Element*>& items, std::u16string_view value) {
  auto it = std::find_if(items.begin(), items.end(),
                         [value](Element* item) { return ValueOf(*item) == value; });
  return it == items.end() ? -1 : static_cast<int>(it - items.begin());
}

Loom::wstring SelectedValue(const std::vector<Element*>& items) {
  const int position = SelectedPosition(items);
  return position < 0 ? Loom::wstring() : Loom::wstring(ValueOf(*items[position]));
}

std::u16string DecimalText(int number) {
  const std::string digits = std::to_string(number);
  return std::u16string(digits.begin(), digits.end());
}

// Selecting an item of a menu list or radio group: only the chosen item carries
// selected="true" (XUL drops the attribute from the others), and the list's value and
// selectedIndex follow it.
void SelectItem(Element& list, const std::vector<Element*>& items, int chosen) {
  for (int i = 0; i < static_cast<int>(items.size()); ++i) {
    if (i == chosen) {
      items[i]->setAttributeValue(kAttrNameSelected, kTrue);
    } else {
      items[i]->eraseAttribute(kAttrNameSelected);
    }
  }
  list.setAttributeValue(kAttrNameValue, ValueOf(*items[chosen]));
  list.setAttributeValue(kAttrNameSelectedIndex, DecimalText(chosen));
}

}  // namespace

const ElementTag& DocumentAnchor::tag(std::u16string_view name) {
  auto it = tags_.find(name);
  if (it == tags_.end())
    it = tags_.insert(ElementTag{std::u16string(name), ElementTypeOfTag(name)}).first;
  return *it;
}

const std::u16string& DocumentAnchor::name(std::u16string_view attributeName) {
  auto it = names_.find(attributeName);
  if (it == names_.end()) it = names_.emplace(attributeName).first;
  return *it;
}

Element::Element(std::u16string_view tag, DocumentAnchor& anchor)
    : tag_(&anchor.tag(tag)), anchor_(&anchor) {}

Element::~Element() {
  // Children the library still holds live on, detached.
  for (const HostRef<Element>& child : children_.items()) child->parent_ = nullptr;
  if (keepsLoadedAttributes_) anchor_->loadedAttributes.erase(this);
}

int Element::getType() const { return tag_->type; }

Loom::SmartPtr<Loom::XUL::xXULDoc> Element::getOwnerDocument() const {
  return Loom::SmartPtr<Loom::XUL::xXULDoc>(document());
}

bool Element::getChildrenOfType(int type, Loom::XUL::ElemList& items) const {
  items.clear();
  const Element* holder = getType() == Loom::kElemMenuList ? itemList() : this;
  // A menu list without its item list has no items to give: the one failure.
  if (holder == nullptr) return false;
  for (const HostRef<Element>& child : holder->children_.items()) {
    if (child->getType() == type) items.emplace_back(child.get());
  }
  return true;
}

int Element::getNumChildren() const { return static_cast<int>(children_.size()); }

Loom::SmartPtr<Loom::XUL::xXULElem> Element::getChildAt(int index) const {
  if (index < 0 || static_cast<std::size_t>(index) >= children_.size()) return nullptr;
  return Loom::SmartPtr<Loom::XUL::xXULElem>(children_[static_cast<std::size_t>(index)]);
}

bool Element::removeChild(Loom::XUL::xXULElem* child) {
  auto* element = dynamic_cast<Element*>(child);
  if (element == nullptr || element->parent_ != this) return false;
  detach(element);
  return true;
}

bool Element::appendChild(Loom::XUL::xXULElem* child) {
  return append(dynamic_cast<Element*>(child));
}

Loom::wstring Element::getAttr(int code) const {
  const std::u16string_view name = AttributeNameOfCode(code);
  if (name.empty()) return {};
  const std::u16string* value = findAttribute(name);
  return value != nullptr ? Loom::wstring(*value) : Loom::wstring();
}

void Element::setAttr(int code, const Loom::wstring& value) {
  const std::u16string_view name = AttributeNameOfCode(code);
  if (!name.empty()) setAttributeValue(name, View(value));
}

Loom::wstring Element::getAttribute(const Loom::wstring& name) const {
  const std::u16string* value = findAttribute(View(name));
  return value != nullptr ? Loom::wstring(*value) : Loom::wstring();
}

void Element::setAttribute(const Loom::wstring& name, const Loom::wstring& value) {
  setAttributeValue(View(name), View(value));
}

bool Element::hasAttribute(const Loom::wstring& name) const {
  return findAttribute(View(name)) != nullptr;
}

void Element::removeAttribute(const Loom::wstring& name) { eraseAttribute(View(name)); }

Loom::wstring Element::getValfromMenulist() const { return SelectedValue(menuItems()); }

bool Element::selMenulistWithVal(const Loom::wstring& value) {
  const std::vector<Element*> items = menuItems();
  const int position = PositionOfValue(items, View(value));
  if (position < 0) return false;
  SelectItem(*this, items, position);
  return true;
}

bool Element::hideMenuItemByVal(const Loom::wstring& value) {
  bool found = false;
  for (Element* item : menuItems()) {
    if (ValueOf(*item) != View(value)) continue;
    item->setAttributeValue(kAttrNameHidden, kTrue);
    found = true;
  }
  return found;
}

int Element::getSelectedIndex() const { return SelectedPosition(menuItems()); }

bool Element::setSelectedIndex(int index) {
  const std::vector<Element*> items = menuItems();
  if (index < 0 || static_cast<std::size_t>(index) >= items.size()) return false;
  SelectItem(*this, items, index);
  return true;
}

Loom::wstring Element::getValFromRadioGroup() const { return SelectedValue(radios()); }

bool Element::setRadioGroupWithVal(const Loom::wstring& value) {
  const std::vector<Element*> items = radios();
  const int position = PositionOfValue(items, View(value));
  if (position < 0) return false;
  SelectItem(*this, items, position);
  return true;
}

int Element::getRadioGroupItemWithValue(const Loom::wstring& value) const {
  return PositionOfValue(radios(), View(value));
}

const std::u16string* Element::findAttribute(std::u16string_view name) const {
  auto it = std::find_if(attributes_.begin(), attributes_.end(),
                         [name](const Attribute& a) { return a.name() == name; });
  return it == attributes_.end() ? nullptr : &it->value_;
}

std::vector<Attribute>::iterator Element::attributeNamed(std::u16string_view name) {
  return std::find_if(attributes_.begin(), attributes_.end(),
                      [name](const Attribute& a) { return a.name() == name; });
}

void Element::setAttributeValue(std::u16string_view name, std::u16string_view value) {
  auto it = attributeNamed(name);
  if (it != attributes_.end() && it->value_ == value) return;
  rememberLoadedAttributes();
  std::optional<std::u16string> before;
  const std::u16string* after = nullptr;
  if (it == attributes_.end()) {
    after = &attributes_.emplace_back(anchor_->name(name), std::u16string(value)).value_;
  } else {
    before = std::exchange(it->value_, std::u16string(value));
    after = &it->value_;
  }
  if (Document* doc = document())
    doc->attributeChanged(*this, name, before ? &*before : nullptr, after);
}

void Element::eraseAttribute(std::u16string_view name) {
  auto it = attributeNamed(name);
  if (it == attributes_.end()) return;
  rememberLoadedAttributes();
  const Attribute removed = std::move(*it);
  attributes_.erase(it);
  if (Document* doc = document())
    doc->attributeChanged(*this, removed.name(), &removed.value_, nullptr);
}

const Element* Element::topmost() const {
  const Element* top = this;
  while (top->parent_ != nullptr) top = top->parent_;
  return top;
}

void Element::loadAttribute(std::u16string_view name, std::u16string value) {
  auto it = attributeNamed(name);
  if (it == attributes_.end()) {
    attributes_.emplace_back(anchor_->name(name), std::move(value));
  } else {
    it->value_ = std::move(value);
  }
}

void Element::rememberLoadedAttributes() {
  if (!loaded_ || keepsLoadedAttributes_) return;
  anchor_->loadedAttributes.emplace(this, attributes_);
  keepsLoadedAttributes_ = true;
}

bool Element::append(Element* child) {
  if (child == nullptr || child->fixed_ || child->anchor_.get() != anchor_.get() ||
      child->isInclusiveAncestorOf(this)) {
    return false;
  }
  HostRef<Element> held =
      child->parent_ != nullptr ? child->parent_->detach(child) : HostRef<Element>(child);
  children_.append(std::move(held));
  child->parent_ = this;
  if (Document* doc = document()) doc->elementAdded(*child);
  return true;
}

void Element::restoreDefaults() {
  // Unchanged since the page was loaded (or not loaded with it): nothing to put back.
  if (!keepsLoadedAttributes_) return;
  // Taken out of the anchor first: the changes below are reported, and whatever hears of
  // them may change other elements of the page and so the anchor's map.
  auto loaded = anchor_->loadedAttributes.extract(this);
  const std::vector<Attribute>& defaults = loaded.mapped();
  std::vector<std::u16string_view> added;
  for (const Attribute& attribute : attributes_) {
    const bool isDefault = std::any_of(defaults.begin(), defaults.end(), [&](const Attribute& d) {
      return d.name() == attribute.name();
    });
    if (!isDefault) added.push_back(attribute.name());
  }
  for (const std::u16string_view name : added) eraseAttribute(name);
  for (const Attribute& attribute : defaults)
    setAttributeValue(attribute.name(), attribute.value());
  // Same attributes and values by now; this also puts back their order, so the page saves
  // as it was loaded. The defaults are the attributes again until they next change.
  attributes_ = std::move(loaded.mapped());
  keepsLoadedAttributes_ = false;
}

void Element::removeChildrenOfType(int type) {
  Document* doc = document();
  const bool wasInTree = doc != nullptr && doc->contains(*this);
  const std::vector<HostRef<Element>> taken =
      children_.takeAll([type](const Element* child) { return child->getType() == type; });
  for (const HostRef<Element>& child : taken) detached(*child, wasInTree);
}

std::vector<Element*> Element::menuItems() const {
  std::vector<Element*> items;
  const Element* holder = getType() == Loom::kElemMenuList ? itemList() : this;
  if (holder == nullptr) return items;
  for (const HostRef<Element>& child : holder->children_.items()) {
    if (child->getType() == Loom::kElemMenuItem) items.push_back(child.get());
  }
  return items;
}

std::vector<Element*> Element::radios() const {
  std::vector<Element*> radios;
  collectRadios(radios);
  return radios;
}

Element* Element::itemList() const {
  for (const HostRef<Element>& child : children_.items()) {
    if (child->getType() == Loom::kElemMenuPopup) return child.get();
  }
  return nullptr;
}

HostRef<Element> Element::detach(Element* child) {
  Document* doc = document();
  const bool wasInTree = doc != nullptr && doc->contains(*this);
  HostRef<Element> held = children_.take(children_.position(child));
  detached(*child, wasInTree);
  return held;
}

void Element::detached(Element& child, bool wasInTree) {
  child.parent_ = nullptr;
  if (wasInTree) document()->elementRemoved(child, *this);
}

bool Element::isInclusiveAncestorOf(const Element* element) const {
  for (const Element* e = element; e != nullptr; e = e->parent_) {
    if (e == this) return true;
  }
  return false;
}

void Element::collectRadios(std::vector<Element*>& radios) const {
  for (const HostRef<Element>& child : children_.items()) {
    if (child->getType() == Loom::kElemRadio) {
      radios.push_back(child.get());
    } else if (child->getType() != Loom::kElemRadioGroup) {
      child->collectRadios(radios);
    }
  }
}

}  // namespace refhost
