// The simulated printer around the sheet: what the device reports loaded in each drawer
// (getDrawerSettings), the spooler's printers, their ports and its forms (Loom::Printer,
// IsNetworkPortDriver, GetFormW), and the region the driver was shipped for
// (Loom::isJapaneseShipment, isNorthAmericanShipment). Each file starts with no drawer set,
// no printer, no form, and neither the Japanese nor the North American shipment.
#include <cstdint>
#include <limits>
#include <optional>
#include <string>

#include "refhost/device.h"
#include "refhost/spooler.h"
#include "tools/loomsim/grammar.h"
#include "tools/loomsim/host_text.h"
#include "tools/loomsim/integer_range.h"
#include "tools/loomsim/scenario.h"
#include "tools/loomsim/text_values.h"

namespace loomsim {
namespace {

constexpr std::int64_t kIntMin = std::numeric_limits<int>::min();
constexpr std::int64_t kIntMax = std::numeric_limits<int>::max();

// Drawer numbers, media codes and form sizes are ints on the host's side.
int IntWithin(Cursor& cursor, std::int64_t low, std::int64_t high, const std::string& what) {
  return static_cast<int>(IntegerInRange(cursor, low, high, what));
}

Parsed ParseDrawer(StatementInput& input) {  // drawer 1 media 9
  Cursor& cursor = input.cursor();
  const int drawer =
      IntWithin(cursor, refhost::kFirstDrawer, refhost::kLastDrawer, "a drawer number");
  cursor.Expect("media", "media CODE after the drawer number");
  // Any code the device may report, also those the driver does not know.
  const int code = IntWithin(cursor, kIntMin, kIntMax, "a media code");
  return {"drawer " + std::to_string(drawer) + " media " + std::to_string(code),
          [drawer, code](Scenario&) { refhost::device().setDrawerMedia(drawer, code); }};
}

Parsed ParseForm(StatementInput& input) {  // form "Custom Paper Size 1" 210000 297000
  Cursor& cursor = input.cursor();
  const std::u16string name = WideQuotedText(cursor, "the quoted name of the form");
  const int width = IntWithin(cursor, 1, kIntMax, "a form width in thousandths of a millimetre");
  const int height = IntWithin(cursor, 1, kIntMax, "a form height in thousandths of a millimetre");
  return {"form " + Quote(name) + " " + std::to_string(width) + " " + std::to_string(height),
          [name, width, height](Scenario&) {
            refhost::spooler().setForm(name, Loom::OS::FormSize{width, height});
          }};
}

Parsed ParsePrinter(StatementInput& input) {  // printer "KESTREL MODEL H COLOR"
  const std::u16string name = WideQuotedText(input.cursor(), "the quoted driver name of a printer");
  return {"printer " + Quote(name), [name](Scenario&) { refhost::spooler().addPrinter(name); }};
}

Parsed ParsePort(StatementInput& input) {  // port "IP_10.0.0.1"
  const std::u16string port = WideQuotedText(input.cursor(), "the quoted name of a port");
  return {"port " + Quote(port), [port](Scenario&) {
            // The port belongs to the printer named last, so that one comes first.
            if (!refhost::spooler().setPortName(port)) {
              throw SetupError{"no printer to give the port to: write printer \"NAME\" first"};
            }
          }};
}

Parsed ParseShipment(StatementInput& input) {  // shipment japan
  Cursor& cursor = input.cursor();
  const std::string_view written = cursor.Rest();
  const std::string word = cursor.AtName() ? cursor.Name("a region") : std::string();
  const std::optional<refhost::Shipment> shipment = refhost::ShipmentFromName(word);
  if (!shipment) throw ParseError("japan, northamerica or other", std::string(written));
  return {"shipment " + word, [shipment](Scenario&) { refhost::region().setShipment(*shipment); }};
}

void StartDevice(Scenario&) {
  refhost::device().reset();
  refhost::spooler().reset();
  refhost::region().reset();
}

constexpr StatementForm kForms[] = {
    {"drawer", "drawer N media CODE", ParseDrawer},
    {"form", "form \"NAME\" WIDTH HEIGHT", ParseForm},
    {"printer", "printer \"NAME\"", ParsePrinter},
    {"port", "port \"NAME\"", ParsePort},
    {"shipment", "shipment japan|northamerica|other", ParseShipment},
};

}  // namespace

extern const Facility kDeviceFacility{"device, printer and region", kForms, StartDevice};

}  // namespace loomsim
