// The host's document validators and XULDocSerialiser.
//
// A stored document is a DOM tree <XUL_DOC id="NAME"> holding a copy of a page's element
// tree with every attribute as it was (the attributes are the controls' current values).
// The serialiser file is <XUL_DOCS> holding one XUL_DOC per stored document; a file whose
// root is itself a XUL_DOC is read as that one document.
//
// Putting values back touches only what a user can change in a control, so a stored
// document never overrides labels, visibility or enabled states that the page and the
// device decide:
//   - a menulist or radiogroup gets its stored selection back through the selection
//     helpers (the value of its stored selected item, else its stored "value"), and is
//     left as it is when it no longer has an item with that value;
//   - a menuitem or radio has no value of its own: its list's selection decides;
//   - any other element gets "value" and "selected" when the stored element has them
//     (a value a validator blanked leaves the live one alone), and "checked" as stored,
//     an absent "checked" meaning unchecked.
#include "host/serialiser.h"

#include <algorithm>
#include <array>
#include <string>
#include <utility>
#include <vector>

#include "refhost/document.h"
#include "refhost/host_ref.h"
#include "refhost/text.h"
#include "refhost/xul_codes.h"

namespace Loom::Services {
namespace {

using refhost::Element;
using refhost::HostRef;

constexpr std::u16string_view kStoredDocTag = u"XUL_DOC";
constexpr std::u16string_view kStoreRootTag = u"XUL_DOCS";

struct ControlValue {
  std::u16string_view attribute;
  bool absentMeansCleared;
};

constexpr std::array kControlValues = {
    ControlValue{refhost::kAttrNameValue, false},
    ControlValue{refhost::kAttrNameSelected, false},
    ControlValue{refhost::kAttrNameChecked, true},
};

wstring Wide(std::u16string_view text) { return wstring(text); }

bool IsStoredDocument(Dom::Node& node) {
  return std::u16string_view(node.getName()) == kStoredDocTag &&
         node.attributes().contains(Wide(refhost::kAttrNameId));
}

SmartPtr<Dom::Node> NewStoredDocument(const string& name) {
  SmartPtr<Dom::Node> stored = Dom::createNode(Wide(kStoredDocTag));
  stored->attributes().set(Wide(refhost::kAttrNameId), refhost::Utf16(name));
  return stored;
}

SmartPtr<Dom::Node> CopyTree(const Element& element) {
  SmartPtr<Dom::Node> node = Dom::createNode(Wide(element.tagName()));
  for (const refhost::Attribute& attribute : element.attributes()) {
    node->attributes().set(Wide(attribute.name()), Wide(attribute.value()));
  }
  for (std::size_t i = 0; i < element.childCount(); ++i) {
    node->children().append(CopyTree(*element.childAt(i)));
  }
  return node;
}

bool IsSelectedItem(Dom::Node& node) {
  const int type = refhost::ElementTypeOfTag(node.getName());
  return (type == kElemMenuItem || type == kElemRadio) &&
         node.attributes()[Wide(refhost::kAttrNameSelected)] == u"true";
}

// The first selected item below `node`, or null.
Dom::Node* SelectedItemBelow(Dom::Node& node) {
  Dom::ChildVector& children = node.children();
  for (std::size_t i = 0; i < children.getNumChildren(); ++i) {
    Dom::Node& child = *children[i];
    if (IsSelectedItem(child)) return &child;
    if (Dom::Node* found = SelectedItemBelow(child)) return found;
  }
  return nullptr;
}

wstring StoredSelection(Dom::Node& list) {
  Dom::Node* item = SelectedItemBelow(list);
  return (item != nullptr ? *item : list).attributes()[Wide(refhost::kAttrNameValue)];
}

void CopyControlValues(Dom::Node& stored, Element& live) {
  Dom::AttributeMap& attributes = stored.attributes();
  for (const ControlValue& control : kControlValues) {
    const wstring name = Wide(control.attribute);
    if (attributes.contains(name)) {
      live.setAttributeValue(control.attribute, attributes[name]);
    } else if (control.absentMeansCleared) {
      live.eraseAttribute(control.attribute);
    }
  }
}

struct PendingSelection {
  Element* list;
  wstring value;
};

void CollectValues(refhost::Document& page, Dom::Node& stored,
                   std::vector<PendingSelection>& selections) {
  Dom::AttributeMap& attributes = stored.attributes();
  const wstring id = Wide(refhost::kAttrNameId);
  if (attributes.contains(id)) {
    if (Element* live = page.elementById(attributes[id])) {
      switch (live->getType()) {
        case kElemMenuList:
        case kElemRadioGroup:
          selections.push_back({live, StoredSelection(stored)});
          break;
        case kElemMenuItem:
        case kElemRadio:
          break;
        default:
          CopyControlValues(stored, *live);
      }
    }
  }
  Dom::ChildVector& children = stored.children();
  for (std::size_t i = 0; i < children.getNumChildren(); ++i) {
    CollectValues(page, *children[i], selections);
  }
}

// Lists are selected after every plain value is in, so an item value copied on the way
// cannot undo a selection.
void PutValuesBack(refhost::Document& page, Dom::Node& stored) {
  std::vector<PendingSelection> selections;
  CollectValues(page, stored, selections);
  for (const PendingSelection& selection : selections) {
    if (selection.list->getType() == kElemMenuList) {
      selection.list->selMenulistWithVal(selection.value);
    } else {
      selection.list->setRadioGroupWithVal(selection.value);
    }
  }
}

// The node with id `id` in `node`'s subtree, `node` itself excluded; null when none.
Dom::Node* FindById(Dom::Node& node, const wstring& id) {
  Dom::ChildVector& children = node.children();
  for (std::size_t i = 0; i < children.getNumChildren(); ++i) {
    Dom::Node& child = *children[i];
    Dom::AttributeMap& attributes = child.attributes();
    if (attributes.contains(Wide(refhost::kAttrNameId)) &&
        attributes[Wide(refhost::kAttrNameId)] == id) {
      return &child;
    }
    if (Dom::Node* found = FindById(child, id)) return found;
  }
  return nullptr;
}

}  // namespace

DocValidator::DocValidator() = default;
DocValidator::~DocValidator() = default;

BasicDocValidator::BasicDocValidator() = default;
BasicDocValidator::~BasicDocValidator() = default;

void BasicDocValidator::validateTree(Dom::Node* node) {
  if (node == nullptr) return;
  Dom::ChildVector& children = node->children();
  for (std::size_t i = 0; i < children.getNumChildren(); ++i) validateTree(children[i]);
}

struct XULDocSerialiser::Impl {
  using Stored = std::pair<string, HostRef<Dom::Node>>;

  std::vector<Stored>::iterator find(const string& name) {
    return std::find_if(documents.begin(), documents.end(),
                        [&name](const Stored& stored) { return stored.first == name; });
  }
  // Replaces the document `name` in its place, or adds it last.
  void put(const string& name, Dom::Node* tree) {
    auto it = find(name);
    if (it != documents.end()) {
      it->second = HostRef<Dom::Node>(tree);
    } else {
      documents.emplace_back(name, HostRef<Dom::Node>(tree));
    }
  }
  // The page the host can store: one of the reference host's documents.
  static refhost::Document* Page(XUL::xXULDoc* doc) {
    return dynamic_cast<refhost::Document*>(doc);
  }

  HostRef<BackingStoreIO> store;
  HostRef<DocValidator> validator;
  std::vector<Stored> documents;
};

XULDocSerialiser::XULDocSerialiser(SmartPtr<BackingStoreIO> store, SmartPtr<DocValidator> validator)
    : impl_(new Impl{
          HostRef<BackingStoreIO>(store.get()), HostRef<DocValidator>(validator.get()), {}}) {}

XULDocSerialiser::~XULDocSerialiser() { delete impl_; }

bool XULDocSerialiser::load() {
  if (!impl_->store) return false;
  const SmartPtr<Dom::Document> file = impl_->store->read();
  if (!file) return false;
  const SmartPtr<Dom::Node> root = file->getRoot();
  if (!root) return false;

  std::vector<Dom::Node*> found;
  if (IsStoredDocument(*root)) {
    found.push_back(root.get());
  } else {
    for (std::size_t i = 0; i < root->children().getNumChildren(); ++i) {
      Dom::Node* child = root->children()[i];
      if (IsStoredDocument(*child)) found.push_back(child);
    }
  }
  impl_->documents.clear();
  for (Dom::Node* stored : found) {
    const string name(refhost::Utf8(stored->attributes()[Wide(refhost::kAttrNameId)]));
    impl_->put(name, stored->clone().get());
  }
  return true;
}

bool XULDocSerialiser::save() {
  if (!impl_->store) return false;
  const SmartPtr<Dom::Document> file = Dom::Document::create(FileStore::inMemory());
  const SmartPtr<Dom::Node> root = Dom::createNode(Wide(kStoreRootTag));
  for (const Impl::Stored& stored : impl_->documents) {
    root->children().append(stored.second->clone());
  }
  file->setRoot(root);
  return impl_->store->write(file.get());
}

bool XULDocSerialiser::writeSettings(XUL::xXULDoc* doc, const string& name) {
  refhost::Document* page = Impl::Page(doc);
  if (page == nullptr) return false;
  const SmartPtr<Dom::Node> stored = NewStoredDocument(name);
  stored->children().append(CopyTree(page->root()));
  if (impl_->validator) impl_->validator->validateTree(stored.get());
  impl_->put(name, stored.get());
  return true;
}

bool XULDocSerialiser::loadSettings(XUL::xXULDoc* doc, const string& name) {
  refhost::Document* page = Impl::Page(doc);
  auto it = impl_->find(name);
  if (page == nullptr || it == impl_->documents.end()) return false;
  Dom::ChildVector& children = it->second->children();
  for (std::size_t i = 0; i < children.getNumChildren(); ++i) PutValuesBack(*page, *children[i]);
  return true;
}

bool XULDocSerialiser::loadTabSettings(XUL::xXULDoc* doc, const string& name, const string& tab) {
  refhost::Document* page = Impl::Page(doc);
  auto it = impl_->find(name);
  if (page == nullptr || it == impl_->documents.end()) return false;
  Dom::Node* stored = FindById(*it->second, refhost::Utf16(tab));
  if (stored == nullptr) return false;
  PutValuesBack(*page, *stored);
  return true;
}

bool XULDocSerialiser::removeDoc(const string& name) {
  auto it = impl_->find(name);
  if (it == impl_->documents.end()) return false;
  impl_->documents.erase(it);
  return true;
}

bool XULDocSerialiser::addDoc(const string& name, SmartPtr<Dom::Node> tree) {
  if (!tree) return false;
  SmartPtr<Dom::Node> stored;
  if (std::u16string_view(tree->getName()) == kStoredDocTag) {
    stored = tree->clone();
    stored->attributes().set(Wide(refhost::kAttrNameId), refhost::Utf16(name));
  } else {
    stored = NewStoredDocument(name);
    stored->children().append(tree->clone());
  }
  impl_->put(name, stored.get());
  return true;
}

SmartPtr<Dom::Node> XULDocSerialiser::getDoc(const string& name) const {
  auto it = impl_->find(name);
  return it == impl_->documents.end() ? nullptr : it->second.share();
}

}  // namespace Loom::Services
