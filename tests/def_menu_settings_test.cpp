// "defMenuSettings": which default menu entries may be chosen, and the stored choice.
#include <gtest/gtest.h>

#include <string>

#include "host/codes.h"
#include "support/sheet_test.h"

namespace {

class DefMenuSettingsTest : public testing_support::SheetTest {
 protected:
  DefMenuSettingsTest()
      : SheetTest(R"(<window><menulist id="cmb_DefMenSet"><menupopup>
          <menuitem value="Finishing Options"/><menuitem value="Booklet"/><menuitem value="Effect"/>
          </menupopup></menulist></window>)") {}
  Loom::XUL::ElemList Items() {
    Loom::XUL::ElemList items;
    Elem(u"cmb_DefMenSet")->getChildrenOfType(Loom::kElemMenuItem, items);
    return items;
  }
  // 'h' hidden or 'v' available per item, then the selected position.
  std::string State() {
    std::string state;
    for (const auto& item : Items())
      state += item->getAttr(Loom::kAttrHidden) == u"true" ? 'h' : 'v';
    return state + std::to_string(Elem(u"cmb_DefMenSet")->getSelectedIndex());
  }
  std::string Stored() { return std::string(Loom::string(user()["DEFMENUSETTINGS"])); }
};

TEST_F(DefMenuSettingsTest, LoadFollowsEnabledPluginsAndSelectsTheStoredChoice) {
  const struct {
    bool finishing, effect;
    const char* stored;
    const char* state;
  } rows[] = {
      {true, true, "Effect", "vhv2"},
      {true, false, "Booklet", "vhh1"},  // selected though unavailable
      {false, false, "Effect", "hhh2"},
      {true, false, "effect", "vhh2"},  // no match: the selection stays
  };
  for (const auto& row : rows) {
    sheet_.window().addPlugin({"Finishing Options", u"Finishing", row.finishing, {}, {}});
    sheet_.window().addPlugin({"Effect", u"Effect", row.effect, {}, {}});
    user()["DEFMENUSETTINGS"] = row.stored;
    EXPECT_TRUE(Call("defMenuSettings", "loaddefmenusettings", Doc()));
    EXPECT_EQ(State(), row.state) << row.stored;
  }
}

TEST_F(DefMenuSettingsTest, SaveStoresTheSelectedValueOrNothing) {
  EXPECT_FALSE(Call("defMenuSettings", "saveDefMenuSettings", Doc()));
  EXPECT_FALSE(Call("defMenuSettings", "savedefmenusettings", Doc().text("x")));
  EXPECT_EQ(testing_support::Dump(user()), "=");
  Elem(u"cmb_DefMenSet")->setSelectedIndex(1);
  EXPECT_TRUE(Call("defMenuSettings", "savedefmenusettings", Doc()));
  EXPECT_EQ(Stored(), "Booklet");
  for (const auto& item : Items()) item->setAttr(Loom::kAttrSelected, u"false");
  EXPECT_TRUE(Call("defMenuSettings", "savedefmenusettings", Doc()));
  EXPECT_EQ(Stored(), "");
}

}  // namespace
