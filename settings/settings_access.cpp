#include "settings/settings_access.h"

#include <utility>

#include "core/elements.h"
#include "core/text.h"
#include "host/codes.h"
#include "host/file.h"

namespace spindle::settings_internal {

namespace {

// Arguments of loadSetting and selectItemWithSetting: document, element, attribute, keys.
constexpr int kElementArg = 1;
constexpr int kAttributeArg = 2;
constexpr int kFirstReadKeyArg = 3;
// Arguments of removeSetting and saveSetting: document, keys (and, for save, the value).
constexpr int kFirstWriteKeyArg = 1;

// The node a load or select call reads, with the window that owns its tree held; no
// node when the document has no window.
struct StoredRead {
  Loom::SmartPtr<Loom::XUL::xWindow> window;
  Loom::Services::PersistentItem* node = nullptr;
};

// Nothing when a key is not a string.
std::optional<StoredRead> ReadTarget(CallArgs& args, Tree which) {
  const std::optional<Keys> keys = KeysFrom(args, kFirstReadKeyArg, args.count());
  if (!keys) return std::nullopt;
  StoredRead read;
  if (Loom::Services::PersistentSettings* tree = TreeOf(args.doc(0), which, read.window)) {
    read.node = &Descend(*tree, *keys);
  }
  return read;
}

}  // namespace

std::optional<Keys> KeysFrom(const CallArgs& args, int first, int end) {
  Keys keys;
  for (int i = first; i < end; ++i) {
    if (!args.isString(i)) return std::nullopt;
    keys.emplace_back(args.str(i));
  }
  return keys;
}

Loom::Services::PersistentItem& Descend(Loom::Services::PersistentItem& root, const Keys& keys) {
  Loom::Services::PersistentItem* node = &root;
  for (const Loom::string& key : keys) node = &(*node)[key];
  return *node;
}

Loom::Services::PersistentSettings* TreeOf(const DocPtr& doc, Tree which,
                                           Loom::SmartPtr<Loom::XUL::xWindow>& window) {
  window = WindowOf(doc);
  if (!window) return nullptr;
  return which == Tree::kUser ? &window->getSettings() : &window->getDevSettings();
}

bool RemoveSetting(CallArgs& args, Tree which) {
  std::optional<Keys> keys = KeysFrom(args, kFirstWriteKeyArg, args.count());
  if (!keys) return false;
  Loom::SmartPtr<Loom::XUL::xWindow> window;
  Loom::Services::PersistentSettings* tree = TreeOf(args.doc(0), which, window);
  if (tree == nullptr) return true;
  const Loom::string leaf = std::move(keys->back());
  keys->pop_back();
  Descend(*tree, *keys).remove(leaf);
  return true;
}

bool LoadSetting(CallArgs& args, Tree which) {
  Loom::SmartPtr<Loom::XUL::xWindow> window;
  Loom::Services::PersistentSettings* tree = TreeOf(args.doc(0), which, window);
  if (tree == nullptr) return KeysFrom(args, kFirstReadKeyArg, args.count()).has_value();
  return LoadSettingFrom(args, *tree);
}

bool LoadSettingFrom(CallArgs& args, Loom::Services::PersistentItem& root) {
  const std::optional<Keys> keys = KeysFrom(args, kFirstReadKeyArg, args.count());
  if (!keys) return false;
  Loom::Services::PersistentItem& node = Descend(root, *keys);
  if (const ElemPtr& elem = args.elem(kElementArg)) {
    elem->setAttribute(Widen(args.str(kAttributeArg)), Widen(static_cast<Loom::string>(node)));
  }
  return true;
}

bool SelectItemWithSetting(CallArgs& args, Tree which) {
  const std::optional<StoredRead> read = ReadTarget(args, which);
  if (!read) return false;
  const ElemPtr& list = args.elem(kElementArg);
  if (read->node == nullptr || !list) return true;
  const Loom::wstring stored = Widen(static_cast<Loom::string>(*read->node));
  const Loom::wstring attribute = Widen(args.str(kAttributeArg));
  const Loom::XUL::ElemList items = ChildrenOfType(list, Loom::kElemMenuItem);
  for (std::size_t i = 0; i < items.size(); ++i) {
    if (items[i]->getAttribute(attribute) == stored) {
      list->setSelectedIndex(static_cast<int>(i));
      break;
    }
  }
  return true;
}

bool SaveSetting(CallArgs& args, Tree which) {
  const int valueArg = args.count() - 1;
  const std::optional<Keys> keys = KeysFrom(args, kFirstWriteKeyArg, valueArg);
  if (!keys || !args.isString(valueArg)) return false;
  Loom::SmartPtr<Loom::XUL::xWindow> window;
  if (Loom::Services::PersistentSettings* tree = TreeOf(args.doc(0), which, window)) {
    Descend(*tree, *keys) = Loom::string(args.str(valueArg));
  }
  return true;
}

bool Mark(CallArgs& args, Tree which) {
  Loom::SmartPtr<Loom::XUL::xWindow> window;
  if (Loom::Services::PersistentSettings* tree = TreeOf(args.doc(0), which, window)) tree->mark();
  return true;
}

bool Keep(CallArgs& args, Tree which) {
  Loom::SmartPtr<Loom::XUL::xWindow> window;
  if (Loom::Services::PersistentSettings* tree = TreeOf(args.doc(0), which, window)) tree->keep();
  return true;
}

bool Revert(CallArgs& args, Tree which) {
  Loom::SmartPtr<Loom::XUL::xWindow> window;
  if (Loom::Services::PersistentSettings* tree = TreeOf(args.doc(0), which, window)) {
    tree->revert();
  }
  return true;
}

Loom::SmartPtr<Loom::Services::BackingStoreIO> FactoryStore(const DocPtr& doc,
                                                            const Loom::PropertyManager& properties,
                                                            std::u16string_view suffix) {
  using Loom::Services::BackingStoreIO;
  const Loom::wstring name = properties.getString("loom.driver.prefix") + Loom::wstring(suffix);
  // The host's flag arguments of a store that only reads an existing file: (0, 1).
  constexpr int kReadOnly = 1;
  constexpr int kNoCreate = 0;
  if (const Loom::SmartPtr<Loom::Services::Archive> archive = doc->getArchive()) {
    if (archive->exists(name)) {
      return Loom::SmartPtr<BackingStoreIO>(
          new Loom::Services::ArchiveBackingStoreIO(archive, name, kReadOnly));
    }
  }
  const Loom::File file = Loom::File(properties.getString("loom.driver.path")) / name;
  if (!file.exists()) return nullptr;
  return Loom::SmartPtr<BackingStoreIO>(
      new Loom::Services::FileBackingStoreIO(file, kNoCreate, kReadOnly));
}

Loom::wstring UserDirectory(const DocPtr& doc) {
  const Loom::SmartPtr<Loom::PropertyManager> properties = doc ? doc->getUserData() : nullptr;
  return properties ? properties->getString("loom.user.path") : Loom::wstring();
}

void CopyBranch(Loom::Services::PersistentItem& source, Loom::Services::PersistentItem& target) {
  using Loom::Services::PersistentItem;
  // A work list rather than recursion: a branch may be as deep as a file makes it.
  Loom::vector<std::pair<PersistentItem*, PersistentItem*>> pending{{&source, &target}};
  while (!pending.empty()) {
    const auto [from, to] = pending.back();
    pending.pop_back();
    *to = static_cast<Loom::string>(*from);
    // Keys first, then removals: a removal renumbers the children childAt walks.
    Loom::vector<Loom::string> old;
    old.reserve(to->getNumChildren());
    for (std::size_t i = 0; i < to->getNumChildren(); ++i) old.push_back(to->childAt(i).key());
    for (const Loom::string& key : old) to->remove(key);
    for (std::size_t i = 0; i < from->getNumChildren(); ++i) {
      PersistentItem& child = from->childAt(i);
      pending.emplace_back(&child, &(*to)[child.key()]);
    }
  }
}

}  // namespace spindle::settings_internal
