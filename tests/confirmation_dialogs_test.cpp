// "xcBypass", "overwrite", "deleteconfirm" and "username".
#include <gtest/gtest.h>

#include <optional>
#include <string>

#include "refhost/user_registry.h"
#include "support/sheet_test.h"

namespace {

constexpr char kDialog[] = R"(<dialog><checkbox id="bypass_noagain"/>
  <textbox id="edt_OvwTrigger"/><textbox id="edt_DelTrigger"/></dialog>)";

class ConfirmationDialogsTest : public testing_support::SheetTest {
 protected:
  ConfirmationDialogsTest()
      : SheetTest(R"(<window><textbox id="edt_ComOverWriteTrigger" value="Profile A"/>
          <textbox id="edt_ComDelConfirmTrigger" value="Profile B"/>
          <textbox id="Isavailable_bypassDlg"/>
          <textbox id="ePTKWJobAuthentication_NickName"/></window>)") {}
  void SetUp() override {
    SheetTest::SetUp();
    refhost::resetUserSimulation();
    sheet_.setOwner(*dialog_, page_.get());
  }
  Loom::SmartPtr<refhost::Document> dialog_ = sheet_.loadDocument(kDialog, "dlg.xul");
};

TEST_F(ConfirmationDialogsTest, TriggersComeFromTheParentOrItsParent) {
  EXPECT_TRUE(Call("overwrite", "setTrigger", Doc(dialog_.get())));
  EXPECT_EQ(Value(u"edt_OvwTrigger", dialog_.get()), "Profile A");
  EXPECT_TRUE(Call("deleteconfirm", "setTrigger", Doc(dialog_.get())));  // no grandparent
  EXPECT_EQ(Value(u"edt_DelTrigger", dialog_.get()), "");
  const auto sub = sheet_.loadDocument("<dialog/>", "sub.xul");
  sheet_.setOwner(*sub, page_.get());
  sheet_.setOwner(*dialog_, sub.get());
  EXPECT_TRUE(Call("deleteconfirm", "setTrigger", Doc(dialog_.get())));
  EXPECT_EQ(Value(u"edt_DelTrigger", dialog_.get()), "Profile B");
  // Unmatched calls answer true too.
  EXPECT_TRUE(Call("overwrite", "setTrigger", Doc(dialog_.get()).text("x")));
  EXPECT_TRUE(Call("xcBypass", "unknown", Doc(dialog_.get())));
  EXPECT_TRUE(Call("username", "extract", refhost::Args()));
}

TEST_F(ConfirmationDialogsTest, BypassStateIsHandedUpAndRememberedAcrossSaveAndLoad) {
  const auto box = dialog_->getElementById(u"bypass_noagain");
  for (const char16_t* checked : {u"true", u"false", u"", u"TRUE"}) {
    box->setAttribute(u"checked", checked);
    EXPECT_TRUE(Call("xcBypass", "checkBypassStatus", Doc(dialog_.get())));
    EXPECT_EQ(Value(u"Isavailable_bypassDlg"),
              checked == std::u16string(u"true") ? "true" : "false");
  }
  box->setAttribute(u"checked", u"true");
  EXPECT_TRUE(Call("xcBypass", "saveBypassDlg", Doc(dialog_.get())));
  // Opened again, unchecked: it gets the parent's properties and the remembered state.
  const auto reopened = sheet_.loadDocument(kDialog, "dlg.xul");
  sheet_.setOwner(*reopened, page_.get());
  reopened->setUserData(Loom::SmartPtr<refhost::Properties>(new refhost::Properties));
  EXPECT_TRUE(Call("xcBypass", "updateBypassDlg", Doc(reopened.get())));
  EXPECT_EQ(reopened->getElementById(u"bypass_noagain")->getAttribute(u"checked"), u"true");
  EXPECT_EQ(reopened->getUserData().get(), page_->getUserData().get());
}

TEST_F(ConfirmationDialogsTest, ExtractFillsTheNicknameField) {
  const struct {
    std::optional<const char*> stored;
    const char16_t* networkName;  // null: the lookup fails
    const char* field;
    const char* storedAfter;  // null: no key
  } rows[] = {
      {"jdoe", u"net", "jdoe", "jdoe"},    {std::nullopt, u"net", "net", nullptr},
      {"????", u"net", "net", nullptr},    {"???", u"net", "???", "???"},
      {"?????", u"net", "?????", "?????"}, {"????", nullptr, "before", nullptr},
  };
  for (const auto& row : rows) {
    user().remove("UserNickName");
    if (row.stored) user()["UserNickName"] = *row.stored;
    if (row.networkName) refhost::setNetworkUserName(row.networkName);
    if (!row.networkName) refhost::clearNetworkUserName();
    Elem(u"ePTKWJobAuthentication_NickName")->setAttribute(u"value", u"before");
    EXPECT_TRUE(Call("username", "extract", Doc()));
    EXPECT_EQ(Value(u"ePTKWJobAuthentication_NickName"), row.field);
    const Loom::Services::PersistentItem* after = user().find("UserNickName");
    EXPECT_EQ(after ? std::string(Loom::string(*after)) : "<none>",
              row.storedAfter ? row.storedAfter : "<none>");
  }
}

}  // namespace
