// "margin": limits per product type and unit, the shown and stored formats, the unit
// conversion of validateValues and toggle, and the range labels.
#include <gtest/gtest.h>

#include <sstream>
#include <string>

#include "refhost/sheet.h"
#include "refhost/text.h"
#include "support/fixture.h"

namespace {

constexpr const char* kSides[] = {"Left", "Right", "Top", "Bottom"};

class MarginTest : public testing_support::HostTest {
 protected:
  void TearDown() override {
    doc_.reset();
    HostTest::TearDown();
  }

  // The dialog in the stored `unit`; a null `productType` leaves out "edt_MarginProdType".
  void Dialog(const std::string& unit, const char* productType, const std::string& extra = "") {
    std::string xml = "<window>";
    for (const std::string side : kSides) {
      xml += "<textbox id=\"ePTKWPageCustomMargin_Margin" + side + "\"/><textbox id=\"edt_Margin" +
             side + "\"/><label id=\"txt_Margin" + side + "\"/>";
    }
    xml += R"(<radiogroup id="rdg_MarginUnit"><radio value="inch"/><radio value="mm"/></radiogroup>
              <label id="txt_FshCustomMarginUnit" value=")" +
           unit + "\"/>";
    if (productType)
      xml += "<textbox id=\"edt_MarginProdType\" value=\"" + std::string(productType) + "\"/>";
    doc_ = sheet_.loadDocument(xml + extra + "</window>", "margin.xul");
  }
  bool Run(const char* method) {
    return Call("margin", method, refhost::Args().document(doc_.get()));
  }
  bool Run(const char* method, const char* text) {
    return Call("margin", method, refhost::Args().document(doc_.get()).text(text));
  }
  bool Run(const char* method, int value) {
    return Call("margin", method, refhost::Args().document(doc_.get()).integer(value));
  }
  std::string Value(const std::string& id) {
    return refhost::Utf8(doc_->getElementById(refhost::Utf16(id))->getAttribute(u"value"));
  }
  // The four values of the fields `prefix` + side, separated by blanks; setting them too.
  std::string Values(const std::string& prefix) {
    std::string values;
    for (const char* side : kSides) values += (side == kSides[0] ? "" : " ") + Value(prefix + side);
    return values;
  }
  void SetValues(const std::string& prefix, const std::string& values) {
    std::istringstream in(values);
    std::string value;
    for (const char* side : kSides) {
      in >> value;
      doc_->getElementById(refhost::Utf16(prefix + side))
          ->setAttribute(u"value", refhost::Utf16(value));
    }
  }

  refhost::Sheet sheet_;
  Loom::SmartPtr<refhost::Document> doc_;
};

TEST_F(MarginTest, UpdateDlgClampsToTheProductTypesLimits) {
  const struct {
    const char* productType;  // null: no product type element
    const char* unit;
    const char* shown;
  } rows[] = {
      {"EXMASH", "inch", "0.17 1.00 3.94 0.17"},    {"EXBP", "inch", "0.17 1.00 3.94 0.17"},
      {"Universal", "inch", "0.17 1.00 3.94 0.17"}, {nullptr, "inch", "0.17 1.00 3.94 0.17"},
      {"EXB", "inch", "0.20 1.00 3.94 0.20"},       {"universal", "inch", "0.20 1.00 3.94 0.20"},
      {"EXMASH", "mm", "4.2 25.4 100.0 4.3"},       {"Other", "mm", "5.0 25.4 100.0 5.0"},
      {nullptr, "Inch", "4.2 25.4 100.0 4.3"}};
  for (const auto& row : rows) {
    SCOPED_TRACE(std::string(row.productType ? row.productType : "(none)") + " " + row.unit);
    Dialog(row.unit, row.productType);
    SetValues("ePTKWPageCustomMargin_Margin", "1000 25400 150000 4300.00");
    EXPECT_TRUE(Run("updateDlg"));
    EXPECT_EQ(Values("edt_Margin"), row.shown);
    EXPECT_EQ(refhost::Utf8(doc_->getElementById(u"rdg_MarginUnit")->getValFromRadioGroup()),
              std::string(row.unit) == "inch" ? "inch" : "mm");
  }
  doc_->getElementById(u"txt_MarginBottom")->setAttribute(u"id", u"gone");
  SetValues("edt_Margin", "x x x x");
  EXPECT_TRUE(Run("updateDlg"));
  EXPECT_EQ(Values("edt_Margin"), "x x x x");
}

TEST_F(MarginTest, SetCustomMarginStoresMicrometresWithTwoDecimals) {
  Dialog("", "EXBP");
  SetValues("edt_Margin", "4.2 100 12.5 x");
  EXPECT_TRUE(Run("setCustomMargin"));
  EXPECT_EQ(Values("ePTKWPageCustomMargin_Margin"), "4200.00 100000.00 12500.00 0.00");
  EXPECT_EQ(Value("txt_FshCustomMarginUnit"), "mm");
  doc_->getElementById(u"rdg_MarginUnit")->setRadioGroupWithVal(u"inch");
  SetValues("edt_Margin", "0.17 1 3.94 0.5");
  EXPECT_TRUE(Run("setCustomMargin"));
  EXPECT_EQ(Values("ePTKWPageCustomMargin_Margin"), "4318.00 25400.00 100076.00 12700.00");
  EXPECT_EQ(Value("txt_FshCustomMarginUnit"), "inch");
}

TEST_F(MarginTest, ValidateValuesConvertsRoundsAndBounds) {
  const struct {
    const char* toInches;
    const char* productType;
    const char* typed;
    const char* shown;
  } rows[] = {
      // Into inches rounding up at two places; 76.2 mm is 3.00 despite binary fractions.
      {"true", "EXBP", "4.2 25.4 76.2 150", "0.17 1.00 3.00 3.94"},
      {"true", "Other", "4.2 25.5 0 x", "0.20 1.01 0.20 0.20"},
      // Into millimetres rounding down at one place; 1.5 in is 38.1 despite binary fractions.
      {"false", "EXBP", "0.17 1.5 0.1 5", "4.3 38.1 4.2 100.0"},
      {"TRUE", "Other", "0.17 1.00 0.1 3.94", "5.0 25.4 5.0 100.0"}};
  for (const auto& row : rows) {
    Dialog("", row.productType);
    SetValues("edt_Margin", row.typed);
    EXPECT_TRUE(Run("validateValues", row.toInches));
    EXPECT_EQ(Values("edt_Margin"), row.shown) << row.toInches << " " << row.productType;
  }
}

TEST_F(MarginTest, ToggleSetsTheRangeLabelsAndConvertsFieldsStillInTheOtherUnit) {
  Dialog("mm", "EXBP", R"(<label id="txt_CusPapSizLabAVal"/><label id="txt_CusPapSizLabBVal"/>)");
  const auto labels = [this] {
    return Value("txt_CusPapSizLabAVal") + " / " + Value("txt_CusPapSizLabBVal");
  };
  SetValues("ePTKWPageCustomMargin_Margin", "25400 5000 5000 5000");
  EXPECT_TRUE(Run("updateDlg"));
  EXPECT_TRUE(Run("toggle", 0));
  EXPECT_EQ(labels(), "inches (3.94-12.00) / inches (5.83-47.24)");
  EXPECT_EQ(Values("edt_Margin"), "1.00 0.20 0.20 0.20");
  // Already in inches: a second toggle relabels only.
  SetValues("edt_Margin", "2.00 0.20 0.20 0.20");
  EXPECT_TRUE(Run("toggle", 0));
  EXPECT_EQ(Values("edt_Margin"), "2.00 0.20 0.20 0.20");
  // validateValues first, as the dialog does: toggle then only relabels.
  EXPECT_TRUE(Run("validateValues", "false"));
  EXPECT_TRUE(Run("toggle", 1));
  EXPECT_EQ(labels(), "mm (100.0 - 313.4) / mm (148.0 - 1200.0)");
  EXPECT_EQ(Values("edt_Margin"), "50.8 5.0 5.0 5.0");
}

TEST_F(MarginTest, EveryCallAnswersTrueAndUnmatchedCallsChangeNothing) {
  Dialog("mm", "EXBP");
  SetValues("ePTKWPageCustomMargin_Margin", "25400 5000 5000 5000");
  EXPECT_TRUE(Run("toggle", "0"));
  EXPECT_TRUE(Run("validateValues", 1));
  EXPECT_TRUE(Run("updatedlg"));
  EXPECT_TRUE(Call("margin", "updateDlg", refhost::Args().document(nullptr)));
  EXPECT_EQ(Values("edt_Margin"), "   ");
}

}  // namespace
