// The pieces of the change report: settings, file and registry snapshots compared, and how
// elements are named.
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
#include "tools/loomsim/scenario.h"
#include "tools/loomsim/settings_snapshot.h"

namespace loomsim {
namespace {

TEST(ChangeReportTest, SettingsDiffNamesEveryNodeAddedChangedOrRemoved) {
  Loom::Services::PersistentSettings tree;
  tree["Same"] = "1";
  tree["Changed"] = "old";
  tree["Gone"]["Child"] = "x";
  tree["Custom Paper Size"] = "";
  const SettingsSnapshot before = TakeSettingsSnapshot(tree);
  tree["Changed"] = "new";
  tree.remove("Gone");
  tree["Custom Paper Size"]["Width"] = "210";
  tree["New"] = "\xFF";
  std::vector<std::string> lines;
  DiffSettings("user", before, TakeSettingsSnapshot(tree), lines);
  EXPECT_EQ(lines, (std::vector<std::string>{
                       "~ user Changed = \"new\" (was \"old\")",
                       "+ user \"Custom Paper Size\"/Width = \"210\"",
                       "+ user New = \"\\xFF\"",
                       "- user Gone (was \"\")",
                       "- user Gone/Child (was \"x\")",
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
  const FileSnapshot before = TakeFileSnapshot(root);
  write(root / "user" / "sub" / "edited.xml", "abd");  // same size, new content
  std::filesystem::remove(root / "driver" / "gone.zip");
  // A name in UTF-8, whatever the system's own encoding of file names.
  write(root / "driver" / std::filesystem::path(u8"new \u00fc.txt"), "12345");
  std::vector<std::string> lines;
  DiffFiles(before, TakeFileSnapshot(root), lines);
  EXPECT_EQ(lines, (std::vector<std::string>{
                       "+ file driver:\"new \u00fc.txt\" (5 bytes)",
                       "~ file user:\"sub/edited.xml\" (3 bytes)",
                       "- file driver:\"gone.zip\"",
                   }));
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
