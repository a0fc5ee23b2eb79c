#include "settings/persistent_settings.h"

#include <array>
#include <string_view>

#include "core/elements.h"
#include "core/text.h"
#include "host/file.h"
#include "host/os.h"
#include "host/properties.h"
#include "settings/settings_access.h"

using spindle::Count;
namespace access = spindle::settings_internal;

const spindle::Method<xPersistentSettings> xPersistentSettings::kMethods[] = {
    {{"removeSetting", Count::kAtLeast, 2, {Loom::kArgDocument}},
     &xPersistentSettings::RemoveSetting},
    {{"loadSetting", Count::kAtLeast, 4, {Loom::kArgDocument, Loom::kArgElement, Loom::kArgString}},
     &xPersistentSettings::LoadSetting},
    {{"selectItemWithSetting",
      Count::kAtLeast,
      4,
      {Loom::kArgDocument, Loom::kArgElement, Loom::kArgString, Loom::kArgString}},
     &xPersistentSettings::SelectItemWithSetting},
    // One key is enough here; "dev_settings" needs two (its values live below a branch).
    {{"saveSetting", Count::kAtLeast, 3, {Loom::kArgDocument}}, &xPersistentSettings::SaveSetting},
    {{"restorePersistentFactoryDefaults", Count::kExactly, 1, {Loom::kArgDocument}},
     &xPersistentSettings::RestorePersistentFactoryDefaults},
    {{"deleteUserRegKey", Count::kExactly, 2, {Loom::kArgDocument, Loom::kArgString}},
     &xPersistentSettings::DeleteUserRegKey},
    {{"mark", Count::kExactly, 1, {Loom::kArgDocument}}, &xPersistentSettings::Mark},
    {{"keep", Count::kExactly, 1, {Loom::kArgDocument}}, &xPersistentSettings::Keep},
    {{"revert", Count::kExactly, 1, {Loom::kArgDocument}}, &xPersistentSettings::Revert},
};

bool xPersistentSettings::call(const char* method, int argc, xarg_entry* args, xarg_entry*) {
  return spindle::Dispatch<xPersistentSettings>(*this, kMethods, false, method, argc, args);
}

namespace {

constexpr access::Tree kTree = access::Tree::kUser;

// The user's own branches: a factory reset leaves them exactly as they were.
constexpr std::array<std::string_view, 4> kUserOwnedBranches = {
    "TEMPLATE", "profiles", "CUSTOM_FORM_NAMES", "Custom Paper Size"};

// The device-level choice of the Others tab that outlives a reset of the user tree.
constexpr std::string_view kTabOthersBranch = "TAB_OTHERS";
constexpr std::string_view kUpdateAutoKey = "UpdateAuto";

constexpr std::u16string_view kFactoryFileSuffix = u"factdef.xml";
constexpr std::u16string_view kRegistryKeyBase = u"Software\\Spindle\\";
constexpr std::u16string_view kXpsAlwaysMarker = u"TANDEM_ALWAYS";

// Reloads `tree` from `store`, then puts the user-owned branches back as they were: a
// branch that existed goes back to its marked state, one that did not is removed again
// when the factory file brought it.
bool ReloadKeepingUserBranches(Loom::Services::PersistentSettings& tree,
                               Loom::SmartPtr<Loom::Services::BackingStoreIO> store) {
  std::array<bool, kUserOwnedBranches.size()> existed{};
  for (std::size_t i = 0; i < kUserOwnedBranches.size(); ++i) {
    const Loom::string key(kUserOwnedBranches[i]);
    existed[i] = tree.find(key) != nullptr;
    if (existed[i]) tree[key].mark();
  }
  bool loaded;
  {
    access::BorrowedStore borrowed(tree, std::move(store));
    loaded = tree.loadSettings();
  }
  for (std::size_t i = 0; i < kUserOwnedBranches.size(); ++i) {
    const Loom::string key(kUserOwnedBranches[i]);
    if (existed[i]) {
      tree[key].revert();
    } else {
      tree.remove(key);
    }
  }
  return loaded;
}

}  // namespace

bool xPersistentSettings::RemoveSetting(spindle::CallArgs& args) {
  return access::RemoveSetting(args, kTree);
}
bool xPersistentSettings::LoadSetting(spindle::CallArgs& args) {
  return access::LoadSetting(args, kTree);
}
bool xPersistentSettings::SelectItemWithSetting(spindle::CallArgs& args) {
  return access::SelectItemWithSetting(args, kTree);
}
bool xPersistentSettings::SaveSetting(spindle::CallArgs& args) {
  return access::SaveSetting(args, kTree);
}
bool xPersistentSettings::Mark(spindle::CallArgs& args) { return access::Mark(args, kTree); }
bool xPersistentSettings::Keep(spindle::CallArgs& args) { return access::Keep(args, kTree); }
bool xPersistentSettings::Revert(spindle::CallArgs& args) { return access::Revert(args, kTree); }

bool xPersistentSettings::RestorePersistentFactoryDefaults(spindle::CallArgs& args) {
  const spindle::DocPtr& doc = args.doc(0);
  Loom::SmartPtr<Loom::XUL::xWindow> window;
  Loom::Services::PersistentSettings* tree = access::TreeOf(doc, kTree, window);
  if (tree == nullptr) return false;
  const Loom::SmartPtr<Loom::PropertyManager> properties = doc->getUserData();
  if (!properties) return false;
  Loom::SmartPtr<Loom::Services::BackingStoreIO> factory =
      access::FactoryStore(doc, *properties, kFactoryFileSuffix);
  if (!factory) return false;
  if (!ReloadKeepingUserBranches(*tree, std::move(factory))) return false;

  // Only a choice the device tree actually holds is taken over; without one the factory
  // value stands.
  const std::optional<Loom::string> updateAuto =
      spindle::DeviceSetting(doc, kTabOthersBranch, kUpdateAutoKey);
  if (updateAuto) {
    (*tree)[Loom::string(kTabOthersBranch)][Loom::string(kUpdateAutoKey)] = *updateAuto;
  }
  return true;
}

bool xPersistentSettings::DeleteUserRegKey(spindle::CallArgs& args) {
  const spindle::DocPtr& doc = args.doc(0);
  if (!doc) return false;
  const Loom::SmartPtr<Loom::PropertyManager> properties = doc->getUserData();
  const auto property = [&properties](const char* key) {
    return properties ? properties->getString(key) : Loom::wstring();
  };
  if (property("weaver.output.jobtype") != u"XPS") {
    return Loom::OS::deleteUserRegistryKey(Loom::wstring(kRegistryKeyBase) +
                                           spindle::Widen(args.str(1)));
  }
  // The XPS driver keeps its "always" choice in a marker file instead of the registry.
  // Without an all-users directory there is no marker to remove (and no relative path
  // is ever tried).
  const Loom::wstring allUsers = property("loom.allusers.path");
  if (allUsers.empty()) return true;
  const Loom::File marker = Loom::File(allUsers) / Loom::wstring(kXpsAlwaysMarker);
  if (marker.exists()) marker.remove();
  return true;
}
