// "txtPreview": length labels at the unit's precision.
#include "paper/txt_preview.h"

#include <gtest/gtest.h>

#include "support/sheet_test.h"

namespace {

TEST(LengthLabelTest, FormatsByUnit) {
  const char* const rows[][3] = {
      {"210", "mm", "210.0 mm"},
      {"8.267", "inch", "8.27\""},
      {"abc", "mm", "0.0 mm"},
      {"0.05", "mm", "0.1 mm"},
      {"2.675", "inch", "2.67\""},
      {"12.5cm", "mm", "12.5 mm"},
      {"-3.25", "mm", "-3.2 mm"},
      {"5", "cm", ""},
      {"5", "MM", ""},
      {"5", "inches", ""},
      // Only a leading decimal number is read: no NaN, infinity, hex or leading blank.
      {"NaN", "mm", "0.0 mm"},
      {"inf", "inch", "0.00\""},
      {"-infinity", "mm", "0.0 mm"},
      {"0x1A", "mm", "0.0 mm"},
      {" 7", "mm", "0.0 mm"},
      {"+1.5e1x", "mm", "15.0 mm"},
      {"2e", "mm", "2.0 mm"},
      {".5.5", "inch", "0.50\""},
      {"-.", "mm", "0.0 mm"},
      {"1e999", "mm", "0.0 mm"},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(spindle::preview::LengthLabel(row[0], row[1]), row[2]) << row[0] << " " << row[1];
  }
}

class TxtPreviewTest : public testing_support::SheetTest {
 protected:
  TxtPreviewTest() : SheetTest(R"(<window><label id="len" value="old"/></window>)") {}
};

TEST_F(TxtPreviewTest, OnlyAnExactMatchWritesButEveryCallAnswersTrue) {
  const auto label = [this](const char* method, const char* value, const char* unit) {
    EXPECT_TRUE(
        Call("txtPreview", method, Doc().element(Elem(u"len").get()).text(value).text(unit)));
    return Value(u"len");
  };
  EXPECT_EQ(label("setLengthValueLabel", "", "mm"), "old");
  EXPECT_EQ(label("setLengthValueLabel", "297", "mm"), "297.0 mm");
  EXPECT_EQ(label("setLengthvalueLabel", "1", "mm"), "297.0 mm");
  EXPECT_TRUE(Call("txtPreview", "setLengthValueLabel", Doc().text("1").text("1").text("mm")));
  EXPECT_EQ(Value(u"len"), "297.0 mm");
  EXPECT_EQ(label("setLengthValueLabel", "5", "cm"), "");
}

}  // namespace
