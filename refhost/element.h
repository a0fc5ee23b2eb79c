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
//
// Cost: a page may hold a quarter of a million elements, so an element keeps little of
// its own (about a hundred bytes besides its attributes): its tag and type, like the
// names of its attributes, are kept once per document (DocumentAnchor), and the
// attributes it had when the page was loaded are copied only when they first change (see
// rememberLoadedAttributes).
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

#include "host/xul.h"
#include "refhost/child_list.h"
#include "refhost/host_ref.h"

namespace refhost {

class Document;
class Element;

// One attribute of an element. Its name is kept once per document (DocumentAnchor::name),
// so an attribute costs a pointer and its value.
class Attribute {
 public:
  Attribute(const std::u16string& name, std::u16string value)
      : name_(&name), value_(std::move(value)) {}
  const std::u16string& name() const { return *name_; }
  const std::u16string& value() const { return value_; }

 private:
  friend class Element;
  const std::u16string* name_;
  std::u16string value_;
};

// Hashing for maps keyed by UTF-16 text that are searched with views, without a copy.
struct TextHash {
  using is_transparent = void;
  std::size_t operator()(std::u16string_view text) const {
    return std::hash<std::u16string_view>()(text);
  }
};

// A tag name with the element type it stands for.
struct ElementTag {
  std::u16string name;
  int type;
};

// What every element of one document shares with it: the document, which clears
// `document` when it dies so that its elements never reach a dead document; the tags and
// attribute names of its elements, each kept once; and the attributes that elements
// loaded with the page had at load, kept from their first change on. Held by the
// document and its elements.
class DocumentAnchor final : public Loom::RefCount {
 public:
  DocumentAnchor() = default;
  // The one copy of a tag / an attribute name among this document's elements.
  const ElementTag& tag(std::u16string_view name);
  const std::u16string& name(std::u16string_view attributeName);

  Document* document = nullptr;
  std::unordered_map<const Element*, std::vector<Attribute>> loadedAttributes;

 private:
  ~DocumentAnchor() override = default;

  struct TagHash : TextHash {
    using TextHash::operator();
    std::size_t operator()(const ElementTag& tag) const { return TextHash()(tag.name); }
  };
  struct TagEqual {
    using is_transparent = void;
    static std::u16string_view Name(std::u16string_view name) { return name; }
    static std::u16string_view Name(const ElementTag& tag) { return tag.name; }
    template <class A, class B>
    bool operator()(const A& a, const B& b) const {
      return Name(a) == Name(b);
    }
  };
  // Node-based sets: an entry never moves, so elements and attributes point at it.
  std::unordered_set<ElementTag, TagHash, TagEqual> tags_;
  std::unordered_set<std::u16string, TextHash, std::equal_to<>> names_;
};

class Element final : public Loom::XUL::xXULElem {
 public:
  // A detached element of the anchor's document. The type follows from the tag.
  Element(std::u16string_view tag, DocumentAnchor& anchor);

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
  const std::u16string& tagName() const { return tag_->name; }
  // Attributes in the order they were first set.
  const std::vector<Attribute>& attributes() const { return attributes_; }
  // The value of `name`, or null when the element has no such attribute.
  const std::u16string* findAttribute(std::u16string_view name) const;
  // Sets or removes one attribute, reporting the change; setting the value it already has
  // changes nothing.
  void setAttributeValue(std::u16string_view name, std::u16string_view value);
  void eraseAttribute(std::u16string_view name);

  std::size_t childCount() const { return children_.size(); }
  Element* childAt(std::size_t index) const { return children_[index]; }
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
  // Adds an attribute while the page is built, before the element is in any tree:
  // nothing to report. A name given twice keeps its first place and its last value.
  void loadAttribute(std::u16string_view name, std::u16string value);
  // Makes the current attributes this element's defaults / goes back to them. The
  // defaults are the current attributes until these first change, and only then copied.
  void keepAttributesAsDefaults() { loaded_ = true; }
  void restoreDefaults();
  // Takes every child of `type` out, reporting each removal in order.
  void removeChildrenOfType(int type);

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
  // Before the first change to the attributes of an element loaded with the page: keeps
  // them as its defaults.
  void rememberLoadedAttributes();
  // Reports `child`, just taken out of this element's children.
  void detached(Element& child, bool wasInTree);
  // Takes `child` out of this element's children; the caller's hold keeps it alive.
  HostRef<Element> detach(Element* child);
  bool isInclusiveAncestorOf(const Element* element) const;
  void collectRadios(std::vector<Element*>& radios) const;

  const ElementTag* tag_;
  HostRef<DocumentAnchor> anchor_;
  Element* parent_ = nullptr;
  std::vector<Attribute> attributes_;
  ChildList children_;
  bool fixed_ = false;
  // Loaded with the page: reinitialiseDefaults puts back what it had then.
  bool loaded_ = false;
  // Its attributes at load are kept in the anchor's loadedAttributes.
  bool keepsLoadedAttributes_ = false;
};

}  // namespace refhost
