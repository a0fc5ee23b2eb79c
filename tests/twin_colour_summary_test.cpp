// "twincolour" and "textsummary".
#include <gtest/gtest.h>

#include <string>

#include "job/text_summary.h"
#include "support/sheet_test.h"

namespace {

class TwinColourSummaryTest : public testing_support::SheetTest {
 protected:
  TwinColourSummaryTest()
      : SheetTest(R"xul(<window><menulist id="cmb_TwnColourList"><menupopup>
          <menuitem value="TwinColor_2KR" label="Black/Red"/>
          <menuitem value="TwinColor_2KB" label="Black/Blue $short_key;(B)"/></menupopup></menulist>
          <textbox id="ePTKWPageOutputColor_Color_RenderMode"/>
          <textbox id="ePTKWPageOutputColor_TwinColor_RenderMode"/>
          <textbox id="setting_out" value="before"/><label id="not_a_list"/></window>)xul") {}
  // colour render mode | twin colour mode | the list's selected value
  std::string Colours() {
    return Value(u"ePTKWPageOutputColor_Color_RenderMode") + "|" +
           Value(u"ePTKWPageOutputColor_TwinColor_RenderMode") + "|" +
           std::string(spindle::Narrow(Elem(u"cmb_TwnColourList")->getValfromMenulist()));
  }
};

TEST_F(TwinColourSummaryTest, TwinColourMethods) {
  const struct {
    const char* method;
    const char16_t* twinMode;
    int selected;
    const char* after;
  } rows[] = {
      {"getTwinColor", u"", 1, "TwinColor_2KR||TwinColor_2KB"},
      {"loadTwinColor", u"", 1, "TwinColor_2KR||TwinColor_2KR"},
      {"getTwinColor", u"TwinColor_2KB", 0, "TwinColor_2KB|TwinColor_2KB|TwinColor_2KR"},
      {"loadTwinColor", u"TwinColor_2KB", 0, "TwinColor_2KB|TwinColor_2KB|TwinColor_2KB"},
      {"loadTwinColor", u"Other", 0, "Other|Other|TwinColor_2KR"},
      {"setTwinColor", u"old", 1, "TwinColor_2KB|TwinColor_2KB|TwinColor_2KB"},
      {"settwincolor", u"old", 1, "Color|old|TwinColor_2KB"},  // unmatched: true, no change
  };
  for (const auto& row : rows) {
    Elem(u"ePTKWPageOutputColor_Color_RenderMode")->setAttribute(u"value", u"Color");
    Elem(u"ePTKWPageOutputColor_TwinColor_RenderMode")->setAttribute(u"value", row.twinMode);
    Elem(u"cmb_TwnColourList")->setSelectedIndex(row.selected);
    EXPECT_TRUE(Call("twincolour", row.method, Doc())) << row.method;
    EXPECT_EQ(Colours(), row.after) << row.method;
  }
}

TEST_F(TwinColourSummaryTest, SummaryTexts) {
  const auto selected = [this](const char16_t* id, const char* attribute) {
    return Call("textsummary", "selectedItem", Doc().element(Elem(id).get()).text(attribute));
  };
  Elem(u"cmb_TwnColourList")->setSelectedIndex(1);
  EXPECT_TRUE(selected(u"cmb_TwnColourList", "label"));
  EXPECT_EQ(Value(u"setting_out"), "Black/Blue $short_key;(B)");
  EXPECT_TRUE(selected(u"cmb_TwnColourList", "value"));
  EXPECT_EQ(Value(u"setting_out"), "TwinColor_2KB");
  EXPECT_FALSE(selected(u"not_a_list", "value"));
  EXPECT_FALSE(Call("textsummary", "stripspecialtext", Doc().text("x")));
  EXPECT_EQ(Value(u"setting_out"), "TwinColor_2KB");
  EXPECT_TRUE(Call("textsummary", "stripSpecialText", Doc().text("Punch $short_key;(P)")));
  EXPECT_EQ(Value(u"setting_out"), "Punch (P)");

  const char16_t* const rows[][2] = {
      {u"$short_key;a$short_key;b$short_key;", u"ab"},
      {u"$short_$short_key;key;", u"$short_key;"},  // one pass: no marker is rebuilt
      {u"$Short_key;", u"$Short_key;"},
  };
  for (const auto& row : rows) EXPECT_EQ(spindle::summary::WithoutShortKeyMarkers(row[0]), row[1]);
}

}  // namespace
