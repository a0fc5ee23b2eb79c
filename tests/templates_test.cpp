// The exported template functions: clearing a deleted profile from the template buttons
// and the buttons' label prefixes.
#include "settings/templates.h"

#include <gtest/gtest.h>

#include <string>

#include "support/sheet_test.h"

namespace {

class TemplatesTest : public testing_support::SheetTest {
 protected:
  TemplatesTest() : SheetTest("<window/>") {}
  std::string Buttons() { return testing_support::Dump(user()["TEMPLATE"]); }
};

TEST_F(TemplatesTest, RemoveTemplateClearsOnlyAnExactMatch) {
  user()["TEMPLATE"]["TEMPLATE_BUTTON_2"] = "Draft";
  EXPECT_FALSE(removeTemplate("draft", "TEMPLATE_BUTTON_2", user()));
  EXPECT_FALSE(removeTemplate("Draft", "TEMPLATE_BUTTON_3", user()));
  EXPECT_EQ(Buttons(), "TEMPLATE={TEMPLATE_BUTTON_2=Draft,TEMPLATE_BUTTON_3=}");
  EXPECT_TRUE(removeTemplate("Draft", "TEMPLATE_BUTTON_2", user()));
  EXPECT_EQ(Buttons(), "TEMPLATE={TEMPLATE_BUTTON_2=,TEMPLATE_BUTTON_3=}");
}

TEST_F(TemplatesTest, UpdateTemplatesClearsEveryButtonOfTheProfile) {
  user()["TEMPLATE"]["TEMPLATE_BUTTON_5"] = "Draft";
  user()["TEMPLATE"]["TEMPLATE_BUTTON_1"] = "Draft";
  user()["TEMPLATE"]["TEMPLATE_BUTTON_6"] = "Report";
  const Loom::SmartPtr<Loom::XUL::xXULDoc> doc(page_.get());
  updateTemplates("Nobody", doc);  // each key read once: the missing ones appear, empty
  EXPECT_EQ(Buttons(),
            "TEMPLATE={TEMPLATE_BUTTON_5=Draft,TEMPLATE_BUTTON_1=Draft,TEMPLATE_BUTTON_6=Report,"
            "TEMPLATE_BUTTON_2=,TEMPLATE_BUTTON_3=,TEMPLATE_BUTTON_4=}");
  updateTemplates("Draft", doc);
  updateTemplates("Report", nullptr);
  EXPECT_EQ(Buttons(),
            "TEMPLATE={TEMPLATE_BUTTON_5=,TEMPLATE_BUTTON_1=,TEMPLATE_BUTTON_6=Report,"
            "TEMPLATE_BUTTON_2=,TEMPLATE_BUTTON_3=,TEMPLATE_BUTTON_4=}");
}

TEST(TemplateLabelsTest, PrefixesFollowTheSheetsNumbering) {
  const char16_t* const rows[][3] = {
      {u"but_TmpltMono", u"but_TmpltEdtMono", u"tmpl_lbl_but1_"},
      {u"but_Tmplt2in1", u"but_TmpltEdt2in1", u"tmpl_lbl_but2_"},
      {u"but_TmpltBook", u"but_TmpltEdtBook", u"tmpl_lbl_but3_"},
      {u"but_Tmplt9in1", u"but_TmpltEdt9in1", u"tmpl_lbl_but4_"},
      {u"but_Tmplt4in1", u"but_TmpltEdt4in1", u"tmpl_lbl_but5_"},
      {u"but_TmpltEmp", u"but_TmpltEdtEmp", u"tmpl_lbl_but6_"},
  };
  for (const auto& row : rows) {
    for (const char16_t* id : {row[0], row[1]}) {
      Loom::wstring prefix;
      EXPECT_TRUE(getTmplLblPrefix(id, prefix));
      EXPECT_EQ(prefix, row[2]);
    }
  }
  for (const char16_t* unknown : {u"but_tmpltmono", u"but_TmpltMono ", u"", u"tmpl_lbl_but1_"}) {
    Loom::wstring prefix = u"unchanged";
    EXPECT_FALSE(getTmplLblPrefix(unknown, prefix));
    EXPECT_EQ(prefix, u"unchanged");
  }
}

}  // namespace
