// "impexpbut" (xImportExportButton): Export of the driver's configuration into one archive file,
// and its import after the user confirms (the Others tab's Export and Import buttons).
//
// An export file is a copy of the driver's UI archive with the user's custom paper sizes
// ("Zucustpap.xml") and a pruned copy of the user settings tree ("Zuconf_export.xml":
// "TEMPLATE" whole and the "setting" entries of "IMAGE_QUALITY"), without the members
// that belong to one machine. Nothing a user has is lost on a failed export or import:
// the export is written beside its target and renamed into place, the live settings read
// exactly as before on every export path, and an import judges the whole archive first
// and extracts it into a folder of its own before anything is moved into place. Failures
// are handed to the scripts as "err_Export" / "err_Import" = "true".
#pragma once

#include "core/dispatch.h"
#include "host/loom_base.h"
#include "host/xclass.h"

class xImportExportButton final : public xClass {
 public:
  bool call(const char* method, int argc, xarg_entry* args, xarg_entry* result) override;

 private:
  static const spindle::Method<xImportExportButton> kMethods[];

  // enable(document): enables both buttons when the UI archive can be found, else
  // disables them ("disabled" = "false" / "true").
  bool Enable(spindle::CallArgs& args);
  // SaveSettingsForExport(document): asks for the file and exports into it.
  bool SaveSettingsForExport(spindle::CallArgs& args);
  // LoadSettingsForImport(document): asks for the file, checks that it is an archive,
  // remembers it and opens the confirmation dialog.
  bool LoadSettingsForImport(spindle::CallArgs& args);
  // setConfirmedOK(document): imports the remembered file.
  bool SetConfirmedOK(spindle::CallArgs& args);
  // applyCustomSetting(document): refreshes the lists an import may have changed.
  bool ApplyCustomSetting(spindle::CallArgs& args);

  // The file LoadSettingsForImport chose, for setConfirmedOK.
  Loom::wstring importPath_;
};
