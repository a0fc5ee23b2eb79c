// "settings" and "dev_settings": what the scenarios (settings.scn, dev_settings.scn) do not
// reach well: the argument rules of every method, text conversion, and the user tree's own
// store around a factory reset.
#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "refhost/archive.h"
#include "refhost/backing_store.h"
#include "refhost/text.h"
#include "support/sheet_test.h"

namespace {

namespace fs = std::filesystem;
using testing_support::Dump;

class SettingsObjectsTest : public testing_support::SheetTest {
 protected:
  SettingsObjectsTest() : SheetTest(R"(<window><label id="lbl"/><menulist id="cmb"/></window>)") {}
  void SetUp() override {
    SheetTest::SetUp();
    fs::remove_all(dir_);
    fs::create_directories(dir_);
    sheet_.properties().set("loom.driver.prefix", "kst");
    sheet_.properties().set("loom.driver.path", dir_.string());
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

// Stored values are UTF-8; the element gets them as UTF-16.
TEST_F(SettingsObjectsTest, LoadSettingConvertsTheStoredText) {
  user()["Unit"] =
      "Gr\xC3\xB6\xC3\x9F"
      "e";
  EXPECT_TRUE(CallWith("settings", "loadSetting", {"#lbl", "title", "Unit"}));
  EXPECT_EQ(Elem(u"lbl")->getAttribute(u"title"), u"Größe");
}

// The reset borrows the user tree for the factory file: the tree's own store must come back
// whether the factory state came from the UI archive, the driver's file, or failed to load.
TEST_F(SettingsObjectsTest, UserFactoryResetKeepsTheUserBranchesAndTheStore) {
  constexpr char kFactory[] = R"(<settings><item key="Other" value="factory"/>
    <item key="TEMPLATE"><item key="TEMPLATE_BUTTON_1" value="Factory"/></item>
    <item key="CUSTOM_FORM_NAMES"><item key="F1" value="form"/></item>
    <item key="TAB_OTHERS"><item key="UpdateAuto" value="false"/></item></settings>)";
  // The factory's values, the user's own branches as they were, the device's UpdateAuto.
  constexpr char kReset[] =
      "={Other=factory,TEMPLATE={TEMPLATE_BUTTON_1=Draft},TAB_OTHERS={UpdateAuto=true},"
      "profiles={P1=zuprof001.xml},Custom Paper Size={Width=210}}";
  constexpr char kBroken[] = "<settings><item key=\"Other\">";
  const Loom::File archive(refhost::Utf16((dir_ / "ui.zip").string()));
  refhost::WriteArchiveMember(archive, u"kstfactdef.xml", kFactory);
  const Loom::SmartPtr<refhost::MemoryBackingStore> own(new refhost::MemoryBackingStore);
  user().setBackingStoreIO(own);
  const struct {
    bool fromArchive;
    const char* driverFile;
    bool answer;
  } rows[] = {{true, kBroken, true}, {false, kFactory, true}, {false, kBroken, false}};
  for (const auto& row : rows) {
    page_->setArchive(row.fromArchive ? refhost::ZipArchive::Open(archive) : nullptr);
    WriteFile("kstfactdef.xml", row.driverFile);
    user()["TEMPLATE"]["TEMPLATE_BUTTON_1"] = "Draft";
    user()["profiles"]["P1"] = "zuprof001.xml";
    user()["Custom Paper Size"]["Width"] = "210";
    user()["Other"] = "mine";
    device()["TAB_OTHERS"]["UpdateAuto"] = "true";
    const std::string before = Dump(user());

    EXPECT_EQ(CallWith("settings", "restorePersistentFactoryDefaults", {}), row.answer)
        << row.fromArchive;
    EXPECT_EQ(Dump(user()), row.answer ? kReset : before);
    EXPECT_EQ(user().getBackingStoreIO().get(), own.get());
  }
  page_->setArchive(nullptr);
}

}  // namespace
