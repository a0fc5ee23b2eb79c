// The object registry and the answers every object gives to calls it does not know.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "core/spindleui.h"
#include "refhost/accounting.h"
#include "refhost/sheet.h"
#include "support/fixture.h"

namespace {

// All 28 names, in registry order.
const char* const kNames[] = {
    "obj",          "margin",          "username",      "xulguisettings", "customisation",
    "twincolour",   "schedule",        "cuspapsizdlg",  "impexpbut",      "bookletDetail",
    "finishingTab", "overwrite",       "deleteconfirm", "posterPrint",    "xcBypass",
    "tabpaper",     "textsummary",     "Math",          "xul_utils",      "dev_settings",
    "settings",     "inputValidation", "xpropsheet",    "xcompart",       "defMenuSettings",
    "tabBasic",     "txtPreview",      "profiles"};

TEST(RegistryTest, EveryNameGivesOneObjectForGood) {
  for (const char* name : kNames) {
    xClass* first = findObject(name);
    ASSERT_NE(first, nullptr) << name;
    EXPECT_EQ(findObject(std::string(name).c_str()), first) << name;
  }
  for (std::size_t i = 0; i < std::size(kNames); ++i) {
    for (std::size_t j = i + 1; j < std::size(kNames); ++j) {
      EXPECT_NE(findObject(kNames[i]), findObject(kNames[j])) << kNames[i] << " " << kNames[j];
    }
  }
}

class UnmatchedCallTest : public testing_support::HostTest {};

TEST_F(UnmatchedCallTest, EachObjectGivesItsOwnAnswerAndTouchesNothing) {
  // Objects whose scripts never look at the answer say true to anything.
  const char* const answersTrue[] = {"obj",        "margin",          "username",  "xulguisettings",
                                     "twincolour", "schedule",        "overwrite", "deleteconfirm",
                                     "xcBypass",   "inputValidation", "tabBasic",  "txtPreview"};
  refhost::Sheet sheet;
  auto doc = sheet.loadDocument(R"(<window id="w"><vbox id="vars"/></window>)", "w.xul");
  const std::string before = doc->toXml();
  for (const char* name : kNames) {
    const bool expected = std::find_if(std::begin(answersTrue), std::end(answersTrue),
                                       [&](const char* n) { return std::string(n) == name; }) !=
                          std::end(answersTrue);
    EXPECT_EQ(Call(name, "noSuchMethod", refhost::Args().document(doc.get())), expected) << name;
    EXPECT_EQ(Call(name, "noSuchMethod", refhost::Args()), expected) << name;
  }
  EXPECT_EQ(doc->toXml(), before);
}

}  // namespace
