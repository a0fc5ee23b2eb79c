// "defMenuSettings" (xdefMenuSettings): the default menu choice of the Others tab. The menu
// list "cmb_DefMenSet" names plug-ins of the host; only the entries of enabled plug-ins may
// be chosen, and the choice is stored as "DEFMENUSETTINGS" at the root of the user tree.
//
// Whether the tree is saved afterwards is the dialog's business (settings.mark / keep /
// revert around it).
#pragma once

#include "core/dispatch.h"
#include "host/xclass.h"

class xdefMenuSettings final : public xClass {
 public:
  // Unmatched names, counts and kinds answer false.
  bool call(const char* method, int argc, xarg_entry* args, xarg_entry* result) override;

 private:
  static const spindle::Method<xdefMenuSettings> kMethods[];

  // Hides every item, shows those of enabled plug-ins, then selects by position the first
  // item whose value is the stored choice (no match leaves the selection). True.
  bool LoadDefMenuSettings(spindle::CallArgs& args);
  // Stores the value of the first selected item ("" when none is selected). True.
  bool SaveDefMenuSettings(spindle::CallArgs& args);
};
