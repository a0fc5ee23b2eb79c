// The bodies shared by "settings" (xPersistentSettings, the user tree) and "dev_settings"
// (xDevSettings, the device tree).
//
// Both objects offer the same script methods on a different tree of the calling
// document's window; only their method tables (argument counts) and their factory resets
// differ. Each object's handlers name the tree and call these bodies, so the path rules,
// the selection rule and the snapshot calls exist once.
//
// A setting path arrives as a run of string arguments, one key per level; descending it
// applies PersistentItem::operator[] key by key, so levels that are missing are created on
// the way (reading a path that was never written leaves its empty nodes behind).
#pragma once

#include <optional>
#include <string_view>

#include "core/dispatch.h"
#include "host/loom_base.h"
#include "host/properties.h"
#include "host/settings.h"
#include "host/xul.h"

namespace spindle::settings_internal {

enum class Tree { kUser, kDevice };

using Keys = Loom::vector<Loom::string>;

// The arguments [first, end) as keys; nothing when one of them is not a string.
std::optional<Keys> KeysFrom(const CallArgs& args, int first, int end);

// The node root[k1]...[kn], created level by level where missing.
Loom::Services::PersistentItem& Descend(Loom::Services::PersistentItem& root, const Keys& keys);

// The `which` tree of the window of `doc`, held through `window`; null when the document
// is null or has no window.
Loom::Services::PersistentSettings* TreeOf(const DocPtr& doc, Tree which,
                                           Loom::SmartPtr<Loom::XUL::xWindow>& window);

// removeSetting(doc, k1, ..., kn): removes kn (with its subtree) from root[k1]...[k(n-1)].
// False when a key is not a string.
bool RemoveSetting(CallArgs& args, Tree which);
// loadSetting(doc, elem, attribute, k1, ..., kn): the stored value, widened, becomes the
// named attribute of elem. False when a key is not a string.
bool LoadSetting(CallArgs& args, Tree which);
// The same on `root` (the profile list's own tree) instead of a window's tree.
bool LoadSettingFrom(CallArgs& args, Loom::Services::PersistentItem& root);
// selectItemWithSetting(doc, list, attribute, k1, ..., kn): selects the first item of
// the list whose named attribute equals the stored value; no match changes nothing.
// False when a key is not a string.
bool SelectItemWithSetting(CallArgs& args, Tree which);
// saveSetting(doc, k1, ..., k(n-1), value): root[k1]...[k(n-1)] = value. The minimum
// number of keys is the caller's method table's business. False when a key or the value
// is not a string.
bool SaveSetting(CallArgs& args, Tree which);
// mark / keep / revert of the whole tree. Always true.
bool Mark(CallArgs& args, Tree which);
bool Keep(CallArgs& args, Tree which);
bool Revert(CallArgs& args, Tree which);

// The store on the factory file `name` ("loom.driver.prefix" directly followed by
// `suffix`): a read-only store on that member of the document's UI archive when the
// archive holds it, else on that file in the directory "loom.driver.path" when it exists;
// null when neither holds it.
Loom::SmartPtr<Loom::Services::BackingStoreIO> FactoryStore(const DocPtr& doc,
                                                            const Loom::PropertyManager& properties,
                                                            std::u16string_view suffix);

// For as long as it lives, `tree` reads from and writes to `store`; its own store is set
// back on every path out, exceptions included.
class BorrowedStore {
 public:
  BorrowedStore(Loom::Services::PersistentSettings& tree,
                Loom::SmartPtr<Loom::Services::BackingStoreIO> store)
      : tree_(tree), own_(tree.getBackingStoreIO()) {
    tree_.setBackingStoreIO(std::move(store));
  }
  ~BorrowedStore() { tree_.setBackingStoreIO(own_); }
  BorrowedStore(const BorrowedStore&) = delete;
  BorrowedStore& operator=(const BorrowedStore&) = delete;

 private:
  Loom::Services::PersistentSettings& tree_;
  Loom::SmartPtr<Loom::Services::BackingStoreIO> own_;
};

// The user directory of the document's printer (its property "loom.user.path"); "" when
// it is not set or the document has no properties.
Loom::wstring UserDirectory(const DocPtr& doc);

// Makes `target` an exact copy of `source`: its value and its whole subtree, in order.
void CopyBranch(Loom::Services::PersistentItem& source, Loom::Services::PersistentItem& target);

}  // namespace spindle::settings_internal
