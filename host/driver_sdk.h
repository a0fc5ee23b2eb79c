// The driver SDK: the device's drawer settings, the port type, user paths and the
// printer-property keyword functions.
#pragma once

#include "host/loom_base.h"

namespace Loom::XUL {
class xXULDoc;
}

namespace PrintProperty {
// Printer property keywords ("ePTKWPageMediaSize_ISOA4", ...). The host numbers them;
// the library only passes them on, compares them with the product codes of host/codes.h,
// and tests for kUnknownKeyword.
using e_PTKW = int;
inline constexpr e_PTKW kUnknownKeyword = -1;
}  // namespace PrintProperty

// Number of products whose margins a page-size row holds (get_productCodeKW(0 .. 10)).
inline constexpr int kPagesizeProducts = 11;

// One row of the platform's page-size table; all lengths in micrometres.
struct PTKW_Pagesize {
  int width;
  int height;
  // Per product: left, top, right, bottom.
  int margins[kPagesizeProducts][4];
};

// The media type code loaded in drawer `drawerIndex` (1 .. 7) of `doc`'s printer.
bool getDrawerSettings(Loom::XUL::xXULDoc* doc, int drawerIndex, int& mediaCode);
// Whether `doc`'s printer prints through a network port.
bool IsNetworkPortDriver(Loom::XUL::xXULDoc* doc, bool refresh);
// The per-user driver directory of `doc`'s printer.
Loom::wstring getUserPath(Loom::XUL::xXULDoc* doc);
// The file an overlay name stands for in `doc`'s printer's overlay store; "" when none.
Loom::wstring OverlayMapping(Loom::XUL::xXULDoc* doc, const Loom::wstring& overlayName);

// The keyword of `name`, or PrintProperty::kUnknownKeyword.
PrintProperty::e_PTKW getPTKWFromString(const char* name);
// The page-size row of a paper-size keyword; false when the table has none.
bool PTKW_findPagesize(PrintProperty::e_PTKW keyword, PTKW_Pagesize& row);
// The product code keyword of product `index` (0 .. 10); kUnknownKeyword past the end.
PrintProperty::e_PTKW get_productCodeKW(int index);
