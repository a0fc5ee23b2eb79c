// Settings trees: nodes, marks, the PersistentSettings root and its stored form.
#include "refhost/settings_tree.h"

#include <utf8.h>

#include <algorithm>
#include <map>
#include <new>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>

#include "host/properties.h"
#include "refhost/host_ref.h"
#include "refhost/text.h"
#include "refhost/xml_text.h"

namespace refhost {

// Snapshots of marked nodes by their path of keys from the root; a snapshot is a
// detached copy of the node.
struct SettingsMarks {
  std::map<std::vector<Loom::string>, std::unique_ptr<SettingsNode>> snapshots;
};

namespace {

constexpr char16_t kSettingsElement[] = u"settings";
constexpr char16_t kItemElement[] = u"item";
constexpr char16_t kKeyAttribute[] = u"key";
constexpr char16_t kValueAttribute[] = u"value";
// A key or value that XML cannot carry as it is (bytes that are not UTF-8, control
// characters, U+FFFE, U+FFFF) is stored under these instead, with every byte outside
// printable ASCII, and '%' itself, written as %XX: the file stays well-formed and the
// bytes come back exactly.
constexpr char16_t kKeyBytesAttribute[] = u"key-bytes";
constexpr char16_t kValueBytesAttribute[] = u"value-bytes";
constexpr char kEscape = '%';

}  // namespace

SettingsNode::SettingsNode(SettingsMarks* marks, SettingsNode* parent, Loom::string key)
    : marks_(marks), parent_(parent), key_(std::move(key)) {}

SettingsNode::~SettingsNode() = default;

Loom::Services::PersistentItem& SettingsNode::operator[](const Loom::string& key) {
  return ensureChild(key);
}

Loom::Services::PersistentItem& SettingsNode::operator=(const Loom::string& value) {
  value_ = value;
  return *this;
}

bool SettingsNode::remove(const Loom::string& key) {
  const auto found = std::find_if(children_.begin(), children_.end(),
                                  [&key](const auto& child) { return child->key_ == key; });
  if (found == children_.end()) return false;
  children_.erase(found);
  return true;
}

SettingsNode* SettingsNode::findChild(const Loom::string& key) const {
  for (const auto& child : children_) {
    if (child->key_ == key) return child.get();
  }
  return nullptr;
}

SettingsNode& SettingsNode::ensureChild(const Loom::string& key) {
  if (SettingsNode* existing = findChild(key)) return *existing;
  return appendChild(key);
}

SettingsNode& SettingsNode::appendChild(const Loom::string& key) {
  children_.push_back(std::make_unique<SettingsNode>(marks_, this, key));
  return *children_.back();
}

void SettingsNode::replaceContent(SettingsNode& other) {
  value_ = std::exchange(other.value_, Loom::string());
  children_ = std::move(other.children_);
  other.children_.clear();
  for (const auto& child : children_) child->parent_ = this;
}

std::unique_ptr<SettingsNode> SettingsNode::copyTree(SettingsNode* parent) const {
  auto copy = std::make_unique<SettingsNode>(marks_, parent, key_);
  copy->value_ = value_;
  copy->children_.reserve(children_.size());
  for (const auto& child : children_) copy->children_.push_back(child->copyTree(copy.get()));
  return copy;
}

std::vector<Loom::string> SettingsNode::path() const {
  std::vector<Loom::string> keys;
  for (const SettingsNode* node = this; node->parent_ != nullptr; node = node->parent_) {
    keys.push_back(node->key_);
  }
  std::reverse(keys.begin(), keys.end());
  return keys;
}

void SettingsNode::mark() { marks_->snapshots[path()] = copyTree(nullptr); }

void SettingsNode::keep() { marks_->snapshots.erase(path()); }

void SettingsNode::revert() {
  const auto found = marks_->snapshots.find(path());
  if (found == marks_->snapshots.end()) return;
  // The mark is dropped, so its snapshot can become the content as it is.
  const std::unique_ptr<SettingsNode> snapshot = std::move(found->second);
  marks_->snapshots.erase(found);
  replaceContent(*snapshot);
}

namespace {

Loom::wstring EscapeBytes(std::string_view text) {
  constexpr char kHex[] = "0123456789ABCDEF";
  Loom::wstring escaped;
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte >= ' ' && byte < 0x7F && c != kEscape) {
      escaped.push_back(byte);
    } else {
      escaped += {char16_t(kEscape), char16_t(kHex[byte >> 4]), char16_t(kHex[byte & 0xF])};
    }
  }
  return escaped;
}

int HexDigit(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  return -1;
}

// A '%' not followed by two hex digits stands for itself.
Loom::string UnescapeBytes(const std::string& text) {
  Loom::string bytes;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const int high = text[i] == kEscape && i + 2 < text.size() ? HexDigit(text[i + 1]) : -1;
    const int low = high >= 0 ? HexDigit(text[i + 2]) : -1;
    if (low >= 0) {
      bytes.push_back(static_cast<char>(high * 16 + low));
      i += 2;
    } else {
      bytes.push_back(text[i]);
    }
  }
  return bytes;
}

// Empty text is written as no attribute at all.
void SetText(Loom::Dom::Node& node, const char16_t* plain, const char16_t* escaped,
             const Loom::string& text) {
  if (text.empty()) return;
  if (XmlCanCarry(text)) {
    node.attributes().set(plain, Utf16(text));
  } else {
    node.attributes().set(escaped, EscapeBytes(text));
  }
}

Loom::string GetText(Loom::Dom::Node& node, const char16_t* plain, const char16_t* escaped) {
  Loom::Dom::AttributeMap& attributes = node.attributes();
  if (attributes.contains(escaped)) return UnescapeBytes(Utf8(attributes[escaped]));
  return Loom::string(Utf8(attributes[plain]));
}

void AppendItems(const SettingsNode& from, Loom::Dom::Node& to) {
  for (std::size_t i = 0; i < from.getNumChildren(); ++i) {
    const SettingsNode& child = from.child(i);
    Loom::SmartPtr<Loom::Dom::Node> item = Loom::Dom::createNode(kItemElement);
    if (!item) throw std::bad_alloc();
    if (XmlCanCarry(child.key())) {
      // Always written, so that an item with the empty key is still found by its key.
      item->attributes().set(kKeyAttribute, Utf16(child.key()));
    } else {
      SetText(*item, kKeyAttribute, kKeyBytesAttribute, child.key());
    }
    SetText(*item, kValueAttribute, kValueBytesAttribute, child.value());
    AppendItems(child, *item);
    to.children().append(std::move(item));
  }
}

void ReadItems(Loom::Dom::Node& from, SettingsNode& to) {
  // Items with the same key merge, also with the children an earlier item of the same
  // key gave `to`; the index keeps that linear for long lists.
  std::unordered_map<std::string_view, SettingsNode*> byKey;
  for (std::size_t i = 0; i < to.getNumChildren(); ++i) {
    auto& child = static_cast<SettingsNode&>(to.childAt(i));
    byKey.emplace(std::string_view(child.key()), &child);
  }
  Loom::Dom::ChildVector& children = from.children();
  for (std::size_t i = 0; i < children.getNumChildren(); ++i) {
    Loom::Dom::Node& item = *children[i];
    if (item.getName() != kItemElement) continue;
    const Loom::string key = GetText(item, kKeyAttribute, kKeyBytesAttribute);
    const auto found = byKey.find(std::string_view(key));
    SettingsNode* node = found != byKey.end() ? found->second : nullptr;
    if (node == nullptr) {
      node = &to.appendChild(key);
      byKey.emplace(std::string_view(node->key()), node);  // the node's own copy of the key
    }
    *node = GetText(item, kValueAttribute, kValueBytesAttribute);
    ReadItems(item, *node);
  }
}

}  // namespace

Loom::SmartPtr<Loom::Dom::Node> SettingsToDom(const SettingsNode& root) {
  Loom::SmartPtr<Loom::Dom::Node> settings = Loom::Dom::createNode(kSettingsElement);
  if (!settings) return nullptr;
  try {
    SetText(*settings, kValueAttribute, kValueBytesAttribute, root.value());
    AppendItems(root, *settings);
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
  return settings;
}

bool SettingsFromDom(Loom::Dom::Node& root, SettingsNode& target) {
  if (root.getName() != kSettingsElement) return false;
  target = GetText(root, kValueAttribute, kValueBytesAttribute);
  ReadItems(root, target);
  return true;
}

}  // namespace refhost

namespace Loom::Services {

PersistentItem& PersistentItem::operator[](const char* key) { return (*this)[string(key)]; }

PersistentItem& PersistentItem::operator=(const char* value) { return *this = string(value); }

struct PersistentSettings::Impl {
  refhost::SettingsMarks marks;
  refhost::SettingsNode root{&marks, nullptr, string()};
  refhost::HostRef<BackingStoreIO> store;
};

namespace {

constexpr char kProductBranch[] = "PRODUCTCODE";
constexpr char kModelNameKey[] = "ModelName";
constexpr char kDriverNameKey[] = "DriverName";
constexpr char kDriverNameProperty[] = "loom.driver.name";

// The stored settings tree of `store` built into `target`; false when there is none.
// A tree that does not convert (text that is not valid Unicode) counts as unreadable.
bool ReadStoredTree(BackingStoreIO* store, refhost::SettingsNode& target) {
  if (store == nullptr) return false;
  const SmartPtr<Dom::Document> document = store->read();
  if (!document) return false;
  const SmartPtr<Dom::Node> root = document->getRoot();
  if (!root) return false;
  try {
    return refhost::SettingsFromDom(*root, target);
  } catch (const utf8::exception&) {
    return false;
  }
}

string StoredProductValue(const refhost::SettingsNode& tree, const char* key) {
  const refhost::SettingsNode* product = tree.findChild(string(kProductBranch));
  const refhost::SettingsNode* node = product ? product->findChild(string(key)) : nullptr;
  return node ? node->value() : string();
}

}  // namespace

PersistentSettings::PersistentSettings() : impl_(new Impl) {}
PersistentSettings::~PersistentSettings() { delete impl_; }

PersistentItem& PersistentSettings::operator[](const string& key) { return impl_->root[key]; }
PersistentItem& PersistentSettings::operator=(const string& value) {
  impl_->root = value;
  return *this;
}
PersistentSettings::operator string() const { return impl_->root.value(); }
bool PersistentSettings::remove(const string& key) { return impl_->root.remove(key); }
PersistentItem* PersistentSettings::find(const string& key) { return impl_->root.find(key); }
const string& PersistentSettings::key() const { return impl_->root.key(); }
std::size_t PersistentSettings::getNumChildren() const { return impl_->root.getNumChildren(); }
PersistentItem& PersistentSettings::childAt(std::size_t index) {
  return impl_->root.childAt(index);
}
void PersistentSettings::mark() { impl_->root.mark(); }
void PersistentSettings::keep() { impl_->root.keep(); }
void PersistentSettings::revert() { impl_->root.revert(); }

bool PersistentSettings::loadSettings() {
  // Built aside and swapped in, so a failed load leaves the tree as it was. The marks
  // stay: they are keyed by path and apply to the new content.
  refhost::SettingsNode loaded(&impl_->marks, nullptr, string());
  if (!ReadStoredTree(impl_->store.get(), loaded)) return false;
  impl_->root.replaceContent(loaded);
  return true;
}

bool PersistentSettings::saveSettings() {
  if (!impl_->store) return false;
  const SmartPtr<Dom::Node> root = refhost::SettingsToDom(impl_->root);
  const SmartPtr<Dom::Document> document = Dom::Document::create(FileStore::inMemory());
  if (!root || !document) return false;
  document->setRoot(root);
  return impl_->store->write(document.get());
}

SmartPtr<BackingStoreIO> PersistentSettings::getBackingStoreIO() const {
  return impl_->store.share();
}

void PersistentSettings::setBackingStoreIO(SmartPtr<BackingStoreIO> store) {
  impl_->store = refhost::HostRef<BackingStoreIO>(store.get());
}

// A stored configuration may name the printer it was made for under "PRODUCTCODE":
// "ModelName" (e.g. "KESTREL C750") and "DriverName" (the full driver name). It fits the
// printer whose property "loom.driver.name" equals the driver name, when one is stored,
// and equals the model name or starts with it followed by a blank, when one is stored:
// driver names are the model name with the PDL behind it ("KESTREL C750 PCL6"), and a
// user expects a configuration of the same model to load into any of its drivers but
// never into another model's. A configuration that names neither fits every printer
// (shipped defaults without a product section). One that names a model fits no printer
// whose driver name is unknown. Nothing readable in the store is not valid.
bool PersistentSettings::isXMLConfigValid(const PropertyManager& properties) const {
  refhost::SettingsMarks unused_marks;
  refhost::SettingsNode stored(&unused_marks, nullptr, string());
  if (!ReadStoredTree(impl_->store.get(), stored)) return false;
  const string model = StoredProductValue(stored, kModelNameKey);
  const string driver = StoredProductValue(stored, kDriverNameKey);
  if (model.empty() && driver.empty()) return true;
  if (!properties.exists(kDriverNameProperty)) return false;
  const std::string printer = refhost::Utf8(properties.getString(kDriverNameProperty));
  const bool model_fits = model.empty() || printer == std::string_view(model) ||
                          printer.starts_with(std::string(model) + ' ');
  const bool driver_fits = driver.empty() || printer == std::string_view(driver);
  return model_fits && driver_fits;
}

}  // namespace Loom::Services
