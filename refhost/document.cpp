#include "refhost/document.h"

#include <utf8.h>

#include <algorithm>
#include <array>
#include <new>
#include <pugixml.hpp>
#include <utility>

#include "refhost/file_io.h"
#include "refhost/text.h"
#include "refhost/xml_text.h"
#include "refhost/xul_codes.h"

namespace refhost {
namespace {

struct LanguageRow {
  std::u16string_view code;
  std::u16string_view name;
};

constexpr std::array kLanguageNames = {
    LanguageRow{u"cs", u"Čeština"},   LanguageRow{u"da", u"Dansk"},
    LanguageRow{u"de", u"Deutsch"},   LanguageRow{u"en", u"English"},
    LanguageRow{u"es", u"Español"},   LanguageRow{u"fi", u"Suomi"},
    LanguageRow{u"fr", u"Français"},  LanguageRow{u"hu", u"Magyar"},
    LanguageRow{u"it", u"Italiano"},  LanguageRow{u"ja", u"日本語"},
    LanguageRow{u"ko", u"한국어"},    LanguageRow{u"nl", u"Nederlands"},
    LanguageRow{u"no", u"Norsk"},     LanguageRow{u"pl", u"Polski"},
    LanguageRow{u"pt", u"Português"}, LanguageRow{u"ru", u"Русский"},
    LanguageRow{u"sv", u"Svenska"},   LanguageRow{u"tr", u"Türkçe"},
    LanguageRow{u"zh", u"中文"},
};

constexpr std::u16string_view kArgsId = u"args";

// Null when the host is out of memory; the caller holds the element at once.
Element* NewElement(std::u16string_view tag, DocumentAnchor& anchor) {
  return new Element(tag, anchor);
}

// Builds the element of `node` and its subtree, removing each child from the parsed
// document once it is built: pugixml frees a page of nodes when all in it are removed, so
// the parser's nodes and the host's elements of a wide page are never both held whole.
HostRef<Element> BuildTree(pugi::xml_node node, DocumentAnchor& anchor) {
  HostRef<Element> element(NewElement(Utf16String(node.name()), anchor));
  if (!element) throw std::bad_alloc();
  for (const pugi::xml_attribute& attribute : node.attributes()) {
    element->loadAttribute(Utf16String(attribute.name()), Utf16String(attribute.value()));
  }
  element->keepAttributesAsDefaults();
  // Text and comments are dropped: XUL keeps what a control shows in its attributes.
  while (pugi::xml_node child = node.first_child()) {
    if (child.type() == pugi::node_element) element->append(BuildTree(child, anchor).get());
    node.remove_child(child);
  }
  return element;
}

template <class Visit>
void ForEachInTree(Element& top, const Visit& visit) {
  visit(top);
  for (std::size_t i = 0; i < top.childCount(); ++i) ForEachInTree(*top.childAt(i), visit);
}

Element* FirstWithId(Element& top, std::u16string_view id) {
  const std::u16string* value = top.findAttribute(kAttrNameId);
  if (value != nullptr && *value == id) return &top;
  for (std::size_t i = 0; i < top.childCount(); ++i) {
    if (Element* found = FirstWithId(*top.childAt(i), id)) return found;
  }
  return nullptr;
}

void AppendXml(const Element& element, pugi::xml_node& parent, int depth) {
  pugi::xml_node node = AppendCheckedElement(parent, element.tagName(), depth);
  for (const Attribute& attribute : element.attributes()) {
    AppendCheckedAttribute(node, attribute.name(), attribute.value());
  }
  for (std::size_t i = 0; i < element.childCount(); ++i) {
    AppendXml(*element.childAt(i), node, depth + 1);
  }
}

}  // namespace

LoadError::LoadError(const std::string& source, std::string message, int line)
    : std::runtime_error(source + ":" + std::to_string(line) + ": " + message),
      message_(std::move(message)),
      line_(line) {}

Document::Document(const DocumentContext& context)
    : anchor_(new DocumentAnchor()),
      window_(context.window),
      scriptEnv_(context.scriptEnv),
      userData_(context.userData) {
  if (!anchor_) throw std::bad_alloc();
  anchor_->document = this;
  args_ = HostRef<Element>(NewElement(TagOfElementType(Loom::kElemArgs), *anchor_));
  if (!args_) throw std::bad_alloc();
  args_->fix();
}

Document::~Document() {
  // Elements the library still holds outlive the document; they must not reach it.
  anchor_->document = nullptr;
}

Loom::SmartPtr<Document> Document::FromXml(std::string xml, std::u16string fileName,
                                           const DocumentContext& context) {
  pugi::xml_document parsed;
  std::string error;
  int line = 0;
  if (!ParseXmlText(std::move(xml), parsed, kMaxPageDepth, error, line)) {
    throw LoadError(Utf8(fileName), std::move(error), line);
  }

  Loom::SmartPtr<Document> document(new Document(context));
  if (!document) throw std::bad_alloc();
  document->fileName_ = std::move(fileName);
  document->root_ = BuildTree(parsed.document_element(), *document->anchor_);
  document->root_->fix();
  document->index(*document->root_);
  return document;
}

Loom::SmartPtr<Document> Document::FromFile(const std::filesystem::path& path,
                                            const DocumentContext& context) {
  std::optional<std::string> text = ReadWholeFile(path);
  if (!text) throw LoadError(path.string(), "cannot read the file", 0);
  return FromXml(std::move(*text), path.filename().u16string(), context);
}

Loom::SmartPtr<Loom::XUL::xXULElem> Document::getElementById(const Loom::wstring& id) const {
  return Loom::SmartPtr<Loom::XUL::xXULElem>(elementById(id));
}

void Document::findElement(const Loom::wstring& id, int mode) {
  if (mode != Loom::kSearchWholeDocument) return;
  found_ = HostRef<Element>(std::u16string_view(id) == kArgsId ? args_.get() : elementById(id));
}

Loom::SmartPtr<Loom::XUL::xXULElem> Document::takeFoundElement(int mode) {
  if (mode != Loom::kSearchWholeDocument) return nullptr;
  Loom::SmartPtr<Loom::XUL::xXULElem> found(found_.get());
  found_.reset();
  return found;
}

Loom::SmartPtr<Loom::XUL::xXULDoc> Document::getOwnerDoc() const {
  return Loom::SmartPtr<Loom::XUL::xXULDoc>(owner_.get());
}

Loom::SmartPtr<Loom::XUL::xXULElem> Document::createElement(int type) {
  const std::u16string_view tag = TagOfElementType(type);
  if (tag.empty()) return nullptr;
  return Loom::SmartPtr<Loom::XUL::xXULElem>(NewElement(tag, *anchor_));
}

Loom::SmartPtr<Loom::XUL::xWindow> Document::getXWindow() const {
  return Loom::SmartPtr<Loom::XUL::xWindow>(window_.get());
}

Loom::SmartPtr<Loom::JS::Environment> Document::getScriptEnv() const {
  return Loom::SmartPtr<Loom::JS::Environment>(scriptEnv_.get());
}

Loom::wstring Document::getRootDir() const { return Loom::wstring(rootDir_); }
Loom::wstring Document::getUserDir() const { return Loom::wstring(userDir_); }
Loom::wstring Document::getAllUsersDir() const { return Loom::wstring(allUsersDir_); }
Loom::wstring Document::getFileName() const { return Loom::wstring(fileName_); }

Loom::SmartPtr<Loom::Services::Archive> Document::getArchive() const {
  return Loom::SmartPtr<Loom::Services::Archive>(archive_.get());
}

Loom::wstring Document::getLocaleID(const Loom::wstring& languageCode) const {
  for (const LanguageRow& row : kLanguageNames) {
    if (row.code == std::u16string_view(languageCode)) return Loom::wstring(row.name);
  }
  return languageCode;
}

Loom::SmartPtr<Loom::PropertyManager> Document::getUserData() const {
  return Loom::SmartPtr<Loom::PropertyManager>(userData_.get());
}

void Document::setUserData(Loom::SmartPtr<Loom::PropertyManager> properties) {
  userData_ = HostRef<Loom::PropertyManager>(properties.get());
}

bool Document::genMenuListFromPersistentItem(Loom::XUL::xXULElem* list,
                                             Loom::Services::PersistentItem& branch) {
  auto* target = dynamic_cast<Element*>(list);
  if (target == nullptr || target->document() != this) return false;
  Element* popup = nullptr;
  if (target->getType() == Loom::kElemMenuPopup) {
    popup = target;
  } else if (target->getType() == Loom::kElemMenuList) {
    popup = target->itemList();
    if (popup == nullptr) {
      HostRef<Element> created(NewElement(TagOfElementType(Loom::kElemMenuPopup), *anchor_));
      if (!created) return false;
      target->append(created.get());
      popup = created.get();
    }
  } else {
    return false;
  }

  popup->removeChildrenOfType(Loom::kElemMenuItem);
  for (std::size_t i = 0; i < branch.getNumChildren(); ++i) {
    Loom::Services::PersistentItem& entry = branch.childAt(i);
    HostRef<Element> item(NewElement(TagOfElementType(Loom::kElemMenuItem), *anchor_));
    if (!item) return false;
    const Loom::wstring key = Utf16(entry.key());
    const Loom::Services::PersistentItem* label = entry.find("label");
    const Loom::wstring labelText = label != nullptr ? Utf16(Loom::string(*label)) : key;
    const Loom::wstring shown = window_ ? window_->resolveString(labelText) : labelText;
    item->setAttributeValue(kAttrNameValue, key);
    item->setAttributeValue(kAttrNameLabel, shown);
    popup->append(item.get());
  }
  // The list keeps showing the entry it showed, when the new items still have it.
  if (const std::u16string* value = target->findAttribute(kAttrNameValue)) {
    target->selMenulistWithVal(Loom::wstring(*value));
  }
  return true;
}

void Document::reinitialiseDefaults() {
  ForEachInTree(*root_, [](Element& element) { element.restoreDefaults(); });
}

Element* Document::elementById(std::u16string_view id) const {
  const auto [first, last] = idIndex_.equal_range(id);
  if (first == last) return nullptr;
  if (std::next(first) == last) return first->second;
  // Duplicate ids are rare; the first in document order wins, as in XUL.
  return FirstWithId(*root_, id);
}

bool Document::contains(const Element& element) const {
  return root_ && element.topmost() == root_.get();
}

std::string Document::toXml() const {
  pugi::xml_document xml;
  AppendXml(*root_, xml, 1);
  return SaveXmlText(xml);
}

void Document::setDirectories(std::u16string root, std::u16string user, std::u16string allUsers) {
  rootDir_ = std::move(root);
  userDir_ = std::move(user);
  allUsersDir_ = std::move(allUsers);
}

void Document::setArchive(Loom::SmartPtr<Loom::Services::Archive> archive) {
  archive_ = HostRef<Loom::Services::Archive>(archive.get());
}

bool Document::setOwner(Document* owner) {
  for (const Document* d = owner; d != nullptr; d = d->owner_.get()) {
    if (d == this) return false;
  }
  owner_ = HostRef<Document>(owner);
  return true;
}

void Document::attributeChanged(Element& element, std::u16string_view name,
                                const std::u16string* before, const std::u16string* after) {
  const bool inTree = contains(element);
  if (inTree && name == kAttrNameId) {
    if (before != nullptr) unindexId(*before, element);
    if (after != nullptr) indexId(*after, element);
  }
  if (!inTree && &element != args_.get()) return;
  const Change::Kind kind = before == nullptr  ? Change::Kind::kAttributeAdded
                            : after == nullptr ? Change::Kind::kAttributeRemoved
                                               : Change::Kind::kAttributeChanged;
  notify(Change{.kind = kind,
                .document = this,
                .element = &element,
                .attribute = name,
                .oldValue = before != nullptr ? std::u16string_view(*before) : u"",
                .newValue = after != nullptr ? std::u16string_view(*after) : u""});
}

void Document::elementAdded(Element& element) {
  if (!contains(element)) return;
  index(element);
  notify(Change{.kind = Change::Kind::kElementAdded,
                .document = this,
                .element = &element,
                .parent = element.parent()});
}

void Document::elementRemoved(Element& element, const Element& formerParent) {
  unindex(element);
  notify(Change{.kind = Change::Kind::kElementRemoved,
                .document = this,
                .element = &element,
                .parent = &formerParent});
}

void Document::index(Element& subtree) {
  ForEachInTree(subtree, [this](Element& element) {
    if (const std::u16string* id = element.findAttribute(kAttrNameId)) indexId(*id, element);
  });
}

void Document::unindex(Element& subtree) {
  ForEachInTree(subtree, [this](Element& element) {
    if (const std::u16string* id = element.findAttribute(kAttrNameId)) unindexId(*id, element);
  });
}

void Document::indexId(const std::u16string& id, Element& element) {
  idIndex_.emplace(id, &element);
}

void Document::unindexId(const std::u16string& id, Element& element) {
  const auto [first, last] = idIndex_.equal_range(id);
  const auto it =
      std::find_if(first, last, [&](const auto& entry) { return entry.second == &element; });
  if (it != last) idIndex_.erase(it);
}

void Document::notify(const Change& change) const {
  if (observer_ != nullptr) observer_->onChange(change);
}

}  // namespace refhost
