// PersistentSettings: the root of a settings tree with its backing store.
#include <utf8.h>

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <utility>
#include <variant>

#include "host/properties.h"
#include "refhost/archive.h"
#include "refhost/file_io.h"
#include "refhost/host_ref.h"
#include "refhost/settings_marks.h"
#include "refhost/settings_text.h"
#include "refhost/settings_tree.h"
#include "refhost/text.h"

namespace Loom::Services {

PersistentItem& PersistentItem::operator[](const char* key) { return (*this)[string(key)]; }

PersistentItem& PersistentItem::operator=(const char* value) { return *this = string(value); }

namespace {

// What tells one content of a store from the next without reading it: a file's path and
// version (refhost/file_io.h), or an archive member's name and its archive's version.
using StoreVersion = std::variant<std::pair<std::filesystem::path, refhost::FileVersion>,
                                  std::pair<wstring, std::uint64_t>>;

// The version of the store a tree was last loaded from, as it was then, and the tree's
// change count just after: while both still hold, the tree is what the store holds.
struct LoadedStore {
  StoreVersion version;
  std::uint64_t changes;
};

}  // namespace

struct PersistentSettings::Impl {
  explicit Impl(const PersistentSettings* owner) : tree(owner), root(&tree, string()) {}
  // The marks go first: their journals may hold nodes of the tree.
  ~Impl() { tree.marks.reset(); }

  refhost::SettingsTree tree;
  refhost::SettingsNode root;
  refhost::HostRef<BackingStoreIO> store;
  std::optional<LoadedStore> loaded;
};

namespace {

constexpr char kProductBranch[] = "PRODUCTCODE";
constexpr char kModelNameKey[] = "ModelName";
constexpr char kDriverNameKey[] = "DriverName";
constexpr char kDriverNameProperty[] = "loom.driver.name";

// The file's path when `store` is a store on a file.
std::optional<std::filesystem::path> StoredFile(BackingStoreIO* store) {
  const auto* file = dynamic_cast<const FileBackingStoreIO*>(store);
  if (file == nullptr) return std::nullopt;
  return refhost::NativePath(file->path());
}

// The text of an archive member; nothing when it is missing.
std::optional<std::string> MemberText(const ArchiveBackingStoreIO& store) {
  Archive* const archive = store.archive();
  if (archive == nullptr || !archive->exists(store.member())) return std::nullopt;
  return std::string(archive->read(store.member()));
}

// The stored settings tree of `store` built into `target`; false when there is none.
// Text, from a file or an archive member, is built straight into the tree
// (refhost/settings_text.h): a DOM tree in between would cost its size again, twice over
// in UTF-16. A tree that does not convert (text that is not valid Unicode) counts as
// unreadable.
bool ReadStoredTree(BackingStoreIO* store, refhost::SettingsNode& target) {
  if (store == nullptr) return false;
  const std::optional<std::filesystem::path> path = StoredFile(store);
  const auto* member = dynamic_cast<const ArchiveBackingStoreIO*>(store);
  if (path || member != nullptr) {
    std::optional<std::string> text = path ? refhost::ReadWholeFile(*path) : MemberText(*member);
    return text && refhost::SettingsFromText(std::move(*text), target);
  }
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

// The version of what `store` holds now; nothing for a store without one (memory).
std::optional<StoreVersion> VersionOfStore(BackingStoreIO* store) {
  if (const std::optional<std::filesystem::path> path = StoredFile(store)) {
    const std::optional<refhost::FileVersion> version = refhost::VersionOf(*path);
    if (version) return std::pair(*path, *version);
    return std::nullopt;
  }
  const auto* member = dynamic_cast<const ArchiveBackingStoreIO*>(store);
  const auto* archive = member ? dynamic_cast<const refhost::ZipArchive*>(member->archive()) : nullptr;
  if (archive == nullptr) return std::nullopt;
  return std::pair(member->member(), archive->version());
}

// Whether the tree, with `changes` made so far, still is what `store` holds since it was
// `loaded`: a check after a load (the device factory reset's) then reads nothing.
bool StillAsLoaded(const std::optional<LoadedStore>& loaded, std::uint64_t changes,
                   BackingStoreIO* store) {
  return loaded && loaded->changes == changes && VersionOfStore(store) == loaded->version;
}

string StoredProductValue(const refhost::SettingsNode& tree, const char* key) {
  const refhost::SettingsNode* product = tree.findChild(string(kProductBranch));
  const refhost::SettingsNode* node = product ? product->findChild(string(key)) : nullptr;
  return node ? node->value() : string();
}

}  // namespace

PersistentSettings::PersistentSettings() : impl_(new Impl(this)) {}
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
  // A failed load leaves the tree as it was. The marks stay: they are keyed by path and
  // apply to the new content.
  BackingStoreIO* const store = impl_->store.get();
  const std::optional<StoreVersion> version = VersionOfStore(store);
  if (!impl_->root.reread(
          [store](refhost::SettingsNode& target) { return ReadStoredTree(store, target); })) {
    return false;
  }
  impl_->loaded.reset();
  if (version) impl_->loaded = LoadedStore{*version, impl_->tree.changes};
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
  refhost::SettingsNode read(nullptr, string());
  const refhost::SettingsNode* stored = &impl_->root;
  if (!StillAsLoaded(impl_->loaded, impl_->tree.changes, impl_->store.get())) {
    if (!ReadStoredTree(impl_->store.get(), read)) return false;
    stored = &read;
  }
  const string model = StoredProductValue(*stored, kModelNameKey);
  const string driver = StoredProductValue(*stored, kDriverNameKey);
  if (model.empty() && driver.empty()) return true;
  if (!properties.exists(kDriverNameProperty)) return false;
  const std::string printer = refhost::Utf8(properties.getString(kDriverNameProperty));
  const bool model_fits = model.empty() || printer == std::string_view(model) ||
                          printer.starts_with(std::string(model) + ' ');
  const bool driver_fits = driver.empty() || printer == std::string_view(driver);
  return model_fits && driver_fits;
}

}  // namespace Loom::Services
