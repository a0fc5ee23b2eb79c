// The driver SDK on the simulated device: drawer media, port type, user path, overlays,
// and the keyword functions over the fixed page-size and product tables.
#include "refhost/device.h"

#include "host/properties.h"
#include "host/xul.h"
#include "refhost/spooler.h"

namespace refhost {
namespace {

// Whole millimetres and inches as micrometres, so the table reads as paper is specified.
constexpr int Mm(double millimetres) { return static_cast<int>(millimetres * 1000 + 0.5); }
constexpr int In(double inches) { return static_cast<int>(inches * 25400 + 0.5); }

constexpr PageSizeEntry kPageSizes[] = {
    {"ePTKWPageMediaSize_ISOA0", 200, Mm(841), Mm(1189)},
    {"ePTKWPageMediaSize_ISOA1", 201, Mm(594), Mm(841)},
    {"ePTKWPageMediaSize_ISOA2", 202, Mm(420), Mm(594)},
    {"ePTKWPageMediaSize_ISOA3", 203, Mm(297), Mm(420)},
    {"ePTKWPageMediaSize_ISOA4", 204, Mm(210), Mm(297)},
    {"ePTKWPageMediaSize_ISOA5", 205, Mm(148), Mm(210)},
    {"ePTKWPageMediaSize_ISOA6", 206, Mm(105), Mm(148)},
    {"ePTKWPageMediaSize_ISOSRA3", 207, Mm(320), Mm(450)},
    {"ePTKWPageMediaSize_320x460mm", 208, Mm(320), Mm(460)},
    {"ePTKWPageMediaSize_JISB4", 210, Mm(257), Mm(364)},
    {"ePTKWPageMediaSize_JISB5", 211, Mm(182), Mm(257)},
    {"ePTKWPageMediaSize_JapanHagakiPostcard", 212, Mm(100), Mm(148)},
    {"ePTKWPageMediaSize_OtherMetricA4Plus", 213, Mm(210), Mm(330)},
    {"ePTKWPageMediaSize_ROC16K", 214, In(7.75), In(10.75)},
    {"ePTKWPageMediaSize_ROC8K", 215, In(10.75), In(15.5)},
    {"ePTKWPageMediaSize_NorthAmericaLetter", 220, In(8.5), In(11)},
    {"ePTKWPageMediaSize_NorthAmericaLegal", 221, In(8.5), In(14)},
    {"ePTKWPageMediaSize_NorthAmericaTabloid", 222, In(11), In(17)},
    {"ePTKWPageMediaSize_NorthAmericaStatement", 223, In(5.5), In(8.5)},
    {"ePTKWPageMediaSize_NorthAmericaGermanLegalFanfold", 224, In(8.5), In(13)},
    {"ePTKWPageMediaSize_NorthAmericaArchitectureBSheet", 225, In(12), In(18)},
    {"ePTKWPageMediaSize_Computer", 226, In(14.875), In(11)},
    {"ePTKWPageMediaSize_8_5Square", 227, In(8.5), In(8.5)},
    {"ePTKWPageMediaSize_13x19inch", 228, In(13), In(19)},
};

// The Kestrel family (594) and the model-independent driver (597) are the two products the
// library recognises. Margins differ per edge on several products, as their paper paths do.
constexpr ProductEntry kProducts[] = {
    {"ePTKWProductCode_Merlin", 588, {Mm(4), Mm(4), Mm(4), Mm(4)}},
    {"ePTKWProductCode_Harrier", 589, {Mm(5), Mm(5), Mm(5), Mm(5)}},
    {"ePTKWProductCode_Osprey", 590, {Mm(4.2), Mm(5), Mm(4.2), Mm(5)}},
    {"ePTKWProductCode_Falcon", 591, {Mm(3), Mm(3), Mm(3), Mm(3)}},
    {"ePTKWProductCode_Hobby", 592, {In(1.0 / 6), In(1.0 / 6), In(1.0 / 6), In(1.0 / 6)}},
    {"ePTKWProductCode_Buzzard", 593, {In(0.25), In(0.25), In(0.25), In(0.25)}},
    {"ePTKWProductCode_Kestrel", 594, {Mm(4.2), Mm(4.2), Mm(4.2), Mm(4.2)}},
    {"ePTKWProductCode_Goshawk", 595, {Mm(4.2), Mm(3), Mm(4.2), Mm(5)}},
    {"ePTKWProductCode_Peregrine", 596, {Mm(5), Mm(4.2), Mm(5), Mm(6)}},
    {"ePTKWProductCode_Universal", 597, {Mm(4.2), Mm(5), Mm(4.8), Mm(6)}},
    {"ePTKWProductCode_Kite", 598, {Mm(4.2), Mm(4.2), Mm(4.2), Mm(4.2)}},
};
static_assert(std::size(kProducts) == kPagesizeProducts);

bool IsDrawer(int drawerIndex) { return drawerIndex >= kFirstDrawer && drawerIndex <= kLastDrawer; }

// A property of the document's printer; "" when the document or the property is missing.
Loom::wstring DocumentProperty(Loom::XUL::xXULDoc* doc, const char* key) {
  if (doc == nullptr) return {};
  const Loom::SmartPtr<Loom::PropertyManager> properties = doc->getUserData();
  return properties ? properties->getString(key) : Loom::wstring();
}

}  // namespace

std::span<const PageSizeEntry> PageSizeTable() { return kPageSizes; }
std::span<const ProductEntry> ProductTable() { return kProducts; }

bool Device::setDrawerMedia(int drawerIndex, int mediaCode) {
  if (!IsDrawer(drawerIndex)) return false;
  drawers_[drawerIndex] = mediaCode;
  return true;
}

std::optional<int> Device::drawerMedia(int drawerIndex) const {
  if (!IsDrawer(drawerIndex)) return std::nullopt;
  return drawers_[drawerIndex];
}

void Device::setOverlay(std::u16string name, std::u16string file) {
  overlays_[std::move(name)] = std::move(file);
}

std::optional<std::u16string> Device::overlay(std::u16string_view name) const {
  const auto found = overlays_.find(name);
  if (found == overlays_.end()) return std::nullopt;
  return found->second;
}

void Device::reset() {
  drawers_ = {};
  overlays_.clear();
  drawerQueries_.clear();
}

Device& device() {
  // Never destroyed: the library may still be unloading after this library's statics die.
  static Device* const instance = new Device();
  return *instance;
}

}  // namespace refhost

bool getDrawerSettings(Loom::XUL::xXULDoc* doc, int drawerIndex, int& mediaCode) {
  refhost::Device& device = refhost::device();
  device.recordDrawerQuery(drawerIndex);
  if (doc == nullptr) return false;
  const std::optional<int> code = device.drawerMedia(drawerIndex);
  if (!code) return false;
  mediaCode = *code;
  return true;
}

bool IsNetworkPortDriver(Loom::XUL::xXULDoc* doc, bool) {
  // The simulation always reads the spooler's current state, refreshed or not.
  const std::optional<std::u16string> port =
      refhost::spooler().portOf(refhost::DocumentProperty(doc, "loom.driver.name"));
  return port && refhost::IsNetworkPortName(*port);
}

Loom::wstring getUserPath(Loom::XUL::xXULDoc* doc) {
  if (doc == nullptr) return {};
  const Loom::wstring path = refhost::DocumentProperty(doc, "loom.user.path");
  return path.empty() ? doc->getUserDir() : path;
}

Loom::wstring OverlayMapping(Loom::XUL::xXULDoc* doc, const Loom::wstring& overlayName) {
  if (doc == nullptr) return {};
  const std::optional<std::u16string> file = refhost::device().overlay(overlayName);
  return file ? Loom::wstring(*file) : Loom::wstring();
}

PrintProperty::e_PTKW getPTKWFromString(const char* name) {
  if (name == nullptr) return PrintProperty::kUnknownKeyword;
  const std::string_view wanted(name);
  for (const refhost::PageSizeEntry& entry : refhost::kPageSizes) {
    if (entry.keyword == wanted) return entry.number;
  }
  for (const refhost::ProductEntry& entry : refhost::kProducts) {
    if (entry.keyword == wanted) return entry.code;
  }
  return PrintProperty::kUnknownKeyword;
}

bool PTKW_findPagesize(PrintProperty::e_PTKW keyword, PTKW_Pagesize& row) {
  for (const refhost::PageSizeEntry& entry : refhost::kPageSizes) {
    if (entry.number != keyword) continue;
    row.width = entry.width;
    row.height = entry.height;
    for (int product = 0; product < kPagesizeProducts; ++product) {
      for (int edge = 0; edge < 4; ++edge) {
        row.margins[product][edge] = refhost::kProducts[product].margins[edge];
      }
    }
    return true;
  }
  return false;
}

PrintProperty::e_PTKW get_productCodeKW(int index) {
  if (index < 0 || index >= kPagesizeProducts) return PrintProperty::kUnknownKeyword;
  return refhost::kProducts[index].code;
}
