// refhost::Element: the live XUL element of the reference host.
//
// An element has a tag name, ordered attributes, ordered children, a parent and an owner
// document. The tree holds its children with the host's structural references, so an
// element removed from its tree lives on while the library holds it and is freed when
// the last reference goes. A detached element has no parent; an element whose document
// has died has no document (getOwnerDocument gives null) and keeps working on its own.
//
// Attribute codes and names reach one attribute (refhost/xul_codes.h). setAttr and
// setAttribute are raw: they change that attribute only. The menu list and radio group
// helpers keep the items' selected flags, the list's "value" and its "selectedIndex"
// consistent. Changes to elements inside their document's tree go to the document, which
// keeps its id index up to date and tells the sheet's change observer.
#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/xul.h"
#include "refhost/host_ref.h"

namespace refhost {

class Document;

// What every element of one document shares with it. The document clears `document`
// when it dies, so its elements never reach a dead document.
struct DocumentAnchor {
  Document* document = nullptr;
};

struct Attribute {
  std::u16string name;
  std::u16string value;
};

class Element final : public Loom::XUL::xXULElem {
 public:
  // A detached element of the anchor's (non-null) document. The type follows from the tag.
  Element(std::u16string tag, std::shared_ptr<DocumentAnchor> anchor);

  // xXULElem. Out-of-range indexes, foreign elements and unknown attribute codes give
  // null, false or "" and change nothing.
  int getType() const override;
  Loom::SmartPtr<Loom::XUL::xXULDoc> getOwnerDocument() const override;
  bool getChildrenOfType(int type, Loom::XUL::ElemList& items) const override;
  int getNumChildren() const override;
  Loom::SmartPtr<Loom::XUL::xXULElem> getChildAt(int index) const override;
  bool removeChild(Loom::XUL::xXULElem* child) override;
  bool appendChild(Loom::XUL::xXULElem* child) override;
  Loom::wstring getAttr(int code) const override;
  void setAttr(int code, const Loom::wstring& value) override;
  Loom::wstring getAttribute(const Loom::wstring& name) const override;
  void setAttribute(const Loom::wstring& name, const Loom::wstring& value) override;
  bool hasAttribute(const Loom::wstring& name) const override;
  void removeAttribute(const Loom::wstring& name) override;
  Loom::wstring getValfromMenulist() const override;
  bool selMenulistWithVal(const Loom::wstring& value) override;
  // True when some item carries the value.
  bool hideMenuItemByVal(const Loom::wstring& value) override;
  int getSelectedIndex() const override;
  bool setSelectedIndex(int index) override;
  Loom::wstring getValFromRadioGroup() const override;
  bool setRadioGroupWithVal(const Loom::wstring& value) override;
  int getRadioGroupItemWithValue(const Loom::wstring& value) const override;

  // The host's own access, for documents, the serialiser and the runner.
  const std::u16string& tagName() const { return tag_; }
  // Attributes in the order they were first set.
  const std::vector<Attribute>& attributes() const { return attributes_; }
  // The value of `name`, or null when the element has no such attribute.
  const std::u16string* findAttribute(std::u16string_view name) const;
  // Sets or removes one attribute, reporting the change; setting the value it already has
  // changes nothing.
  void setAttributeValue(std::u16string_view name, std::u16string_view value);
  void eraseAttribute(std::u16string_view name);

  std::size_t childCount() const { return children_.size(); }
  Element* childAt(std::size_t index) const { return children_[index].get(); }
  // Null for a detached element and for a document's root.
  Element* parent() const { return parent_; }
  // The top of the tree this element is in (itself when it has no parent).
  const Element* topmost() const;
  // The owner document, or null when it has died.
  Document* document() const { return anchor_->document; }
  // Adds `child` (of the same document, not an ancestor, not a fixed element) last.
  bool append(Element* child);

  // The root and the script-argument element of a document stay where the document put
  // them: they cannot be appended anywhere.
  void fix() { fixed_ = true; }
  // Remembers the current attributes as this element's defaults / goes back to them.
  void rememberDefaults() { defaults_ = attributes_; }
  void restoreDefaults();

  // The selectable items of a menu list (those of its menupopup) or, for any other
  // element, its own menuitem children; the radios of a radio group, also inside boxes
  // but not inside a nested group.
  std::vector<Element*> menuItems() const;
  std::vector<Element*> radios() const;
  // The item list (menupopup) that holds a menu list's items, or null.
  Element* itemList() const;

 private:
  ~Element() override;

  std::vector<Attribute>::iterator attributeNamed(std::u16string_view name);
  // Takes `child` out of this element's children; the caller's hold keeps it alive.
  HostRef<Element> detach(Element* child);
  bool isInclusiveAncestorOf(const Element* element) const;
  void collectRadios(std::vector<Element*>& radios) const;

  std::u16string tag_;
  int type_;
  std::vector<Attribute> attributes_;
  std::vector<HostRef<Element>> children_;
  Element* parent_ = nullptr;
  std::shared_ptr<DocumentAnchor> anchor_;
  bool fixed_ = false;
  std::optional<std::vector<Attribute>> defaults_;
};

}  // namespace refhost
