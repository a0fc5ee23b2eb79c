// The pieces of the change report: settings changes as the trees report them, file and
// registry snapshots compared, and how elements are named.
#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "core/spindleui.h"
#include "host/codes.h"
#include "refhost/accounting.h"
#include "refhost/document.h"
#include "tools/loomsim/call_watch.h"
#include "tools/loomsim/element_label.h"
#include "tools/loomsim/file_snapshot.h"
#include "tools/loomsim/file_watch.h"
#include "tools/loomsim/scenario.h"
#include "tools/loomsim/settings_changes.h"

namespace loomsim {
namespace {

// The tree's own reports, passed to the SettingsChanges under test.
class Forward final : public refhost::ChangeObserver {
 public:
  explicit Forward(SettingsChanges& changes) : changes_(changes) {
    refhost::SetStoreObserver(this);
  }
  ~Forward() override { refhost::SetStoreObserver(nullptr); }
  void onChange(const refhost::Change& change) override { changes_.Note(change); }

 private:
  SettingsChanges& changes_;
};

std::vector<std::string> ReportOf(const SettingsChanges& changes,
                                  Loom::Services::PersistentSettings& tree) {
  std::vector<std::string> lines;
  changes.Report(tree, lines);
  return lines;
}

TEST(ChangeReportTest, SettingsChangesNameEveryNodeAddedChangedOrRemoved) {
  Loom::Services::PersistentSettings tree, other;
  tree["Same"] = "1";
  tree["Changed"] = "old";
  tree["Gone"]["Child"] = "x";
  tree["Custom Paper Size"] = "";
  tree["Back"] = "b";
  tree.mark();
  SettingsChanges changes("user", tree);
  {
    Forward forward(changes);
    tree["Changed"] = "new";
    tree.remove("Gone");
    tree["Custom Paper Size"]["Width"] = "210";
    tree["New"] = "\xFF";
    tree["Same"] = "1";   // set to what it was
    tree.remove("Back");  // removed, then back last with its value
    tree["Back"] = "b";
    tree["Passing"] = "through";  // added, then removed
    tree.remove("Passing");
    other["Elsewhere"] = "x";  // another tree
  }
  EXPECT_EQ(ReportOf(changes, tree), (std::vector<std::string>{
                                         "~ user Changed = \"new\" (was \"old\")",
                                         "+ user \"Custom Paper Size\"/Width = \"210\"",
                                         "+ user New = \"\\xFF\"",
                                         "- user Gone (was \"\")",
                                         "- user Gone/Child (was \"x\")",
                                     }));
  // The revert puts the branch back in its old place: it is listed there.
  SettingsChanges reverted("user", tree);
  {
    Forward forward(reverted);
    tree.revert();
  }
  EXPECT_EQ(ReportOf(reverted, tree), (std::vector<std::string>{
                                          "~ user Changed = \"old\" (was \"new\")",
                                          "+ user Gone = \"\"",
                                          "+ user Gone/Child = \"x\"",
                                          "- user \"Custom Paper Size\"/Width (was \"210\")",
                                          "- user New (was \"\\xFF\")",
                                      }));
}

TEST(ChangeReportTest, FileDiffSeesNewChangedAndRemovedFilesByContent) {
  const std::filesystem::path root =
      std::filesystem::temp_directory_path() / ("loomsim_files_" + std::to_string(getpid()));
  std::filesystem::create_directories(root / "user" / "sub");
  std::filesystem::create_directories(root / "driver");
  const auto write = [](const std::filesystem::path& path, const char* text) {
    std::ofstream(path, std::ios::binary | std::ios::trunc) << text;
  };
  write(root / "user" / "same.xml", "same");
  write(root / "user" / "sub" / "edited.xml", "abc");
  write(root / "driver" / "gone.zip", "zip");
  FileWatch watch(root);
  const auto before = watch.Current();
  write(root / "user" / "sub" / "edited.xml", "abd");  // same size, new content
  std::filesystem::remove(root / "driver" / "gone.zip");
  // A name in UTF-8, whatever the system's own encoding of file names.
  write(root / "driver" / std::filesystem::path(u8"new \u00fc.txt"), "12345");
  std::filesystem::create_directories(root / "root" / "made");
  write(root / "root" / "made" / "in.txt", "1");
  const auto after = watch.Current();
  EXPECT_EQ(watch.Current(), after) << "nothing changed since";
  std::vector<std::string> lines;
  DiffFiles(*before, *after, lines);
  EXPECT_EQ(lines, (std::vector<std::string>{
                       "+ file driver:\"new \u00fc.txt\" (5 bytes)",
                       "+ file root:\"made/in.txt\" (1 bytes)",
                       "~ file user:\"sub/edited.xml\" (3 bytes)",
                       "- file driver:\"gone.zip\"",
                   }));
  // A directory made between two looks is watched from then on.
  write(root / "root" / "made" / "in.txt", "2");
  lines.clear();
  DiffFiles(*after, *watch.Current(), lines);
  EXPECT_EQ(lines, (std::vector<std::string>{"~ file root:\"made/in.txt\" (1 bytes)"}));
  std::filesystem::remove_all(root);
}

TEST(ChangeReportTest, RegistryDiffListsDeletedThenCreatedKeys) {
  std::vector<std::string> lines;
  DiffRegistry({u"Software\\Spindle\\Old", u"Software\\Spindle", u"Software\\Spindle\\Kept"},
               {u"Software\\Spindle\\Kept", u"Software\\Spindle\\New", u"Software\\Spindle"},
               lines);
  EXPECT_EQ(lines, (std::vector<std::string>{
                       "- registry user \"Software\\Spindle\\Old\"",
                       "+ registry user \"Software\\Spindle\\New\"",
                   }));
}

TEST(ChangeReportTest, ElementsAreNamedByIdOrByThePathFromOne) {
  const long held = refhost::heldReferences();
  {
    std::ostringstream out;
    Report report(out, true);
    Scenario scenario(findObject, "t.scn", report);
    Loom::SmartPtr<refhost::Document> page = scenario.sheet().loadDocument(
        "<window><vbox><menulist id=\"list\"><menupopup><menuitem/><menuitem/></menupopup>"
        "</menulist><label/></vbox><vbox/></window>",
        "page.xul");
    scenario.AddDocument("page", *page);
    refhost::Element& root = page->root();
    refhost::Element& popup = *root.childAt(0)->childAt(0)->childAt(0);
    EXPECT_EQ(ElementLabel(scenario, *root.childAt(0)->childAt(0)), "page#list");
    EXPECT_EQ(ElementLabel(scenario, popup), "page#list/menupopup");
    EXPECT_EQ(ElementLabel(scenario, *popup.childAt(1)), "page#list/menupopup/menuitem[2]");
    EXPECT_EQ(ElementLabel(scenario, *root.childAt(0)->childAt(1)), "page/window/vbox[1]/label");
    EXPECT_EQ(ElementLabel(scenario, root), "page/window");
    EXPECT_EQ(ElementLabel(scenario, page->argsElement()), "page args");
    Loom::SmartPtr<Loom::XUL::xXULElem> created = page->createElement(Loom::kElemMenuItem);
    created->setAttribute(u"value", u"A\"");
    auto& item = static_cast<refhost::Element&>(*created);
    EXPECT_EQ(ElementLabel(scenario, item), "page <menuitem> (not in the tree)");
    EXPECT_EQ(StartTag(item), "<menuitem value=\"A\\\"\">");
  }
  EXPECT_EQ(refhost::heldReferences(), held);
}

}  // namespace
}  // namespace loomsim
