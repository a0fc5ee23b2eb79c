// The simulated shipment region, and the host's region tests on it.
#include <string_view>

#include "host/printer.h"
#include "refhost/device.h"

namespace refhost {

namespace {

struct ShipmentName {
  std::string_view name;
  Shipment shipment;
};

constexpr ShipmentName kShipmentNames[] = {
    {"japan", Shipment::kJapan},
    {"northamerica", Shipment::kNorthAmerica},
    {"other", Shipment::kOther},
};

}  // namespace

std::optional<Shipment> ShipmentFromName(std::string_view name) {
  for (const ShipmentName& entry : kShipmentNames) {
    if (entry.name == name) return entry.shipment;
  }
  return std::nullopt;
}

Region& region() {
  // Never destroyed: the library may still be unloading after this library's statics die.
  static Region* const instance = new Region();
  return *instance;
}

}  // namespace refhost

namespace Loom {

bool isNorthAmericanShipment() {
  return refhost::region().shipment() == refhost::Shipment::kNorthAmerica;
}

bool isJapaneseShipment() { return refhost::region().shipment() == refhost::Shipment::kJapan; }

}  // namespace Loom
