// "dev_settings" (xDevSettings): script access to the device settings tree of the calling
// document's window: the same methods as "settings" on the device tree, except that a
// saved value always lives below a branch (saveSetting needs two keys), a factory reset
// restores one named branch, and there is no registry key to delete.
//
// The object holds no state; the bodies it shares with "settings" are in
// settings/settings_access.h.
#pragma once

#include "core/dispatch.h"
#include "host/xclass.h"

class xDevSettings final : public xClass {
 public:
  // Unmatched names, counts and kinds answer false.
  bool call(const char* method, int argc, xarg_entry* args, xarg_entry* result) override;

 private:
  static const spindle::Method<xDevSettings> kMethods[];

  bool RemoveSetting(spindle::CallArgs& args);
  bool LoadSetting(spindle::CallArgs& args);
  bool SelectItemWithSetting(spindle::CallArgs& args);
  // saveSetting(doc, k1, ..., k(n-1), value) with at least two keys.
  bool SaveSetting(spindle::CallArgs& args);
  // restorePersistentFactoryDefaults(doc, branch): root[branch] becomes the branch as the
  // device factory files hold it (see DeviceFactoryBranch in the source for the rules).
  // False, with nothing changed, when no valid factory file holds the branch.
  bool RestorePersistentFactoryDefaults(spindle::CallArgs& args);
  bool Mark(spindle::CallArgs& args);
  bool Keep(spindle::CallArgs& args);
  bool Revert(spindle::CallArgs& args);
};
