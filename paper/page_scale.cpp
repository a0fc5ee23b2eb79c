#include "paper/page_scale.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <string_view>

#include "core/elements.h"
#include "core/math.h"
#include "core/text.h"
#include "host/codes.h"
#include "host/driver_sdk.h"
#include "host/os.h"
#include "host/printer.h"
#include "host/properties.h"
#include "paper/lengths.h"
#include "paper/paper_names.h"
#include "paper/product.h"

namespace spindle::paper {
namespace {

// Dots at the default resolution.
struct Margins {
  int left = 0;
  int top = 0;
  int right = 0;
  int bottom = 0;
};

struct Page {
  int width = 0;
  int height = 0;
  Margins margins;

  int printableWidth() const { return width - margins.left - margins.right; }
  int printableHeight() const { return height - margins.top - margins.bottom; }
};

// A custom paper size is a spooler form "Custom Paper Size N". The original-size list
// writes it "DMPAPER_KEST_CUSTOM" + N and the print list as the form name itself, so N
// starts at character 19 of the one and 18 (after the blank) of the other.
constexpr std::u16string_view kOriginalCustomMarker = u"DMPAPER_KEST_CUSTOM";
constexpr std::size_t kOriginalCustomNumberAt = 19;
constexpr std::u16string_view kPrintCustomMarker = u"Custom Paper Size";
constexpr std::size_t kPrintCustomNumberAt = 18;
constexpr std::u16string_view kCustomFormPrefix = u"Custom Paper Size ";

// The size of a custom paper whose form cannot be read. The factors are one hundredth of
// A4 in inches, not A4 itself; the zoom has always been computed with them, so they stay.
constexpr double kFallbackWidthPerDpi = 0.08267716;
constexpr double kFallbackHeightPerDpi = 0.116929136;

constexpr std::u16string_view kFitToOriginal = u"ORIGINAL";
constexpr std::u16string_view kBookletBinding = u"ePTKWDocumentBinding_Booklet";

// Pages per sheet and their grid. A turned sheet lays the pages across its height.
struct NUpGrid {
  int pagesPerSheet;
  int columns;
  int rows;
  bool turned;
};

constexpr NUpGrid kNUpGrids[] = {
    {2, 2, 1, true}, {4, 2, 2, false}, {6, 3, 2, true},
    {8, 4, 2, true}, {9, 3, 3, false}, {16, 4, 4, false},
};

// Any other number of pages per sheet prints at full size.
constexpr float kFullSize = 100.0f;

// The text of `value` from `position` on; "" when it is shorter.
std::u16string_view TextFrom(std::u16string_view value, std::size_t position) {
  return position < value.size() ? value.substr(position) : std::u16string_view();
}

bool Contains(std::u16string_view value, std::u16string_view part) {
  return value.find(part) != std::u16string_view::npos;
}

// The `value` attribute of `id` as whole micrometres, in dots; nothing when it is missing.
std::optional<int> LengthInDots(const DocPtr& doc, std::u16string_view id, int dpi) {
  const ElemPtr elem = FindById(doc, id);
  if (!elem) return std::nullopt;
  return MicrometresToDots(LeadingInteger(ValueOf(elem)), dpi);
}

// The user's custom margins, which replace the table's margins on both pages.
std::optional<Margins> CustomMargins(const DocPtr& doc, int dpi) {
  const std::optional<int> left = LengthInDots(doc, u"ePTKWPageCustomMargin_MarginLeft", dpi);
  const std::optional<int> right = LengthInDots(doc, u"ePTKWPageCustomMargin_MarginRight", dpi);
  const std::optional<int> top = LengthInDots(doc, u"ePTKWPageCustomMargin_MarginTop", dpi);
  const std::optional<int> bottom = LengthInDots(doc, u"ePTKWPageCustomMargin_MarginBottom", dpi);
  if (!left || !right || !top || !bottom) return std::nullopt;
  return Margins{*left, *top, *right, *bottom};
}

// Finds the size of the original and the print page.
class PageLookup {
 public:
  PageLookup(const Loom::PropertyManager& properties, int dpi, int productIndex,
             std::optional<Margins> customMargins)
      : properties_(properties),
        dpi_(dpi),
        productIndex_(productIndex),
        customMargins_(customMargins) {}

  // The page of the original-size list's value: a device paper name or a custom paper.
  std::optional<Page> original(std::u16string_view value) const {
    if (Contains(value, kOriginalCustomMarker)) {
      return customForm(TextFrom(value, kOriginalCustomNumberAt));
    }
    return fromTable(PaperNameToMediaSizeKeyword(Narrow(value)));
  }

  // The page of the print size list's value: the list holds the keywords themselves, or
  // a custom form's name.
  std::optional<Page> print(std::u16string_view value) const {
    if (Contains(value, kPrintCustomMarker)) {
      return customForm(TextFrom(value, kPrintCustomNumberAt));
    }
    return fromTable(Narrow(value));
  }

 private:
  std::optional<Page> fromTable(std::string_view keyword) const {
    PTKW_Pagesize row{};
    if (!PTKW_findPagesize(getPTKWFromString(Loom::string(keyword).c_str()), row)) {
      return std::nullopt;
    }
    Page page{dots(row.width), dots(row.height), {}};
    if (customMargins_) {
      page.margins = *customMargins_;
    } else if (productIndex_ < kPagesizeProducts) {
      // A product the table does not list (index 11) prints with no margins.
      const int* m = row.margins[productIndex_];
      page.margins = {dots(m[0]), dots(m[1]), dots(m[2]), dots(m[3])};
    }
    return page;
  }

  // A custom form has no row in the page-size table, so no product margins either.
  Page customForm(std::u16string_view number) const {
    Page page{0, 0, customMargins_.value_or(Margins{})};
    Loom::OS::FormSize form{};
    if (readForm(Loom::wstring(kCustomFormPrefix) + Loom::wstring(number), form)) {
      page.width = dots(form.width);
      page.height = dots(form.height);
    } else {
      page.width = static_cast<int>(dpi_ * kFallbackWidthPerDpi);
      page.height = static_cast<int>(dpi_ * kFallbackHeightPerDpi);
    }
    return page;
  }

  bool readForm(const Loom::wstring& name, Loom::OS::FormSize& form) const {
    const Loom::Printer printer(properties_.getString("loom.driver.name"));
    return printer.isOpen() && Loom::OS::getFormSize(printer.getHandle(), name, form);
  }

  int dots(int micrometres) const { return MicrometresToDots(micrometres, dpi_); }

  const Loom::PropertyManager& properties_;
  int dpi_;
  int productIndex_;
  std::optional<Margins> customMargins_;
};

// length × 100 / (count × printable), in single precision as the zoom always was.
float Ratio(int length, int count, int printable) {
  return static_cast<float>(length) * 100.0f /
         (static_cast<float>(count) * static_cast<float>(printable));
}

const NUpGrid* FindGrid(int pagesPerSheet) {
  for (const NUpGrid& grid : kNUpGrids) {
    if (grid.pagesPerSheet == pagesPerSheet) return &grid;
  }
  return nullptr;
}

// The unrounded zoom at which the original's printable area fits the print page, for the
// layout the document has chosen: N-up, booklet, or one page per sheet.
std::optional<float> FitZoom(const DocPtr& doc, int dpi, const Page& original, const Page& print) {
  const int ow = original.printableWidth();
  const int oh = original.printableHeight();
  const int pw = print.printableWidth();
  const int ph = print.printableHeight();

  const ElemPtr nUp = FindById(doc, u"ePTKWJobNUpAllDocumentsContiguously");
  if (!nUp) return std::nullopt;
  if (IsChecked(nUp)) {
    const ElemPtr pages = FindById(doc, u"ePTKWJobNUpAllDocumentsContiguously_PagesPerSheet");
    if (!pages) return std::nullopt;
    const NUpGrid* grid = FindGrid(LeadingInteger(pages->getValfromMenulist()));
    if (grid == nullptr) return kFullSize;
    if (grid->turned) {
      return std::min(Ratio(ph, grid->columns, ow), Ratio(pw, grid->rows, oh));
    }
    return std::min(Ratio(pw, grid->columns, ow), Ratio(ph, grid->rows, oh));
  }

  const ElemPtr twoSided = FindById(doc, u"chk2sideprint");
  if (!twoSided) return std::nullopt;
  if (IsChecked(twoSided)) {
    const ElemPtr binding = FindById(doc, u"ePTKWDocumentBinding");
    if (!binding) return std::nullopt;
    if (binding->getValfromMenulist() == kBookletBinding) {
      const std::optional<int> centre =
          LengthInDots(doc, u"ePTKWDocumentBinding_Booklet_CenterGutter", dpi);
      const std::optional<int> gutter =
          LengthInDots(doc, u"ePTKWDocumentBinding_Booklet_BindingGutter", dpi);
      if (!centre || !gutter) return std::nullopt;
      // Two originals side by side on the whole sheet height, margins included.
      return std::min(Ratio(print.height - *centre - 2 * *gutter, 2, ow), Ratio(pw, 1, oh));
    }
  }
  return std::min(Ratio(pw, 1, ow), Ratio(ph, 1, oh));
}

// Exact halves round down: 84.5 shows 84, 84.51 shows 85.
int RoundZoom(float zoom) { return math::TruncateToInt32(std::ceil(zoom - 0.5f)); }

// Shows the zoom, or an empty scale under manual scaling. A fit to the original also
// switches the scaling mode to fitting the page and shows the print size in tenths of a
// millimetre, in the order the page's own rules expect.
void ShowZoom(const DocPtr& doc, int dpi, int zoom, bool fitToOriginal, const Page& print) {
  const ElemPtr manual = FindById(doc, u"chk_manualScale");
  const ElemPtr scale = FindById(doc, u"ePTKWPageScaling_CustomSquare_Scale");
  const ElemPtr label = FindById(doc, u"preview_lbMS");
  if (!manual || !scale || !label) return;
  // A check box that was never ticked carries no "checked" at all; like one set to
  // "false" it means automatic scaling.
  if (IsChecked(manual)) {
    SetValue(scale, u"");
    SetValue(label, u"%");
    return;
  }
  const Loom::wstring percent = DecimalText(zoom);
  SetValue(scale, percent);
  SetValue(label, percent + u"%");
  if (!fitToOriginal) return;

  const ElemPtr scaling = FindById(doc, u"ePTKWPageScaling");
  const ElemPtr height = FindById(doc, u"ePTKWPageScalingScale_Height");
  const ElemPtr width = FindById(doc, u"ePTKWPageScalingScale_Width");
  if (!scaling || !height || !width) return;
  scaling->selMenulistWithVal(u"ePTKWPageScaling_None");
  height->setAttr(Loom::kAttrDisabled, Loom::wstring(kTrue));
  width->setAttr(Loom::kAttrDisabled, Loom::wstring(kTrue));
  scaling->selMenulistWithVal(u"ePTKWPageScaling_FitApplicationMediaSizeToPageMediaSize");
  SetValue(width, DecimalText(DotsToTenthsOfMillimetre(print.width, dpi)));
  SetValue(height, DecimalText(DotsToTenthsOfMillimetre(print.height, dpi)));
  width->setAttr(Loom::kAttrDisabled, Loom::wstring(kFalse));
  height->setAttr(Loom::kAttrDisabled, Loom::wstring(kFalse));
}

}  // namespace

void UpdatePageScaleRatio(const DocPtr& doc) {
  const int productCode = GetProductCode(doc);
  if (productCode == Loom::kProductCodeUnknown) return;
  const Loom::SmartPtr<Loom::PropertyManager> properties = doc->getUserData();
  if (!properties) return;
  // Without a resolution no length can be converted: treated as a missing property.
  const int dpi = properties->getInt("loom.defaultdpi.value");
  if (dpi <= 0) return;

  const ElemPtr customBox = FindById(doc, u"chk_FnshCustomMargin");
  if (!customBox) return;
  std::optional<Margins> customMargins;
  if (IsChecked(customBox)) {
    customMargins = CustomMargins(doc, dpi);
    if (!customMargins) return;
  }
  const PageLookup lookup(*properties, dpi, ProductIndex(productCode), customMargins);

  const ElemPtr originalList = FindById(doc, u"oppsz");
  const ElemPtr printList = FindById(doc, u"ePTKWPagePrintMediaSize");
  if (!originalList || !printList) return;
  const std::optional<Page> original = lookup.original(originalList->getValfromMenulist());
  if (!original) return;
  const Loom::wstring printValue = printList->getValfromMenulist();
  const bool fitToOriginal = printValue == kFitToOriginal;
  const std::optional<Page> print = fitToOriginal ? original : lookup.print(printValue);
  if (!print) return;

  const std::optional<float> zoom = FitZoom(doc, dpi, *original, *print);
  if (!zoom) return;
  ShowZoom(doc, dpi, RoundZoom(*zoom), fitToOriginal, *print);
}

}  // namespace spindle::paper
