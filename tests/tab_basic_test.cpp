// "tabBasic": every row of the bin, source, media code and paper name tables, the region's
// paper sizes, the output bin, and the automatic zoom computed by hand from the page-size
// table of the simulated SDK (600 dpi unless a test says otherwise).
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <iterator>
#include <sstream>
#include <string>
#include <tuple>
#include <vector>

#include "refhost/device.h"
#include "refhost/sheet.h"
#include "refhost/spooler.h"
#include "refhost/text.h"
#include "support/fixture.h"

namespace {

// The words of a table written as text, row after row.
std::vector<std::string> Words(const char* text) {
  std::istringstream in(text);
  return {std::istream_iterator<std::string>(in), std::istream_iterator<std::string>()};
}

std::string List(const std::string& id, const std::vector<std::string>& values,
                 const std::string& selected = "") {
  std::string xml = "<menulist id=\"" + id + "\"><menupopup>";
  for (const std::string& value : values) {
    xml +=
        "<menuitem value=\"" + value + "\"" + (value == selected ? " selected=\"true\"/>" : "/>");
  }
  return xml + "</menupopup></menulist>";
}

std::string Element(const char* tag, const std::string& id, const char* attribute,
                    const std::string& value) {
  return std::string("<") + tag + " id=\"" + id + "\" " + attribute + "=\"" + value + "\"/>";
}

// "id.attribute=value" for every attribute set on an element with an id.
class ChangeLog : public refhost::ChangeObserver {
 public:
  void onChange(const refhost::Change& change) override {
    const std::u16string* id = change.element->findAttribute(u"id");
    if (id == nullptr || (change.kind != refhost::Change::Kind::kAttributeAdded &&
                          change.kind != refhost::Change::Kind::kAttributeChanged)) {
      return;
    }
    log.push_back(refhost::Utf8(*id) + "." + refhost::Utf8(change.attribute) + "=" +
                  refhost::Utf8(change.newValue));
  }
  std::vector<std::string> log;
};

class TabBasicTest : public testing_support::HostTest {
 protected:
  void SetUp() override {
    HostTest::SetUp();
    refhost::device().reset();
    refhost::spooler().reset();
    refhost::region().reset();
    sheet_.properties().set("loom.driver.name", "Kestrel Colour");
    sheet_.properties().set("loom.defaultdpi.value", "600");
    SetDevice("PRODUCTCODE", "ModelName", "KESTREL-MOD-C 5500");
  }
  void TearDown() override {
    doc_.reset();
    HostTest::TearDown();
  }

  void Load(const std::string& body) {
    doc_ = sheet_.loadDocument("<window>" + body + "</window>", "basic.xul");
  }
  void SetDevice(const char* branch, const std::string& key, const std::string& value) {
    sheet_.window().getDevSettings()[branch][key.c_str()] = value.c_str();
  }
  bool Run(const char* method) {
    return Call("tabBasic", method, refhost::Args().document(doc_.get()));
  }
  bool RunInsertPage() {
    return Call("tabBasic", "updateInsertPageMediaType",
                refhost::Args().text("src").text("dst").document(doc_.get()));
  }
  void Select(const Loom::wstring& list, const std::string& value) {
    doc_->getElementById(list)->selMenulistWithVal(refhost::Utf16(value));
  }
  std::string Selected(const Loom::wstring& list) {
    return refhost::Utf8(doc_->getElementById(list)->getValfromMenulist());
  }
  void Set(const Loom::wstring& id, const Loom::wstring& attribute, const Loom::wstring& value) {
    doc_->getElementById(id)->setAttribute(attribute, value);
  }
  std::string Attr(const Loom::wstring& id, const Loom::wstring& name) {
    return refhost::Utf8(doc_->getElementById(id)->getAttribute(name));
  }
  // The drawers queried since the last look.
  std::vector<int> Queries() {
    std::vector<int> queries = refhost::device().drawerQueries();
    refhost::device().clearRecords();
    return queries;
  }

  refhost::Sheet sheet_;
  Loom::SmartPtr<refhost::Document> doc_;
};

TEST_F(TabBasicTest, EveryInputBinQueriesItsDrawerAndReadsItsPaper) {
  // Value, drawer queried (0: none), device paper key ("-": no paper size follows).
  const std::vector<std::string> rows = Words(
      "AUTO 0 -  DRAWER1 1 Drawer1Paper  DRAWER2 2 Drawer2Paper  DRAWER3 3 Drawer3Paper  "
      "DRAWER4 4 Drawer4Paper  LCF 5 LCFPaper  BYPASSTRAY 6 -  EXTLCF 7 ExternalLCFPaper  "
      "drawer1 0 -  DRAWER5 0 -");
  std::vector<std::string> bins;
  for (std::size_t i = 0; i < rows.size(); i += 3) bins.push_back(rows[i]);
  Load(List("ePTKWPageInputBin", bins) + List("ePTKWPageMediaType", {"KEEP", "PLAIN"}) +
       List("ePTKWPagePrintMediaSize", {"KEEP", "ePTKWPageMediaSize_ISOA5"}));
  for (int drawer = refhost::kFirstDrawer; drawer <= refhost::kLastDrawer; ++drawer) {
    refhost::device().setDrawerMedia(drawer, 9);
  }
  for (std::size_t i = 0; i < rows.size(); i += 3) {
    const int drawer = std::stoi(rows[i + 1]);
    const bool hasPaper = rows[i + 2] != "-";
    SCOPED_TRACE(rows[i]);
    Select(u"ePTKWPageInputBin", rows[i]);
    Select(u"ePTKWPageMediaType", "KEEP");
    Select(u"ePTKWPagePrintMediaSize", "KEEP");
    sheet_.window().getDevSettings().remove("DrawerSettings");
    if (hasPaper) SetDevice("DrawerSettings", rows[i + 2], "A5");
    EXPECT_TRUE(Run("updateMediaTypeFromInputBin"));
    EXPECT_TRUE(Run("updatePrintPaperSizeFromInputBin"));
    EXPECT_EQ(Queries(), drawer ? std::vector<int>{drawer} : std::vector<int>{});
    EXPECT_EQ(Selected(u"ePTKWPageMediaType"), drawer ? "PLAIN" : "KEEP");
    EXPECT_EQ(Selected(u"ePTKWPagePrintMediaSize"), hasPaper ? "ePTKWPageMediaSize_ISOA5" : "KEEP");
  }
}

TEST_F(TabBasicTest, EveryInsertPageSourceQueriesItsDrawer) {
  const std::vector<std::string> rows = Words(
      "AutoSelect 0  Drawer1 1  Drawer2 2  Drawer3 3  Drawer4 4  LCF 5  Manual 6  "
      "ExternalLCF 7  DRAWER1 0  BYPASSTRAY 0");
  std::vector<std::string> sources;
  for (std::size_t i = 0; i < rows.size(); i += 2) sources.push_back(rows[i]);
  Load(List("src", sources) + List("dst", {"KEEP", "Plain"}));
  for (int drawer = refhost::kFirstDrawer; drawer <= refhost::kLastDrawer; ++drawer) {
    refhost::device().setDrawerMedia(drawer, 9);
  }
  for (std::size_t i = 0; i < rows.size(); i += 2) {
    const int drawer = std::stoi(rows[i + 1]);
    Select(u"src", rows[i]);
    Select(u"dst", "KEEP");
    EXPECT_TRUE(RunInsertPage());
    EXPECT_EQ(Queries(), drawer ? std::vector<int>{drawer} : std::vector<int>{}) << rows[i];
    EXPECT_EQ(Selected(u"dst"), drawer ? "Plain" : "KEEP") << rows[i];
  }
}

TEST_F(TabBasicTest, EveryMediaCodeSelectsItsValueInBothColumns) {
  // By code from 0; "-" leaves the list unchanged, as every code past the end does.
  const std::vector<std::string> main = Words(
      "- - - Thick1 Thick2 Thick3 Thick4 TRANSPARENCY - PLAIN - - Tab Special1 Special2 Recycled "
      "Thick2B Thick3B Special1B Special2B Thick1B Thick4B Plain1 Plain2");
  const std::vector<std::string> insert = Words(
      "- - - Thick1 Thick2 Thick3 Thick4 Transparency - Plain - - Tab - - RecycledPaper "
      "Thick2Back Thick3Back - - Thick1Back Thick4Back Plain1 Plain2");
  Load(List("ePTKWPageInputBin", {"DRAWER2"}, "DRAWER2") + List("ePTKWPageMediaType", main) +
       List("src", {"Drawer2"}, "Drawer2") + List("dst", insert) +
       Element("label", "str_BscPapTypTab", "hidden", "true") +
       Element("textbox", "edt_isTabPrintMediaSize", "value", "false"));
  for (int code = -1; code <= static_cast<int>(main.size()); ++code) {
    SCOPED_TRACE(code);
    const bool known = code >= 0 && code < static_cast<int>(main.size());
    Select(u"ePTKWPageMediaType", "-");
    Select(u"dst", "-");
    Set(u"str_BscPapTypTab", u"hidden", u"true");
    Set(u"edt_isTabPrintMediaSize", u"value", u"false");
    refhost::device().setDrawerMedia(2, code);
    EXPECT_TRUE(Run("updateMediaTypeFromInputBin"));
    EXPECT_TRUE(RunInsertPage());
    EXPECT_EQ(Selected(u"ePTKWPageMediaType"), known ? main[code] : "-");
    EXPECT_EQ(Selected(u"dst"), known ? insert[code] : "-");
    // Only the main list's tab paper shows the tab controls.
    EXPECT_EQ(Attr(u"str_BscPapTypTab", u"hidden"), code == 12 ? "false" : "true");
    EXPECT_EQ(Attr(u"edt_isTabPrintMediaSize", u"value"), code == 12 ? "true" : "false");
  }
  // Without its controls, tab paper leaves the media type as it is.
  Load(List("ePTKWPageInputBin", {"DRAWER2"}, "DRAWER2") + List("ePTKWPageMediaType", main, "-"));
  refhost::device().setDrawerMedia(2, 12);
  EXPECT_TRUE(Run("updateMediaTypeFromInputBin"));
  EXPECT_EQ(Selected(u"ePTKWPageMediaType"), "-");
}

TEST_F(TabBasicTest, EveryDevicePaperNameSelectsItsKeyword) {
  // Device paper name, then the keyword after "ePTKWPageMediaSize_"; the last rows are
  // rotated feeds, a bare suffix and names the table does not know.
  const std::vector<std::string> rows = Words(
      "A4 ISOA4  A5 ISOA5  A3 ISOA3  A6 ISOA6  B4 JISB4  B5 JISB5  Folio OtherMetricA4Plus  "
      "A4_PLUS OtherMetricA4Plus  A3-Wide NorthAmericaArchitectureBSheet  "
      "A3Wide NorthAmericaArchitectureBSheet  Postcard JapanHagakiPostcard  "
      "JAPANESE_POSTCARD JapanHagakiPostcard  Letter NorthAmericaLetter  "
      "LETTER NorthAmericaLetter  LEGAL NorthAmericaLegal  Ledger NorthAmericaTabloid  "
      "TABLOID NorthAmericaTabloid  STATEMENT NorthAmericaStatement  Computer Computer  "
      "LG13 NorthAmericaGermanLegalFanfold  13\"LG NorthAmericaGermanLegalFanfold  "
      "LG_13 NorthAmericaGermanLegalFanfold  SQ85 8_5Square  8.5\"SQ 8_5Square  "
      "Square_85 8_5Square  1319inch 13x19inch  x1319 13x19inch  16K ROC16K  K_16 ROC16K  "
      "8K ROC8K  K_8 ROC8K  320450mm ISOSRA3  SRA3 ISOSRA3  320460mm 320x460mm  "
      "(320x460mm) 320x460mm  CMBPS 320x460mm  A0 ISOA0  A1 ISOA1  A2 ISOA2  "
      "A3-R ISOA3  LETTER-R NorthAmericaLetter  -R ISOA4  A5-r ISOA4  a5 ISOA4  Executive ISOA4");
  std::vector<std::string> keywords{"KEEP"};
  for (std::size_t i = 1; i < rows.size(); i += 2)
    keywords.push_back("ePTKWPageMediaSize_" + rows[i]);
  Load(List("ePTKWPageInputBin", {"LCF"}, "LCF") + List("ePTKWPagePrintMediaSize", keywords));
  for (std::size_t i = 0; i < rows.size(); i += 2) {
    Select(u"ePTKWPagePrintMediaSize", "KEEP");
    SetDevice("DrawerSettings", "LCFPaper", rows[i]);
    EXPECT_TRUE(Run("updatePrintPaperSizeFromInputBin"));
    EXPECT_EQ(Selected(u"ePTKWPagePrintMediaSize"), "ePTKWPageMediaSize_" + rows[i + 1]) << rows[i];
  }
}

TEST_F(TabBasicTest, OutputBinFollowsTheSelection) {
  Load(List("ePTKWJobOutputBin", {"Tray1", "Tray2"}, "Tray2") + List("empty", {"Tray1"}));
  Set(u"ePTKWJobOutputBin", u"value", u"Tray1");
  EXPECT_TRUE(Run("updateOutputBin"));
  EXPECT_EQ(Attr(u"ePTKWJobOutputBin", u"value"), "Tray2");
  Load(List("ePTKWJobOutputBin", {"Tray1"}));
  Set(u"ePTKWJobOutputBin", u"value", u"Old");
  EXPECT_TRUE(Run("updateOutputBin"));
  EXPECT_EQ(Attr(u"ePTKWJobOutputBin", u"value"), "Old");
}

TEST_F(TabBasicTest, EveryCallAnswersTrueAndMissingElementsChangeNothing) {
  // Each page lacks one of the elements its method needs.
  Load(R"(<vbox id="vars"/><label id="JAPANESE_POSTCARD"/><label id="A6"/><label id="PPS_A6"/>)" +
       List("ePTKWPageInputBin", {"DRAWER1"}, "DRAWER1") + List("src", {"Drawer1"}, "Drawer1"));
  ChangeLog changes;
  sheet_.setChangeObserver(&changes);
  refhost::device().setDrawerMedia(1, 9);
  for (const char* method :
       {"setOSSettingsBasedPaperSize", "updatePageScaleRatio", "updateMediaTypeFromInputBin",
        "updatePrintPaperSizeFromInputBin", "updateOutputBin", "noSuchMethod"}) {
    EXPECT_TRUE(Run(method)) << method;
    EXPECT_TRUE(Call("tabBasic", method, refhost::Args().document(nullptr))) << method;
  }
  EXPECT_TRUE(RunInsertPage());
  EXPECT_TRUE(Call("tabBasic", "updateOutputBin", refhost::Args().text("x")));
  EXPECT_TRUE(changes.log.empty());
  sheet_.setChangeObserver(nullptr);
}

// The zoom page. Kestrel margins: 4.2 mm, 99 dots on every edge.
class ZoomTest : public TabBasicTest {
 protected:
  void Page(const std::string& original, const std::string& print) {
    std::string page;
    for (const char* box : {"chk_FnshCustomMargin", "ePTKWJobNUpAllDocumentsContiguously",
                            "chk2sideprint", "chk_manualScale"}) {
      page += Element("checkbox", box, "checked", "false");
    }
    for (const char* side : {"Left", "Right", "Top", "Bottom"}) {
      page += Element("textbox", std::string("ePTKWPageCustomMargin_Margin") + side, "value", "0");
    }
    Load(page + List("oppsz", {original}, original) +
         List("ePTKWPagePrintMediaSize", {print}, print) +
         List("ePTKWJobNUpAllDocumentsContiguously_PagesPerSheet", Words("2 3 4 6 8 9 16")) +
         List("ePTKWDocumentBinding", {"ePTKWDocumentBinding_Booklet", "Left"}, "Left") +
         Element("textbox", "ePTKWDocumentBinding_Booklet_CenterGutter", "value", "10000") +
         Element("textbox", "ePTKWDocumentBinding_Booklet_BindingGutter", "value", "5000") +
         Element("textbox", "ePTKWPageScaling_CustomSquare_Scale", "value", "55") +
         Element("label", "preview_lbMS", "value", "55%") +
         List("ePTKWPageScaling", {"ePTKWPageScaling_None",
                                   "ePTKWPageScaling_FitApplicationMediaSizeToPageMediaSize"}) +
         Element("textbox", "ePTKWPageScalingScale_Width", "value", "") +
         Element("textbox", "ePTKWPageScalingScale_Height", "value", ""));
  }
  // The zoom shown after updatePageScaleRatio; "55" when nothing was written.
  std::string Zoom() {
    EXPECT_TRUE(Run("updatePageScaleRatio"));
    const std::string scale = Attr(u"ePTKWPageScaling_CustomSquare_Scale", u"value");
    EXPECT_EQ(Attr(u"preview_lbMS", u"value"), scale + "%");
    return scale;
  }
  // The smaller of a/b and c/d in percent, in single precision, halves rounding down.
  static std::string Fit(int a, int b, int c, int d) {
    const float zoom = std::min(a * 100.0f / b, c * 100.0f / d);
    return std::to_string(static_cast<int>(std::ceil(zoom - 0.5f)));
  }
};

TEST_F(ZoomTest, PlainFitUsesTheProductsMarginsPerEdge) {
  // Model-independent margins: left 4.2, top 5, right 4.8, bottom 6 mm = 99, 118, 113, 141
  // dots. A6 is 2480 x 3496 dots, A1 14031 x 19866: on so different sizes, taking any other
  // two edges for the width gives another zoom.
  SetDevice("PRODUCTCODE", "ModelName", "Universal");
  Page("A6", "ePTKWPageMediaSize_ISOA1");
  EXPECT_EQ(Zoom(), Fit(14031 - 99 - 113, 2480 - 99 - 113, 19866 - 118 - 141, 3496 - 118 - 141));
  EXPECT_EQ(Zoom(), "606");
  // Kestrel, A4 (4960 x 7015) onto Letter (5100 x 6600).
  SetDevice("PRODUCTCODE", "ModelName", "kestrel-mod-a");
  Page("A4", "ePTKWPageMediaSize_NorthAmericaLetter");
  EXPECT_EQ(Zoom(), Fit(5100 - 198, 4960 - 198, 6600 - 198, 7015 - 198));
}

TEST_F(ZoomTest, EachNUpGrid) {
  // Computer paper (14.875 x 11 in = 8925 x 6600 dots) onto A4 (4960 x 7015).
  const int ow = 8925 - 198, oh = 6600 - 198, pw = 4960 - 198, ph = 7015 - 198;
  const struct {
    const char* pages;
    std::string zoom;
  } rows[] = {{"2", Fit(ph, 2 * ow, pw, 1 * oh)},
              {"4", Fit(pw, 2 * ow, ph, 2 * oh)},
              {"6", Fit(ph, 3 * ow, pw, 2 * oh)},
              {"8", Fit(ph, 4 * ow, pw, 2 * oh)},
              {"9", Fit(pw, 3 * ow, ph, 3 * oh)},
              {"16", Fit(pw, 4 * ow, ph, 4 * oh)},
              {"3", "100"}};
  Page("Computer", "ePTKWPageMediaSize_ISOA4");
  Set(u"ePTKWJobNUpAllDocumentsContiguously", u"checked", u"true");
  for (const auto& row : rows) {
    Select(u"ePTKWJobNUpAllDocumentsContiguously_PagesPerSheet", row.pages);
    EXPECT_EQ(Zoom(), row.zoom) << row.pages << " pages per sheet";
  }
}

TEST_F(ZoomTest, BookletSubtractsTheGuttersFromTheWholeSheetHeight) {
  // A4 onto A3 (7015 x 9921); centre gutter 10 mm = 236 dots, binding gutter 5 mm = 118.
  Page("A4", "ePTKWPageMediaSize_ISOA3");
  Set(u"chk2sideprint", u"checked", u"true");
  EXPECT_EQ(Zoom(), Fit(7015 - 198, 4960 - 198, 9921 - 198, 7015 - 198));
  Select(u"ePTKWDocumentBinding", "ePTKWDocumentBinding_Booklet");
  EXPECT_EQ(Zoom(), Fit(9921 - 236 - 2 * 118, 2 * (4960 - 198), 7015 - 198, 7015 - 198));
}

TEST_F(ZoomTest, CustomMarginsReplaceTheTableMarginsOnBothPages) {
  // Left 10, right 20, top 5, bottom 15 mm: 236, 472, 118, 354 dots. A5 is 3496 x 4960.
  Page("A4", "ePTKWPageMediaSize_ISOA5");
  Set(u"chk_FnshCustomMargin", u"checked", u"true");
  Set(u"ePTKWPageCustomMargin_MarginLeft", u"value", u"10000.00");
  Set(u"ePTKWPageCustomMargin_MarginRight", u"value", u"20000");
  Set(u"ePTKWPageCustomMargin_MarginTop", u"value", u"5000");
  Set(u"ePTKWPageCustomMargin_MarginBottom", u"value", u"15000.75");
  EXPECT_EQ(Zoom(), Fit(3496 - 708, 4960 - 708, 4960 - 472, 7015 - 472));
}

TEST_F(ZoomTest, CustomFormsRoundHalvesDown) {
  // At 254 dpi a dot is exactly 100 micrometres; a custom form has no table margins.
  sheet_.properties().set("loom.defaultdpi.value", "254");
  refhost::spooler().addPrinter(u"Kestrel Colour");
  Page("DMPAPER_KEST_CUSTOM12", "Custom Paper Size 3");
  // Original and print widths in dots: 169 / 200 is 84.5, 8451 / 10000 is 84.51.
  for (const auto& [original, print, zoom] : {std::tuple{200, 169, "84"}, {10000, 8451, "85"}}) {
    refhost::spooler().setForm(u"Custom Paper Size 12", {original * 100, 1000000});
    refhost::spooler().setForm(u"Custom Paper Size 3", {print * 100, 10000000});
    refhost::spooler().clearRecords();
    EXPECT_EQ(Zoom(), zoom);
    EXPECT_EQ(refhost::spooler().formsLookedUp(),
              (std::vector<std::u16string>{u"Custom Paper Size 12", u"Custom Paper Size 3"}));
    EXPECT_EQ(refhost::spooler().openHandles(), 0);
  }
}

TEST_F(ZoomTest, MissingFormOrPrinterFallsBackToTheFixedFactors) {
  // 600 x 0.08267716 = 49.6 and 600 x 0.116929136 = 70.2 dots, without margins.
  const std::string fallback = Fit(4960 - 198, 49, 7015 - 198, 70);
  Page("DMPAPER_KEST_CUSTOM1", "ePTKWPageMediaSize_ISOA4");
  EXPECT_EQ(Zoom(), fallback);  // no printer
  refhost::spooler().addPrinter(u"Kestrel Colour");
  EXPECT_EQ(Zoom(), fallback);  // no form
  refhost::spooler().setForm(u"Custom Paper Size 1", {210000, 297000});
  EXPECT_EQ(Zoom(), Fit(4960 - 198, 4960, 7015 - 198, 7015));
  EXPECT_EQ(refhost::spooler().printersOpened().size(), 3u);
}

TEST_F(ZoomTest, UnknownProductOrMissingPageChangesNothing) {
  Page("A4", "ePTKWPageMediaSize_ISOA4");
  SetDevice("PRODUCTCODE", "ModelName", "Kestrel Model H");
  EXPECT_EQ(Zoom(), "55");
  SetDevice("PRODUCTCODE", "ModelName", "Universal");
  Page("A4", "ePTKWPageMediaSize_Unlisted");
  EXPECT_EQ(Zoom(), "55");
  Page("A4", "ePTKWPageMediaSize_ISOA4");
  sheet_.properties().unset("loom.defaultdpi.value");
  EXPECT_EQ(Zoom(), "55");
}

TEST_F(ZoomTest, OnlyATickedBoxMeansManualScaling) {
  Page("A4", "ORIGINAL");
  Set(u"chk_manualScale", u"checked", u"true");
  EXPECT_EQ(Zoom(), "");
  EXPECT_EQ(Attr(u"preview_lbMS", u"value"), "%");
  EXPECT_EQ(Attr(u"ePTKWPageScalingScale_Width", u"value"), "");
  for (const char16_t* unticked : {u"false", u"", u"True"}) {
    Set(u"chk_manualScale", u"checked", unticked);
    EXPECT_NE(Zoom(), "");
  }
}

}  // namespace
