// Host properties and the window's user and device settings trees.
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "host/settings.h"
#include "refhost/dom.h"
#include "refhost/file_io.h"
#include "tools/loomsim/grammar.h"
#include "tools/loomsim/scenario.h"
#include "tools/loomsim/settings_path.h"
#include "tools/loomsim/source_text.h"
#include "tools/loomsim/text_values.h"
#include "tools/loomsim/value_check.h"

namespace loomsim {
namespace {

// Property keys are dotted names: loom.driver.name.
constexpr std::string_view kKeyChars = ".";

enum class Tree { kUser, kDevice };

constexpr std::string_view TreeName(Tree tree) { return tree == Tree::kUser ? "user" : "device"; }

Loom::Services::PersistentSettings& TreeOf(Scenario& scenario, Tree tree) {
  refhost::Window& window = scenario.sheet().window();
  return tree == Tree::kUser ? window.getSettings() : window.getDevSettings();
}

Parsed ParseProp(StatementInput& input) {
  Cursor& cursor = input.cursor();
  const std::string key = cursor.Name("a property key", kKeyChars);
  cursor.Expect("=", "'=' and a quoted text");
  const std::string value = cursor.Text("a quoted text");
  return {"prop " + key + " = " + Quote(value),
          [key, value](Scenario& scenario) { scenario.sheet().properties().set(key, value); }};
}

// Replaces the tree's content by the settings document in `path` (the host's settings
// format), read by the tree's own loader. The tree keeps the backing store it had, so
// nothing the library saves later goes back to the sample file.
void LoadTree(Scenario& scenario, Tree tree, const std::string& path) {
  Loom::Services::PersistentSettings& settings = TreeOf(scenario, tree);
  const Loom::SmartPtr<Loom::Services::BackingStoreIO> kept = settings.getBackingStoreIO();
  const std::filesystem::path file = scenario.directory() / path;
  settings.setBackingStoreIO(Loom::SmartPtr<Loom::Services::BackingStoreIO>(
      new Loom::Services::FileBackingStoreIO(Loom::File(Loom::wstring(HostPath(file))), 0, 1)));
  const bool loaded = settings.loadSettings();
  settings.setBackingStoreIO(kept);
  if (!loaded) {
    RequireWellFormedXml(ReadSourceFile(file), file.string(), 1);
    // Well-formed and within the host's limits, but no <settings> document.
    throw SetupError{"cannot load " + file.string() + " as a settings document"};
  }
}

Parsed ParseValue(StatementInput& input, Tree tree) {
  Cursor& cursor = input.cursor();
  Cursor probe = cursor;
  if (probe.Accept("file") && probe.AtText()) {
    cursor = probe;
    const std::string path = cursor.Text("a quoted path to a settings file");
    return {std::string(TreeName(tree)) + " file " + Quote(path),
            [tree, path](Scenario& scenario) { LoadTree(scenario, tree, path); }};
  }
  const std::vector<std::string> keys = ParseSettingsPath(cursor);
  cursor.Expect("=", "'=' and a quoted text after the settings path");
  const std::string value = cursor.Text("a quoted text");
  return {std::string(TreeName(tree)) + " " + SettingsPathText(keys) + " = " + Quote(value),
          [tree, keys, value](Scenario& scenario) {
            Loom::Services::PersistentItem* item = &TreeOf(scenario, tree);
            for (const std::string& key : keys) item = &(*item)[Loom::string(key)];
            *item = Loom::string(value);
          }};
}

Parsed ParseUser(StatementInput& input) { return ParseValue(input, Tree::kUser); }
Parsed ParseDevice(StatementInput& input) { return ParseValue(input, Tree::kDevice); }

// The node at `keys`, or null. Looking creates nothing (operator[] would).
Loom::Services::PersistentItem* FindNode(Scenario& scenario, Tree tree,
                                         const std::vector<std::string>& keys) {
  Loom::Services::PersistentItem* item = &TreeOf(scenario, tree);
  for (const std::string& key : keys) {
    if (item != nullptr) item = item->find(Loom::string(key));
  }
  return item;
}

// expect user TEMPLATE children == 6: a whole branch, by the keys directly below it.
Parsed ParseChildCount(Cursor& cursor, Tree tree, const std::vector<std::string>& keys) {
  cursor.Expect("==", "== N after children");
  const std::string_view written = cursor.Rest();
  const std::int64_t count = cursor.Integer("a number of children");
  if (count < 0) throw ParseError("a number of children", std::string(written));
  return {"expect " + std::string(TreeName(tree)) + " " + SettingsPathText(keys) +
              " children == " + std::to_string(count),
          [tree, keys, count](Scenario& scenario) {
            Loom::Services::PersistentItem* node = FindNode(scenario, tree, keys);
            if (node == nullptr) return scenario.Check(false, "absent");
            std::string found = std::to_string(node->getNumChildren()) + " children";
            for (std::size_t i = 0; i < node->getNumChildren(); ++i) {
              found +=
                  (i == 0 ? ": " : ", ") + SettingsPathText({std::string(node->childAt(i).key())});
            }
            scenario.Check(node->getNumChildren() == static_cast<std::size_t>(count), found);
          }};
}

Parsed ParseExpectation(StatementInput& input, Tree tree) {
  Cursor& cursor = input.cursor();
  const std::vector<std::string> keys = ParseSettingsPath(cursor);
  if (cursor.Accept("children")) return ParseChildCount(cursor, tree, keys);
  const ValueExpectation expectation = ParseValueExpectation(cursor);
  return {"expect " + std::string(TreeName(tree)) + " " + SettingsPathText(keys) + " " +
              ValueExpectationText(expectation),
          [tree, keys, expectation](Scenario& scenario) {
            Loom::Services::PersistentItem* item = FindNode(scenario, tree, keys);
            CheckValue(scenario, expectation,
                       item ? std::optional(std::string(Loom::string(*item))) : std::nullopt);
          }};
}

Parsed ParseUserExpectation(StatementInput& input) { return ParseExpectation(input, Tree::kUser); }
Parsed ParseDeviceExpectation(StatementInput& input) {
  return ParseExpectation(input, Tree::kDevice);
}

constexpr StatementForm kForms[] = {
    {"prop", "prop KEY = \"text\"", ParseProp},
    {"user", "user PATH = \"text\"\nuser file \"path.xml\"", ParseUser},
    {"device", "device PATH = \"text\"\ndevice file \"path.xml\"", ParseDevice},
    {"expect user", "expect user PATH == \"text\"|absent|present\nexpect user PATH children == N",
     ParseUserExpectation},
    {"expect device",
     "expect device PATH == \"text\"|absent|present\nexpect device PATH children == N",
     ParseDeviceExpectation},
};

}  // namespace

extern const Facility kSettingsFacility{"settings", kForms, nullptr};

}  // namespace loomsim
