// Settings trees: nodes, marks, the PersistentSettings root and its stored form.
#include "refhost/settings_tree.h"

#include <utf8.h>

#include <algorithm>
#include <map>
#include <new>
#include <string>
#include <utility>

#include "host/properties.h"
#include "refhost/host_ref.h"
#include "refhost/text.h"

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

void AppendItems(const SettingsNode& from, Loom::Dom::Node& to) {
  for (std::size_t i = 0; i < from.getNumChildren(); ++i) {
    const SettingsNode& child = from.child(i);
    Loom::SmartPtr<Loom::Dom::Node> item = Loom::Dom::createNode(kItemElement);
    if (!item) throw std::bad_alloc();
    item->attributes().set(kKeyAttribute, Utf16(child.key()));
    if (!child.value().empty()) item->attributes().set(kValueAttribute, Utf16(child.value()));
    AppendItems(child, *item);
    to.children().append(std::move(item));
  }
}

void ReadItems(Loom::Dom::Node& from, SettingsNode& to) {
  Loom::Dom::ChildVector& children = from.children();
  for (std::size_t i = 0; i < children.getNumChildren(); ++i) {
    Loom::Dom::Node& item = *children[i];
    if (item.getName() != kItemElement) continue;
    SettingsNode& node = to.ensureChild(Loom::string(Utf8(item.attributes()[kKeyAttribute])));
    node = Loom::string(Utf8(item.attributes()[kValueAttribute]));
    ReadItems(item, node);
  }
}

}  // namespace

Loom::SmartPtr<Loom::Dom::Node> SettingsToDom(const SettingsNode& root) {
  Loom::SmartPtr<Loom::Dom::Node> settings = Loom::Dom::createNode(kSettingsElement);
  if (!settings) return nullptr;
  if (!root.value().empty()) settings->attributes().set(kValueAttribute, Utf16(root.value()));
  try {
    AppendItems(root, *settings);
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
  return settings;
}

bool SettingsFromDom(Loom::Dom::Node& root, SettingsNode& target) {
  if (root.getName() != kSettingsElement) return false;
  target = Loom::string(Utf8(root.attributes()[kValueAttribute]));
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
  SmartPtr<Dom::Node> root;
  try {
    root = refhost::SettingsToDom(impl_->root);
  } catch (const utf8::exception&) {
    return false;
  }
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
