// "customisation" (xCustomisation): The customisation dialog: UI language and the driver's
// plug-ins, with their exclusions, output-language support and factory selection.
//
// The dialog's scripts call it when the dialog opens (loadDlg), when a plug-in box is
// ticked (checkPluginExclusions, checkPlugin), for the factory button
// (restoreDefaultsPlugins) and on OK (okClick). Plug-in boxes are the check box children
// of "plugins"; each carries as id its plug-in's name with every blank removed. Every
// method is a quiet no-op without its document or elements and answers true once its
// name and arguments match.
#pragma once

#include "core/dispatch.h"
#include "host/xclass.h"

class xCustomisation final : public xClass {
 public:
  bool call(const char* method, int argc, xarg_entry* args, xarg_entry* result) override;

 private:
  static const spindle::Method<xCustomisation> kMethods[];

  // loadDlg(document): fills "languages" ("Auto" first, then the installed languages) and
  // selects the stored language; builds one check box per plug-in under "plugins".
  bool LoadDlg(spindle::CallArgs& args);
  // okClick(document): stores the language (device "customisation"/"Language" and the
  // user's "locale.txt"), applies every plug-in box to the host, and resets
  // "DEFMENUSETTINGS" to "Basic" when its plug-in has just been switched off.
  bool OkClick(spindle::CallArgs& args);
  // checkPluginExclusions(document, box): greys out the boxes of the plug-ins the box's
  // plug-in excludes while it is ticked, and releases them when it is not.
  bool CheckPluginExclusions(spindle::CallArgs& args);
  // checkPlugin(document, name, box): disables the box unless the plug-in is enabled and
  // supports the output language ("weaver.output.jobtype").
  bool CheckPlugin(spindle::CallArgs& args);
  // restoreDefaultsPlugins(document): ticks exactly the boxes of the printer's factory
  // plug-ins ("PrinterDriverData"/"Plugins") that are not disabled.
  bool RestoreDefaultsPlugins(spindle::CallArgs& args);
};
