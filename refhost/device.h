// The simulated printer device behind the driver SDK (host/driver_sdk.h), and the
// shipment region behind Loom::isJapaneseShipment / isNorthAmericanShipment.
//
// The device reports a media code per drawer and maps overlay names to files; the page-size
// table (real paper sizes in micrometres with every product's margins) and the product
// code keywords are fixed, as in the real SDK. Tests and the scenario runner set the
// device up through refhost::device() and the region through refhost::region(), one
// control call per runner statement:
//   drawer N media CODE        device().setDrawerMedia(N, CODE)
//   shipment japan|northamerica|other
//                              region().setShipment(ShipmentFromName(...))
// reset() puts each back to its defaults for a fresh scenario. What the library asked of
// the device is recorded for inspection.
#pragma once

#include <array>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "host/driver_sdk.h"

namespace refhost {

// One paper size of the SDK's page-size table; lengths in micrometres, portrait.
struct PageSizeEntry {
  std::string_view keyword;  // "ePTKWPageMediaSize_ISOA4"
  PrintProperty::e_PTKW number;
  int width;
  int height;
};

// One product of the SDK, in get_productCodeKW order. Its margins apply to every paper
// size of the table.
struct ProductEntry {
  std::string_view keyword;  // "ePTKWProductCode_Kestrel"
  PrintProperty::e_PTKW code;
  std::array<int, 4> margins;  // left, top, right, bottom, in micrometres
};

// The SDK's fixed tables (also the tables of refhost/README.md).
std::span<const PageSizeEntry> PageSizeTable();
std::span<const ProductEntry> ProductTable();

// The drawers getDrawerSettings knows: 1 .. 4, the large capacity feeder (5), the bypass
// tray (6) and the external feeder (7).
inline constexpr int kFirstDrawer = 1;
inline constexpr int kLastDrawer = 7;

class Device {
 public:
  // Drawer `drawerIndex` reports `mediaCode`. False, nothing changed, for an index
  // outside kFirstDrawer .. kLastDrawer.
  bool setDrawerMedia(int drawerIndex, int mediaCode);
  // The code the drawer reports; nothing for a drawer never set, which getDrawerSettings
  // answers with false (the device does not know what is loaded there).
  std::optional<int> drawerMedia(int drawerIndex) const;

  // OverlayMapping(doc, `name`) gives `file`.
  void setOverlay(std::u16string name, std::u16string file);
  std::optional<std::u16string> overlay(std::u16string_view name) const;

  // Every drawer index getDrawerSettings was asked for, in order, valid or not.
  const std::vector<int>& drawerQueries() const { return drawerQueries_; }
  void recordDrawerQuery(int drawerIndex) { drawerQueries_.push_back(drawerIndex); }
  void clearRecords() { drawerQueries_.clear(); }

  // No drawer set, no overlays, nothing recorded.
  void reset();

 private:
  std::array<std::optional<int>, kLastDrawer + 1> drawers_{};
  std::map<std::u16string, std::u16string, std::less<>> overlays_;
  std::vector<int> drawerQueries_;
};

// The one simulated device.
Device& device();

enum class Shipment { kOther, kJapan, kNorthAmerica };

// "japan", "northamerica" or "other" (the runner's words); nothing for any other word.
std::optional<Shipment> ShipmentFromName(std::string_view name);

class Region {
 public:
  void setShipment(Shipment shipment) { shipment_ = shipment; }
  Shipment shipment() const { return shipment_; }
  // The default: neither the Japanese nor the North American shipment.
  void reset() { shipment_ = Shipment::kOther; }

 private:
  Shipment shipment_ = Shipment::kOther;
};

// The one simulated shipment region.
Region& region();

}  // namespace refhost
