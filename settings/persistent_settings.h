// "settings" (xPersistentSettings): script access to the user settings tree of the calling
// document's window: store, recall, select from and remove values by path, snapshot the
// tree for a dialog's OK and Cancel, restore the factory defaults, and forget the user's
// registry key.
//
// The object holds no state; every call goes to the tree of the document's window. The
// bodies it shares with "dev_settings" are in settings/settings_access.h.
#pragma once

#include "core/dispatch.h"
#include "host/xclass.h"

class xPersistentSettings final : public xClass {
 public:
  // Unmatched names, counts and kinds answer false.
  bool call(const char* method, int argc, xarg_entry* args, xarg_entry* result) override;

 private:
  static const spindle::Method<xPersistentSettings> kMethods[];

  bool RemoveSetting(spindle::CallArgs& args);
  bool LoadSetting(spindle::CallArgs& args);
  bool SelectItemWithSetting(spindle::CallArgs& args);
  // Takes a single key as well: saveSetting(doc, "A", "x") sets root["A"].
  bool SaveSetting(spindle::CallArgs& args);
  // Reloads the tree from "<prefix>factdef.xml" (the UI archive's member, else the file in
  // the driver directory), keeping the user's own branches "TEMPLATE", "profiles",
  // "CUSTOM_FORM_NAMES" and "Custom Paper Size" exactly as they were and the tree's backing
  // store; then takes "TAB_OTHERS"/"UpdateAuto" over from the device tree. False, with
  // nothing changed, when there is no factory file or it cannot be read.
  bool RestorePersistentFactoryDefaults(spindle::CallArgs& args);
  // Deletes HKCU "Software\Spindle\<subkey>", or for the XPS driver the file
  // "TANDEM_ALWAYS" in the all-users directory. False when the registry deletion fails,
  // and for a null document (there is no driver to ask for its job type).
  bool DeleteUserRegKey(spindle::CallArgs& args);
  bool Mark(spindle::CallArgs& args);
  bool Keep(spindle::CallArgs& args);
  bool Revert(spindle::CallArgs& args);
};
