// "profiles" (xProfiles): Named user profiles: the profile list, writing a profile from the live
// document, applying, deleting and checking profiles, and the temporary profile.
//
// The profile list is a settings tree of the object's own over "Zuhprofiles.xml" in the
// user directory ("loom.user.path"), opened on first use (a temporary profile left in it
// by an earlier run is dropped then) and kept for the object's life. Each profile is a
// stored document "zuprof000.xml" .. "zuprof019.xml" (at most 20); the temporary profile,
// one per printer model, is "<model>.xml". A profile's list entry is written only after
// its file was saved, so a failed save leaves the list as it was.
#pragma once

#include "core/dispatch.h"
#include "host/settings.h"
#include "host/xclass.h"

class xProfiles final : public xClass {
 public:
  bool call(const char* method, int argc, xarg_entry* args, xarg_entry* result) override;

 private:
  static const spindle::Method<xProfiles> kMethods[];

  // generateProfilesList / regenerateProfilesList(document, list): the menu list gets one
  // item per profile of the list (key as value, label shown).
  bool GenerateProfilesList(spindle::CallArgs& args);
  // selectProfile(document, list): applies the profile selected in the list; false when
  // none is selected or it cannot be applied.
  bool SelectProfile(spindle::CallArgs& args);
  // setProfile(document, name): applies the named profile; false when it or its file is
  // missing. The fields a profile never overwrites read afterwards as before.
  bool SetProfile(spindle::CallArgs& args);
  // addProfile(document, elem): saves the document as the profile named by
  // "edit_ComProfileName" (replacing one of that name); false when it cannot be written
  // (no name, no free slot, the file cannot be saved).
  bool AddProfile(spindle::CallArgs& args);
  // addTempProfile(document, elem): the same as the temporary profile of the model.
  bool AddTempProfile(spindle::CallArgs& args);
  // deleteProfile(document, list): removes the selected profile's file and entry, clears
  // it from the template buttons and regenerates the list.
  bool DeleteProfile(spindle::CallArgs& args);
  // checkProfileName(document, elem, name): elem's value "true" when the name is used.
  bool CheckProfileName(spindle::CallArgs& args);
  // areProfilesFull(document, elem): elem's "increment" "true" while a slot is free.
  bool AreProfilesFull(spindle::CallArgs& args);
  // getProfileFileTemplate(document, elem, name): elem's value = the profile's file path
  // ("" when there is no such profile).
  bool GetProfileFileTemplate(spindle::CallArgs& args);
  // getProfileNameTemplate(document, elem, key): elem's value = the entry's display name
  // ("" when there is no such entry).
  bool GetProfileNameTemplate(spindle::CallArgs& args);
  // loadSetting(document, elem, attribute, k1, ..., kn): as "settings", on the list tree.
  bool LoadSetting(spindle::CallArgs& args);

  // The list tree, opened from the user directory of `doc` on first use; null when the
  // document names no user directory.
  Loom::Services::PersistentSettings* List(const spindle::DocPtr& doc);
  bool SaveProfile(const spindle::DocPtr& doc, bool temporary);
  bool ApplyProfile(const spindle::DocPtr& doc, const Loom::string& key);

  Loom::Services::PersistentSettings list_;
  bool listOpened_ = false;
};
