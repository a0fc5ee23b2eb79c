// What the configuration dialogs of a sheet need around them: the printer's registry data
// (the multi-string values under its driver keys, such as the factory plug-in list
// "PrinterDriverData"/"Plugins"), the dialog documents the library opens
// (Loom::XUL::openDialog), the plug-ins' state after a call, and the image-quality
// plug-in's script object "imgQuality" (refhost/image_quality.h), defined for every file. Each file
// starts with no dialog opened; the registry data belongs to the spooler's printers, which every
// file starts without.
#include <algorithm>
#include <optional>
#include <string>
#include <vector>

#include "refhost/dialogs.h"
#include "refhost/image_quality.h"
#include "refhost/script_env.h"
#include "refhost/spooler.h"
#include "refhost/window.h"
#include "tools/loomsim/grammar.h"
#include "tools/loomsim/host_text.h"
#include "tools/loomsim/scenario.h"
#include "tools/loomsim/text_values.h"

namespace loomsim {
namespace {

// "A,B": the entries as written between the commas, blanks kept (plug-in names hold
// them); "" is no entry at all.
std::vector<std::u16string> Entries(const std::u16string& joined) {
  std::vector<std::u16string> entries;
  if (joined.empty()) return entries;
  for (std::size_t start = 0;;) {
    const std::size_t comma = joined.find(u',', start);
    entries.push_back(joined.substr(start, comma - start));
    if (comma == std::u16string::npos) return entries;
    start = comma + 1;
  }
}

// printerdata "PrinterDriverData" "Plugins" = "Finishing Options,Booklet"
Parsed ParsePrinterData(StatementInput& input) {
  Cursor& cursor = input.cursor();
  const std::u16string key = WideQuotedText(cursor, "the quoted registry key of the printer");
  const std::u16string value = WideQuotedText(cursor, "the quoted name of the value");
  cursor.Expect("=", "'=' and the quoted entries, joined by ','");
  const std::u16string joined = WideQuotedText(cursor, "the quoted entries, joined by ','");
  return {"printerdata " + Quote(key) + " " + Quote(value) + " = " + Quote(joined),
          [key, value, joined](Scenario&) {
            const std::optional<std::u16string> printer = refhost::spooler().currentPrinter();
            if (!printer) {
              throw SetupError{"no printer to give the value to: write printer \"NAME\" first"};
            }
            refhost::spooler().setMultiString(*printer, key, value, Entries(joined));
          }};
}

std::string DialogText(const refhost::OpenedDialog& dialog) {
  return Quote(dialog.fileName) + " title " + Quote(dialog.title);
}

std::string Listed(const std::vector<std::string>& dialogs) {
  if (dialogs.empty()) return "no dialog";
  std::string text;
  for (const std::string& dialog : dialogs) text += (text.empty() ? "" : ", ") + dialog;
  return text;
}

// expect dialog "Zuhdlg_confirmImport.xul" title "$IDS_DLG_IMPORT;"
Parsed ParseDialogExpectation(StatementInput& input) {
  Cursor& cursor = input.cursor();
  const std::u16string file = WideQuotedText(cursor, "the quoted file name of the dialog");
  cursor.Expect("title", "title \"TEXT\" after the file name");
  const std::u16string title = WideQuotedText(cursor, "the quoted title of the dialog");
  const std::string expected = DialogText({file, title});
  return {"expect dialog " + expected, [expected](Scenario& scenario) {
            const LastCall* last = scenario.LastCallForCheck();
            if (last == nullptr) return;
            const bool found = std::find(last->dialogs.begin(), last->dialogs.end(), expected) !=
                               last->dialogs.end();
            scenario.Check(found, Listed(last->dialogs));
          }};
}

Parsed ParseNoDialogExpectation(StatementInput&) {
  return {"expect no dialog", [](Scenario& scenario) {
            const LastCall* last = scenario.LastCallForCheck();
            if (last != nullptr) scenario.Check(last->dialogs.empty(), Listed(last->dialogs));
          }};
}

// expect plugin "Finishing Options" enabled
Parsed ParsePluginExpectation(StatementInput& input) {
  Cursor& cursor = input.cursor();
  const std::string name = cursor.Text("the quoted name of the plug-in");
  const bool enabled = cursor.Accept("enabled");
  if (!enabled && !cursor.Accept("disabled")) cursor.Fail("enabled or disabled");
  return {"expect plugin " + Quote(name) + (enabled ? " enabled" : " disabled"),
          [name, enabled](Scenario& scenario) {
            const refhost::PluginInfo* plugin = scenario.sheet().window().plugin(name);
            if (plugin == nullptr) return scenario.Check(false, "no such plug-in");
            scenario.Check(plugin->enabled == enabled, plugin->enabled ? "enabled" : "disabled");
          }};
}

void StartConfiguration(Scenario& scenario) {
  // The image-quality plug-in's object, as the other driver library defines it for pages.
  scenario.sheet().scriptEnv().defineObject(
      "imgQuality",
      Loom::SmartPtr<Loom::JS::Object>(new refhost::NativeObject(&refhost::imageQualityPlugin())));
  refhost::dialogs().reset();
  refhost::dialogs().setListener([&scenario](const refhost::OpenedDialog& dialog) {
    const std::string text = DialogText(dialog);
    scenario.lastCall().dialogs.push_back(text);
    scenario.NoteChange("> dialog " + text);
  });
}

constexpr StatementForm kForms[] = {
    {"printerdata", "printerdata \"KEY\" \"VALUE\" = \"A,B\"", ParsePrinterData},
    {"expect dialog", "expect dialog \"FILE.xul\" title \"TEXT\"", ParseDialogExpectation},
    {"expect no dialog", "expect no dialog", ParseNoDialogExpectation},
    {"expect plugin", "expect plugin \"NAME\" enabled|disabled", ParsePluginExpectation},
};

}  // namespace

extern const Facility kConfigurationFacility{"printer data, dialogs and plug-in states", kForms,
                                             StartConfiguration};

}  // namespace loomsim
