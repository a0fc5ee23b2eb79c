// The reference host's simulated device, spooler and region: the driver SDK, printers
// and their ports, spooler forms, printer registry values.
#include <gtest/gtest.h>

#include "host/driver_sdk.h"
#include "host/printer.h"
#include "refhost/device.h"
#include "refhost/sheet.h"
#include "refhost/spooler.h"
#include "refhost/text.h"

namespace {

class RefhostDeviceTest : public ::testing::Test {
 protected:
  void SetUp() override {
    refhost::device().reset();
    refhost::spooler().reset();
    refhost::region().reset();
    doc_ = sheet_.loadDocument("<window/>", "basic.xul");
  }
  refhost::Sheet sheet_;
  Loom::SmartPtr<refhost::Document> doc_;
};

TEST_F(RefhostDeviceTest, PortNamesOfTheNetwork) {
  for (const char16_t* port : {u"IP_10.0.0.1", u"IP_", u"10.0.0.1:9100", u"printer.example:9100"}) {
    EXPECT_TRUE(refhost::IsNetworkPortName(port)) << refhost::Utf8(port);
  }
  for (const char16_t* port : {u"LPT1:", u"USB001", u"FILE:", u"ip_10.0.0.1", u":9100",
                               u"host:91000", u"host:91a", u"a b:9100", u""}) {
    EXPECT_FALSE(refhost::IsNetworkPortName(port)) << refhost::Utf8(port);
  }
}

TEST_F(RefhostDeviceTest, DriverSdkAnswersFromTheSimulatedState) {
  int code = -5;
  EXPECT_FALSE(getDrawerSettings(doc_.get(), 3, code));  // never set
  EXPECT_FALSE(refhost::device().setDrawerMedia(8, 9));
  EXPECT_TRUE(refhost::device().setDrawerMedia(3, 16));
  EXPECT_TRUE(getDrawerSettings(doc_.get(), 3, code));
  EXPECT_EQ(code, 16);
  EXPECT_FALSE(getDrawerSettings(nullptr, 3, code));
  EXPECT_EQ(refhost::device().drawerQueries(), (std::vector<int>{3, 3, 3}));

  sheet_.properties().set("loom.driver.name", "Kestrel");
  EXPECT_FALSE(IsNetworkPortDriver(doc_.get(), false));  // no such printer
  EXPECT_FALSE(refhost::spooler().setPortName(u"IP_1"));
  refhost::spooler().addPrinter(u"Kestrel");
  EXPECT_TRUE(refhost::spooler().setPortName(u"printer.example:9100"));
  EXPECT_TRUE(IsNetworkPortDriver(doc_.get(), true));

  sheet_.setDirectories(u"/drv", u"/home/u", u"/all");
  EXPECT_EQ(getUserPath(doc_.get()), u"/home/u");
  sheet_.properties().set("loom.user.path", "/users/kestrel");
  EXPECT_EQ(getUserPath(doc_.get()), u"/users/kestrel");
  refhost::device().setOverlay(u"Logo", u"overlay01.ovl");
  EXPECT_EQ(OverlayMapping(doc_.get(), u"Logo"), u"overlay01.ovl");
  EXPECT_EQ(OverlayMapping(doc_.get(), u"logo"), u"");
}

TEST_F(RefhostDeviceTest, KeywordsPageSizesAndProducts) {
  const struct {
    const char* keyword;
    int width, height;
  } sizes[] = {{"ePTKWPageMediaSize_ISOA4", 210000, 297000},
               {"ePTKWPageMediaSize_NorthAmericaLetter", 215900, 279400},
               {"ePTKWPageMediaSize_Computer", 377825, 279400},
               {"ePTKWPageMediaSize_ROC16K", 196850, 273050},
               {"ePTKWPageMediaSize_JapanHagakiPostcard", 100000, 148000}};
  for (const auto& size : sizes) {
    PTKW_Pagesize row{};
    ASSERT_TRUE(PTKW_findPagesize(getPTKWFromString(size.keyword), row)) << size.keyword;
    EXPECT_EQ(row.width, size.width);
    EXPECT_EQ(row.height, size.height);
    EXPECT_EQ(row.margins[6][0], 4200);  // Kestrel
  }
  PTKW_Pagesize row{};
  EXPECT_FALSE(PTKW_findPagesize(getPTKWFromString("ePTKWPageMediaSize_isoa4"), row));
  EXPECT_EQ(getPTKWFromString(nullptr), PrintProperty::kUnknownKeyword);
  EXPECT_EQ(get_productCodeKW(6), 594);
  EXPECT_EQ(get_productCodeKW(9), 597);
  EXPECT_EQ(get_productCodeKW(11), PrintProperty::kUnknownKeyword);
  EXPECT_EQ(getPTKWFromString("ePTKWProductCode_Universal"), 597);
}

TEST_F(RefhostDeviceTest, PrintersFormsAndRegistryValues) {
  {
    const Loom::Printer missing(u"Nobody");
    EXPECT_FALSE(missing.isOpen());
    EXPECT_EQ(missing.getPortName(), u"");
    Loom::OS::FormSize size{};
    EXPECT_FALSE(Loom::OS::getFormSize(missing.getHandle(), u"A4", size));
    EXPECT_FALSE(Loom::OS::setFormSize(missing.getHandle(), u"A4", {1, 2}));
  }
  refhost::spooler().addPrinter(u"Kestrel");
  refhost::spooler().setPortName(u"LPT1:");
  {
    const Loom::Printer printer(u"Kestrel");
    EXPECT_EQ(printer.getPortName(), u"LPT1:");
    EXPECT_EQ(refhost::spooler().openHandles(), 1);
    Loom::OS::FormSize size{};
    EXPECT_FALSE(Loom::OS::getFormSize(printer.getHandle(), u"Custom Paper Size 1", size));
    EXPECT_TRUE(Loom::OS::setFormSize(printer.getHandle(), u"Custom Paper Size 1", {210000, 5}));
    EXPECT_TRUE(Loom::OS::getFormSize(printer.getHandle(), u"Custom Paper Size 1", size));
    EXPECT_EQ(size.width, 210000);
  }
  EXPECT_EQ(refhost::spooler().openHandles(), 0);
  EXPECT_EQ(refhost::spooler().printersOpened(),
            (std::vector<std::u16string>{u"Nobody", u"Kestrel"}));

  refhost::spooler().setMultiString(u"Kestrel", u"PrinterDriverData", u"Plugins", {u"A", u"B"});
  Loom::vector<Loom::wstring> out{u"old"};
  EXPECT_FALSE(
      Loom::PrinterRegistry(u"Other").getMultiString(u"PrinterDriverData", u"Plugins", out));
  EXPECT_EQ(out.size(), 1u);
  EXPECT_TRUE(
      Loom::PrinterRegistry(u"Kestrel").getMultiString(u"PrinterDriverData", u"Plugins", out));
  EXPECT_EQ(out, (Loom::vector<Loom::wstring>{u"A", u"B"}));
}

TEST_F(RefhostDeviceTest, ShipmentRegion) {
  EXPECT_FALSE(Loom::isJapaneseShipment());
  EXPECT_FALSE(Loom::isNorthAmericanShipment());
  refhost::region().setShipment(*refhost::ShipmentFromName("northamerica"));
  EXPECT_TRUE(Loom::isNorthAmericanShipment());
  refhost::region().setShipment(*refhost::ShipmentFromName("japan"));
  EXPECT_TRUE(Loom::isJapaneseShipment());
  EXPECT_FALSE(refhost::ShipmentFromName("Japan"));
}

}  // namespace
