// "settings" and "dev_settings": argument-count rules and their asymmetry, path access,
// snapshots, both factory resets and the user registry key.
#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "host/printer.h"
#include "refhost/archive.h"
#include "refhost/backing_store.h"
#include "refhost/text.h"
#include "refhost/user_registry.h"
#include "support/sheet_test.h"

namespace {

namespace fs = std::filesystem;
using testing_support::Dump;

class SettingsObjectsTest : public testing_support::SheetTest {
 protected:
  SettingsObjectsTest()
      : SheetTest(R"(<window><label id="lbl"/><menulist id="cmb"><menupopup>
          <menuitem value="A" label="First"/><menuitem value="B" label="Second" selected="true"/>
          </menupopup></menulist></window>)") {}
  void SetUp() override {
    SheetTest::SetUp();
    refhost::resetUserSimulation();
    fs::remove_all(dir_);
    fs::create_directories(dir_);
    sheet_.properties().set("loom.driver.prefix", "kst");
    sheet_.properties().set("loom.driver.path", dir_.string());
    sheet_.properties().set("loom.allusers.path", dir_.string());
  }
  void TearDown() override {
    fs::remove_all(dir_);
    SheetTest::TearDown();
  }
  // The call with the page, then: "#lbl" / "#cmb" the element, "int" an integer, else a string.
  bool CallWith(const char* object, const char* method, const std::vector<std::string>& rest) {
    refhost::Args args = Doc();
    for (const std::string& arg : rest) {
      if (arg.starts_with('#')) {
        args.element(Elem(arg == "#lbl" ? u"lbl" : u"cmb").get());
      } else if (arg == "int") {
        args.integer(7);
      } else {
        args.text(arg);
      }
    }
    return Call(object, method, args);
  }
  Loom::Services::PersistentSettings& Tree(const char* object) {
    return std::string(object) == "settings" ? user() : device();
  }
  void WriteFile(const std::string& name, const std::string& text) {
    std::ofstream(dir_ / name) << text;
  }

  fs::path dir_ = fs::path(::testing::TempDir()) / ("settings_objects_" + std::to_string(getpid()));
};

TEST_F(SettingsObjectsTest, CountKindAndUserDeviceAsymmetry) {
  struct Row {
    const char* object;
    const char* method;
    std::vector<std::string> args;
    bool answer;
    const char* tree;  // of the object's own tree afterwards
  } rows[] = {
      {"settings", "saveSetting", {"A", "x"}, true, "={A=x}"},
      {"settings", "saveSetting", {"A", "B", "x"}, true, "={A={B=x}}"},
      {"dev_settings", "saveSetting", {"A", "x"}, false, "="},
      {"dev_settings", "saveSetting", {"A", "B", "x"}, true, "={A={B=x}}"},
      {"settings", "saveSetting", {"int", "x"}, false, "="},
      {"settings", "saveSetting", {"A", "int"}, false, "="},
      {"settings", "removeSetting", {}, false, "="},
      {"settings", "mark", {"x"}, false, "="},
      {"dev_settings", "deleteUserRegKey", {"Drv"}, false, "="},
      {"settings", "restorePersistentFactoryDefaults", {"TAB_OTHERS"}, false, "="},
      {"dev_settings", "restorePersistentFactoryDefaults", {}, false, "="},
      {"settings", "loadSetting", {"#lbl", "value"}, false, "="},
      {"dev_settings", "selectItemWithSetting", {"#cmb", "value", "int"}, false, "="},
      {"settings", "SaveSetting", {"A", "x"}, false, "="},
  };
  for (const Row& row : rows) {
    user().remove("A");
    device().remove("A");
    EXPECT_EQ(CallWith(row.object, row.method, row.args), row.answer) << row.object << row.method;
    EXPECT_EQ(Dump(Tree(row.object)), row.tree) << row.object << "." << row.method;
    EXPECT_EQ(Dump(&Tree(row.object) == &user() ? device() : user()), "=");  // the other tree
  }
}

TEST_F(SettingsObjectsTest, PathsRemoveLoadAndSelect) {
  for (const char* object : {"settings", "dev_settings"}) {
    Tree(object)["A"]["B"]["C"] = "1";
    Tree(object)["A"]["B"]["D"] = "2";
    EXPECT_TRUE(CallWith(object, "removeSetting", {"A", "B", "C"}));
    EXPECT_EQ(Dump(Tree(object)), "={A={B={D=2}}}") << object;
    EXPECT_TRUE(CallWith(object, "removeSetting", {"A"}));
    EXPECT_EQ(Dump(Tree(object)), "=") << object;
  }
  user()["Unit"] =
      "Gr\xC3\xB6\xC3\x9F"
      "e";
  EXPECT_TRUE(CallWith("settings", "loadSetting", {"#lbl", "title", "Unit"}));
  EXPECT_EQ(Elem(u"lbl")->getAttribute(u"title"), u"Größe");
  // A path never saved reads as "" and leaves its empty nodes behind.
  EXPECT_TRUE(CallWith("settings", "loadSetting", {"#lbl", "title", "P", "Q"}));
  EXPECT_EQ(Elem(u"lbl")->getAttribute(u"title"), u"");
  EXPECT_EQ(Dump(user()), "={Unit=Größe,P={Q=}}");

  device()["Menu"]["Name"] = "First";
  EXPECT_TRUE(CallWith("dev_settings", "selectItemWithSetting", {"#cmb", "label", "Menu", "Name"}));
  EXPECT_EQ(Elem(u"cmb")->getValfromMenulist(), u"A");
  device()["Menu"]["Name"] = "first";  // no item carries it: the selection stays
  EXPECT_TRUE(CallWith("dev_settings", "selectItemWithSetting", {"#cmb", "label", "Menu", "Name"}));
  EXPECT_EQ(Elem(u"cmb")->getValfromMenulist(), u"A");
}

TEST_F(SettingsObjectsTest, MarkRevertUndoesChangedAddedAndRemovedValues) {
  for (const char* object : {"settings", "dev_settings"}) {
    Tree(object)["S"]["changed"] = "old";
    Tree(object)["S"]["removed"] = "gone";
    EXPECT_TRUE(CallWith(object, "mark", {}));
    EXPECT_TRUE(CallWith(object, "saveSetting", {"S", "changed", "new"}));
    EXPECT_TRUE(CallWith(object, "saveSetting", {"S", "added", "1"}));
    EXPECT_TRUE(CallWith(object, "removeSetting", {"S", "removed"}));
    EXPECT_TRUE(CallWith(object, "revert", {}));
    EXPECT_EQ(Dump(Tree(object)), "={S={changed=old,removed=gone}}") << object;

    EXPECT_TRUE(CallWith(object, "mark", {}));
    EXPECT_TRUE(CallWith(object, "saveSetting", {"S", "changed", "kept"}));
    EXPECT_TRUE(CallWith(object, "keep", {}));
    EXPECT_TRUE(CallWith(object, "revert", {}));  // nothing marked any more
    EXPECT_EQ(Dump(Tree(object)), "={S={changed=kept,removed=gone}}") << object;
  }
}

TEST_F(SettingsObjectsTest, UserFactoryResetKeepsTheUserBranchesAndTheStore) {
  constexpr char kFactory[] = R"(<settings><item key="Other" value="factory"/>
    <item key="TEMPLATE"><item key="TEMPLATE_BUTTON_1" value="Factory"/></item>
    <item key="CUSTOM_FORM_NAMES"><item key="F1" value="form"/></item>
    <item key="TAB_OTHERS"><item key="UpdateAuto" value="false"/></item></settings>)";
  const Loom::File archive(refhost::Utf16((dir_ / "ui.zip").string()));
  refhost::WriteArchiveMember(archive, u"kstfactdef.xml", kFactory);
  for (const bool fromArchive : {true, false}) {
    page_->setArchive(fromArchive ? refhost::ZipArchive::Open(archive) : nullptr);
    if (!fromArchive) WriteFile("kstfactdef.xml", kFactory);
    const Loom::SmartPtr<refhost::MemoryBackingStore> own(new refhost::MemoryBackingStore);
    user().setBackingStoreIO(own);
    user()["TEMPLATE"]["TEMPLATE_BUTTON_1"] = "Draft";
    user()["profiles"]["P1"] = "zuprof001.xml";
    user()["Custom Paper Size"]["Width"] = "210";
    user()["Other"] = "mine";
    device()["TAB_OTHERS"]["UpdateAuto"] = "true";

    EXPECT_TRUE(CallWith("settings", "restorePersistentFactoryDefaults", {})) << fromArchive;
    EXPECT_EQ(Dump(user()),
              "={Other=factory,TEMPLATE={TEMPLATE_BUTTON_1=Draft},TAB_OTHERS={UpdateAuto=true},"
              "profiles={P1=zuprof001.xml},Custom Paper Size={Width=210}}");
    EXPECT_EQ(user().getBackingStoreIO().get(), own.get());
  }
  page_->setArchive(nullptr);
  fs::remove(dir_ / "kstfactdef.xml");
  EXPECT_FALSE(CallWith("settings", "restorePersistentFactoryDefaults", {}));
  EXPECT_EQ(Dump(user()["Other"]), "Other=factory");
}

TEST_F(SettingsObjectsTest, DeviceFactoryResetMergesFilesAndKeepsUpdateAuto) {
  WriteFile("kstdevSettings.xml", R"(<settings><item key="DrawerSettings">
      <item key="Drawer1Paper"/><item key="Drawer2Paper" value="A3"/>
      <item key="UpdateAuto" value="false"/></item></settings>)");
  WriteFile("kstdefmaingui.xml", R"(<settings><item key="DrawerSettings">
      <item key="Drawer2Paper" value="B4"/><item key="LCFPaper" value="B5"/></item>
      <item key="Finisher"><item key="Option" value="none"/></item></settings>)");
  device()["DrawerSettings"]["UpdateAuto"] = "true";
  device()["DrawerSettings"]["Stale"] = "x";
  device()["Finisher"]["Option"] = "Offset Stacker";

  EXPECT_TRUE(CallWith("dev_settings", "restorePersistentFactoryDefaults", {"DrawerSettings"}));
  const std::string region = Loom::isNorthAmericanShipment() ? "Letter" : "A4";
  EXPECT_EQ(Dump(device()), "={DrawerSettings={Drawer1Paper=" + region +
                                ",Drawer2Paper=A3,UpdateAuto=true,LCFPaper=B5},"
                                "Finisher={Option=Offset Stacker}}");
  EXPECT_TRUE(CallWith("dev_settings", "restorePersistentFactoryDefaults", {"Finisher"}));
  EXPECT_EQ(Dump(device()["Finisher"]), "Finisher={Option=none}");
  EXPECT_FALSE(CallWith("dev_settings", "restorePersistentFactoryDefaults", {"Nowhere"}));
  EXPECT_EQ(device().find("Nowhere"), nullptr);
}

TEST_F(SettingsObjectsTest, DeleteUserRegKeyByJobType) {
  const std::u16string key = u"Software\\Spindle\\Drv";
  struct Row {
    const char* jobType;
    bool keyPresent, failNext, answer, keyAfter, markerAfter;
  } rows[] = {
      {"PS", true, false, true, false, true},  {"PS", false, false, false, false, true},
      {"PS", true, true, false, true, true},   {"XPS", true, true, true, true, false},
      {"xps", true, false, true, false, true},
  };
  for (const Row& row : rows) {
    refhost::resetUserSimulation();
    sheet_.properties().set("weaver.output.jobtype", row.jobType);
    refhost::setUserRegistryKey(key, row.keyPresent);
    if (row.failNext) refhost::failNextUserRegistryDeletion();
    WriteFile("TANDEM_ALWAYS", "always");
    EXPECT_EQ(CallWith("settings", "deleteUserRegKey", {"Drv"}), row.answer) << row.jobType;
    EXPECT_EQ(refhost::userRegistryKeyExists(key), row.keyAfter) << row.jobType;
    EXPECT_EQ(fs::exists(dir_ / "TANDEM_ALWAYS"), row.markerAfter) << row.jobType;
  }
}

}  // namespace
