#include "settings/dev_settings.h"

#include <array>
#include <string_view>

#include "core/elements.h"
#include "host/printer.h"
#include "host/properties.h"
#include "settings/settings_access.h"

using spindle::Count;
namespace access = spindle::settings_internal;

const spindle::Method<xDevSettings> xDevSettings::kMethods[] = {
    {{"removeSetting", Count::kAtLeast, 2, {Loom::kArgDocument}}, &xDevSettings::RemoveSetting},
    {{"loadSetting", Count::kAtLeast, 4, {Loom::kArgDocument, Loom::kArgElement, Loom::kArgString}},
     &xDevSettings::LoadSetting},
    {{"selectItemWithSetting",
      Count::kAtLeast,
      4,
      {Loom::kArgDocument, Loom::kArgElement, Loom::kArgString, Loom::kArgString}},
     &xDevSettings::SelectItemWithSetting},
    // Two keys and a value at least: device settings always live one level below a branch,
    // and the scripts rely on a single-key save being refused.
    {{"saveSetting", Count::kAtLeast, 4, {Loom::kArgDocument}}, &xDevSettings::SaveSetting},
    {{"restorePersistentFactoryDefaults",
      Count::kExactly,
      2,
      {Loom::kArgDocument, Loom::kArgString}},
     &xDevSettings::RestorePersistentFactoryDefaults},
    {{"mark", Count::kExactly, 1, {Loom::kArgDocument}}, &xDevSettings::Mark},
    {{"keep", Count::kExactly, 1, {Loom::kArgDocument}}, &xDevSettings::Keep},
    {{"revert", Count::kExactly, 1, {Loom::kArgDocument}}, &xDevSettings::Revert},
};

bool xDevSettings::call(const char* method, int argc, xarg_entry* args, xarg_entry*) {
  return spindle::Dispatch<xDevSettings>(*this, kMethods, false, method, argc, args);
}

namespace {

using Loom::Services::PersistentItem;
using Loom::Services::PersistentSettings;

constexpr access::Tree kTree = access::Tree::kDevice;

// The device factory files, in the order they are consulted: the device configuration
// first; the main sheet's defaults fill in what it leaves out.
constexpr std::array<std::u16string_view, 2> kDeviceFactoryFiles = {u"devSettings.xml",
                                                                    u"defmaingui.xml"};

// The drawers' paper names: "<drawer>Paper" keys below "DrawerSettings". A factory file
// leaves one empty to mean the paper of the region the driver was shipped to.
constexpr std::string_view kDrawerSettingsBranch = "DrawerSettings";
constexpr std::string_view kPaperKeySuffix = "Paper";
constexpr std::string_view kNorthAmericanPaper = "Letter";
constexpr std::string_view kDefaultPaper = "A4";

// Whether the branch is refreshed from the device itself: the administrator's choice, not
// a factory value, so a reset keeps it.
constexpr std::string_view kUpdateAutoKey = "UpdateAuto";

// Adds to `target` every child of `source` whose key it does not hold yet.
void FillMissing(PersistentItem& source, PersistentItem& target) {
  for (std::size_t i = 0; i < source.getNumChildren(); ++i) {
    PersistentItem& child = source.childAt(i);
    if (target.find(child.key()) == nullptr) access::CopyBranch(child, target[child.key()]);
  }
}

void FillRegionPapers(PersistentItem& drawers) {
  const Loom::string paper(Loom::isNorthAmericanShipment() ? kNorthAmericanPaper : kDefaultPaper);
  for (std::size_t i = 0; i < drawers.getNumChildren(); ++i) {
    PersistentItem& drawer = drawers.childAt(i);
    const std::string_view key = drawer.key();
    if (key.ends_with(kPaperKeySuffix) && static_cast<Loom::string>(drawer).empty()) {
      drawer = paper;
    }
  }
}

// Builds the factory state of `branch` into `factory`: the branch of the first valid
// device factory file that holds it, completed by the children only the later files
// hold. A file that isXMLConfigValid rejects for this printer is passed over. False when
// no valid file holds the branch.
bool DeviceFactoryBranch(const spindle::DocPtr& doc, const Loom::PropertyManager& properties,
                         const Loom::string& branch, PersistentItem& factory) {
  bool found = false;
  for (const std::u16string_view file : kDeviceFactoryFiles) {
    PersistentSettings stored;
    stored.setBackingStoreIO(access::FactoryStore(doc, properties, file));
    if (!stored.loadSettings() || !stored.isXMLConfigValid(properties)) continue;
    PersistentItem* source = stored.find(branch);
    if (source == nullptr) continue;
    if (found) {
      FillMissing(*source, factory);
    } else {
      access::CopyBranch(*source, factory);
      found = true;
    }
  }
  if (found && std::string_view(branch) == kDrawerSettingsBranch) FillRegionPapers(factory);
  return found;
}

}  // namespace

bool xDevSettings::RemoveSetting(spindle::CallArgs& args) {
  return access::RemoveSetting(args, kTree);
}
bool xDevSettings::LoadSetting(spindle::CallArgs& args) { return access::LoadSetting(args, kTree); }
bool xDevSettings::SelectItemWithSetting(spindle::CallArgs& args) {
  return access::SelectItemWithSetting(args, kTree);
}
bool xDevSettings::SaveSetting(spindle::CallArgs& args) { return access::SaveSetting(args, kTree); }
bool xDevSettings::Mark(spindle::CallArgs& args) { return access::Mark(args, kTree); }
bool xDevSettings::Keep(spindle::CallArgs& args) { return access::Keep(args, kTree); }
bool xDevSettings::Revert(spindle::CallArgs& args) { return access::Revert(args, kTree); }

bool xDevSettings::RestorePersistentFactoryDefaults(spindle::CallArgs& args) {
  const spindle::DocPtr& doc = args.doc(0);
  Loom::SmartPtr<Loom::XUL::xWindow> window;
  PersistentSettings* tree = access::TreeOf(doc, kTree, window);
  if (tree == nullptr) return false;
  const Loom::SmartPtr<Loom::PropertyManager> properties = doc->getUserData();
  if (!properties) return false;
  const Loom::string branch(args.str(1));
  PersistentSettings factory;
  if (!DeviceFactoryBranch(doc, *properties, branch, factory)) return false;

  PersistentItem& target = (*tree)[branch];
  const std::optional<Loom::string> updateAuto =
      spindle::DeviceSetting(doc, std::string_view(branch), kUpdateAutoKey);
  access::CopyBranch(factory, target);
  if (updateAuto) target[Loom::string(kUpdateAutoKey)] = *updateAuto;
  return true;
}
