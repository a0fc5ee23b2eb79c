// The exported element helpers, the account-settings flag function and the string
// conversions at the host boundary.
#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

#include "core/spindleui.h"
#include "core/text.h"
#include "host/codes.h"
#include "refhost/accounting.h"
#include "refhost/sheet.h"

namespace {

TEST(PrintJobFlagsTest, AllSixteenCombinationsDecideOrKeepEachOutput) {
  // Per combination of (universal, authentication, private restriction, hold
  // restriction): paper, private, hold, proof, schedule, box as 'T' set true, 'F' set
  // false, 'K' kept as the caller put it.
  struct Row {
    bool a, b, c, d;
    const char* outputs;
  } rows[] = {
      {false, false, false, false, "TTTTTT"}, {true, false, false, false, "TTTTTT"},
      {false, false, true, false, "FTFFFT"},  {true, false, true, false, "FTFFFF"},
      {false, false, true, true, "FTTFFT"},   {true, false, true, true, "FTTFFF"},
      {false, false, false, true, "FFTFFT"},  {true, false, false, true, "FFTFFF"},
      {false, true, true, false, "KFTKKK"},   {true, true, true, false, "KFTKKK"},
      {false, true, true, true, "KFTKKK"},    {true, true, true, true, "KFTKKK"},
      {false, true, false, false, "TFTTTT"},  {true, true, false, false, "TFTTTT"},
      {false, true, false, true, "FFTFFT"},   {true, true, false, true, "FFTFFF"},
  };
  for (const Row& r : rows) {
    for (bool start : {false, true}) {
      bool o[6] = {start, start, start, start, start, start};
      getPrintJobFlagByAccoutSettings(r.a, r.b, r.c, r.d, o[0], o[1], o[2], o[3], o[4], o[5]);
      for (int i = 0; i < 6; ++i) {
        const bool expected = r.outputs[i] == 'K' ? start : r.outputs[i] == 'T';
        EXPECT_EQ(o[i], expected) << "a=" << r.a << " b=" << r.b << " c=" << r.c << " d=" << r.d
                                  << " output " << i + 1 << " starting " << start;
      }
    }
  }
}

class ElementHelpersTest : public ::testing::Test {
 protected:
  void SetUp() override { held_ = refhost::heldReferences(); }
  void TearDown() override {
    target_.reset();
    source_.reset();
    EXPECT_EQ(refhost::heldReferences(), held_);
  }

  Loom::SmartPtr<Loom::XUL::xXULDoc> Load(const char* xul) {
    return Loom::SmartPtr<Loom::XUL::xXULDoc>(sheet_.loadDocument(xul, "page.xul").get());
  }
  // value[:label] of each item of the item list `id`.
  static std::string Items(const Loom::SmartPtr<Loom::XUL::xXULDoc>& doc, const char16_t* id) {
    std::string text;
    Loom::XUL::ElemList items;
    doc->getElementById(id)->getChildrenOfType(Loom::kElemMenuItem, items);
    for (const auto& item : items) {
      text += spindle::Narrow(item->getAttr(Loom::kAttrValue));
      if (item->hasAttribute(u"label"))
        text += ":" + spindle::Narrow(item->getAttr(Loom::kAttrLabel));
      text += " ";
    }
    return text;
  }

  refhost::Sheet sheet_;
  long held_ = 0;
  Loom::SmartPtr<Loom::XUL::xXULDoc> target_, source_;
};

TEST_F(ElementHelpersTest, GetXulElemByIdSearchesAndResolvesArgs) {
  target_ = Load(R"(<window id="w"><vbox id="vars"/><label id="l"/></window>)");
  EXPECT_EQ(getXULElembyID(u"l", target_), target_->getElementById(u"l"));
  EXPECT_NE(getXULElembyID(u"args", target_), nullptr);
  EXPECT_EQ(target_->getElementById(u"args"), nullptr);
  EXPECT_EQ(getXULElembyID(u"missing", target_), nullptr);
  EXPECT_EQ(getXULElembyID(u"l", nullptr), nullptr);
}

TEST_F(ElementHelpersTest, CopyMenulistItemsSkipsTheFirstAndCopiesOnlyNonEmptyLabels) {
  struct Case {
    const char* sourceItems;
    std::string expected;
  } cases[] = {
      {R"(<menuitem value="a" label="A"/><menuitem value="b" label="B"/><menuitem value="c"/>)",
       "b:B c "},
      {R"(<menuitem value="a"/><menuitem value="b" label=""/>)", "b "},
      {R"(<menuitem value="only" label="Only"/>)", ""},
      {"", ""},
  };
  for (const Case& c : cases) {
    target_ = Load(R"(<window><menulist id="t"><menupopup id="tp">
        <menuitem value="old1"/><menuitem value="old2"/></menupopup></menulist></window>)");
    source_ = Load((std::string(R"(<window><menulist><menupopup id="sp">)") + c.sourceItems +
                    "</menupopup></menulist></window>")
                       .c_str());
    copyMenulistItems(u"tp", u"sp", target_, source_);
    EXPECT_EQ(Items(target_, u"tp"), c.expected) << c.sourceItems;
  }
}

TEST_F(ElementHelpersTest, CopyMenulistItemsStopsAtTheWrongKindOfElement) {
  const char* const page = R"(<window><menulist id="t"><menupopup id="tp">
      <menuitem value="old"/></menupopup></menulist><menupopup id="sp">
      <menuitem value="x"/><menuitem value="y"/></menupopup></window>)";
  target_ = Load(page);
  copyMenulistItems(u"t", u"sp", target_, target_);  // a menu list is not an item list
  EXPECT_EQ(Items(target_, u"tp"), "old ");
  copyMenulistItems(u"tp", u"missing", target_, target_);  // emptied, nothing copied
  EXPECT_EQ(Items(target_, u"tp"), "");
  copyMenulistItems(u"tp", u"sp", target_, nullptr);
  EXPECT_EQ(Items(target_, u"tp"), "");
  copyMenulistItems(u"tp", u"sp", target_, target_);
  EXPECT_EQ(Items(target_, u"tp"), "y ");
}

TEST(TextTest, ConvertsBothWaysAndPassesInvalidInputErrorsOn) {
  EXPECT_EQ(spindle::Widen("A\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80"), u"A\u00E9\u20AC\U0001F600");
  EXPECT_EQ(spindle::Narrow(u"A\u00E9\u20AC\U0001F600"), "A\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80");
  struct Bad {
    std::string utf8;
    const char* message;
  } bad[] = {{"\xFF", "Invalid UTF-8"},
             {"a\xC3\x28", "Invalid UTF-8"},
             {"\xED\xA0\x80", "Invalid code point"},
             {"ab\xC3", "Not enough space"}};
  for (const Bad& b : bad) {
    try {
      spindle::Widen(b.utf8);
      ADD_FAILURE() << "no exception";
    } catch (const std::exception& e) {
      EXPECT_STREQ(e.what(), b.message);
    }
  }
  try {
    spindle::Narrow(std::u16string(1, u'\xD800'));
    ADD_FAILURE() << "no exception";
  } catch (const std::exception& e) {
    EXPECT_STREQ(e.what(), "Invalid UTF-16");
  }
  EXPECT_EQ(spindle::DecimalText(-2147483648LL), u"-2147483648");
}

}  // namespace
