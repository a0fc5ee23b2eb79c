// The window's plug-ins and string table, as the host loaded them for the sheet: the
// plug-ins with their enabled state, label, supported printer languages and exclusions
// (Loom::XUL::xWindow::getPlugins and the plug-in list calls), and the texts that "$NAME;"
// references resolve to (resolveString). Both belong to the window, and every scenario
// file gets a fresh one: a file starts with no plug-in and an empty string table.
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "refhost/window.h"
#include "tools/loomsim/grammar.h"
#include "tools/loomsim/host_text.h"
#include "tools/loomsim/scenario.h"
#include "tools/loomsim/text_values.h"

namespace loomsim {
namespace {

constexpr std::string_view kOptions = "label \"text\", pdl \"A,B\" or excludes \"A,B\", each once";

std::string_view Trimmed(std::string_view text) {
  const std::size_t first = text.find_first_not_of(' ');
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

// "PS, PCLXL": names joined by ',', blanks around them dropped; "" is no name at all.
std::vector<std::string> NameList(Cursor& cursor, std::string_view what) {
  const std::string_view written = cursor.Rest();
  const std::string text = cursor.Text(what);
  std::vector<std::string> names;
  if (text.empty()) return names;
  for (std::size_t start = 0; start != std::string::npos;) {
    const std::size_t comma = text.find(',', start);
    // Past the last comma, comma - start reaches beyond the end: the rest of the text.
    const std::string_view name = Trimmed(std::string_view(text).substr(start, comma - start));
    if (name.empty()) {
      throw ParseError(std::string(what) + " with no empty name", std::string(written));
    }
    names.emplace_back(name);
    start = comma == std::string::npos ? comma : comma + 1;
  }
  return names;
}

std::string NameListText(const std::vector<std::string>& names) {
  std::string text;
  for (const std::string& name : names) text += (text.empty() ? "" : ",") + name;
  return Quote(text);
}

// plugin "Finishing Options" enabled label "Finishing" pdl "PS,PCLXL" excludes "Booklet"
Parsed ParsePlugin(StatementInput& input) {
  Cursor& cursor = input.cursor();
  refhost::PluginInfo plugin;
  const std::string_view written = cursor.Rest();
  plugin.name = cursor.Text("the quoted name of the plug-in");
  if (plugin.name.empty()) {
    throw ParseError("a plug-in name that is not empty", std::string(written));
  }
  plugin.enabled = cursor.Accept("enabled");
  if (!plugin.enabled && !cursor.Accept("disabled")) cursor.Fail("enabled or disabled");

  std::optional<std::u16string> label;
  std::optional<std::vector<std::string>> pdl;
  std::optional<std::vector<std::string>> excludes;
  while (!cursor.AtEnd()) {
    if (!label && cursor.Accept("label")) {
      label = WideQuotedText(cursor, "the quoted label of the plug-in");
    } else if (!pdl && cursor.Accept("pdl")) {
      pdl = NameList(cursor, "the quoted printer languages, joined by ','");
    } else if (!excludes && cursor.Accept("excludes")) {
      excludes = NameList(cursor, "the quoted names of the plug-ins it excludes, joined by ','");
    } else {
      cursor.Fail(kOptions);
    }
  }
  // A plug-in shows its name when the host has no label for it.
  const std::optional<std::u16string> name = WideText(plugin.name);
  if (!label && !name) {
    throw ParseError("label \"text\" for a plug-in name that is not UTF-8", std::string(written));
  }
  plugin.label = label ? *label : *name;
  plugin.supportedPdl = pdl.value_or(std::vector<std::string>());
  plugin.exclusions = excludes.value_or(std::vector<std::string>());

  std::string echo = "plugin " + Quote(plugin.name) + (plugin.enabled ? " enabled" : " disabled");
  if (plugin.label != name) echo += " label " + Quote(plugin.label);
  if (!plugin.supportedPdl.empty()) echo += " pdl " + NameListText(plugin.supportedPdl);
  if (!plugin.exclusions.empty()) echo += " excludes " + NameListText(plugin.exclusions);
  return {echo, [plugin](Scenario& scenario) { scenario.sheet().window().addPlugin(plugin); }};
}

// strings "$IDS_DLG_IMPORT;" = "Import"
Parsed ParseStrings(StatementInput& input) {
  Cursor& cursor = input.cursor();
  constexpr std::string_view kReference = "a quoted string reference \"$NAME;\"";
  const std::string_view written = cursor.Rest();
  const std::u16string reference = WideQuotedText(cursor, kReference);
  // One name between its '$' and its ';', as the pages write them.
  if (reference.size() < 3 || reference.front() != u'$' ||
      reference.find_first_of(u"$;", 1) != reference.size() - 1) {
    throw ParseError(std::string(kReference), std::string(written));
  }
  cursor.Expect("=", "'=' and the quoted text it stands for");
  const std::u16string text = WideQuotedText(cursor, "the quoted text it stands for");
  return {"strings " + Quote(reference) + " = " + Quote(text),
          [reference, text](Scenario& scenario) {
            scenario.sheet().window().setString(reference, text);
          }};
}

constexpr StatementForm kForms[] = {
    {"plugin", "plugin \"NAME\" enabled|disabled [label \"text\"] [pdl \"A,B\"] [excludes \"A,B\"]",
     ParsePlugin},
    {"strings", "strings \"$NAME;\" = \"text\"", ParseStrings},
};

}  // namespace

extern const Facility kPluginFacility{"plug-ins and strings", kForms, nullptr};

}  // namespace loomsim
