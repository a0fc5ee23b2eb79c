#include "paper/tab_basic.h"

#include <optional>
#include <string_view>

#include "core/elements.h"
#include "core/text.h"
#include "host/codes.h"
#include "host/driver_sdk.h"
#include "host/printer.h"
#include "paper/page_scale.h"
#include "paper/paper_names.h"

using spindle::Count;

const spindle::Method<xTabBasic> xTabBasic::kMethods[] = {
    {{"setOSSettingsBasedPaperSize", Count::kExactly, 1, {Loom::kArgDocument}},
     &xTabBasic::SetOSSettingsBasedPaperSize},
    {{"updatePageScaleRatio", Count::kExactly, 1, {Loom::kArgDocument}},
     &xTabBasic::UpdatePageScaleRatio},
    {{"updateMediaTypeFromInputBin", Count::kExactly, 1, {Loom::kArgDocument}},
     &xTabBasic::UpdateMediaTypeFromInputBin},
    {{"updatePrintPaperSizeFromInputBin", Count::kExactly, 1, {Loom::kArgDocument}},
     &xTabBasic::UpdatePrintPaperSizeFromInputBin},
    {{"updateInsertPageMediaType",
      Count::kExactly,
      3,
      {Loom::kArgString, Loom::kArgString, Loom::kArgDocument}},
     &xTabBasic::UpdateInsertPageMediaType},
    {{"updateOutputBin", Count::kExactly, 1, {Loom::kArgDocument}}, &xTabBasic::UpdateOutputBin},
};

bool xTabBasic::call(const char* method, int argc, xarg_entry* args, xarg_entry*) {
  // The basic tab's scripts never look at the answer: unmatched calls are answered true.
  return spindle::Dispatch<xTabBasic>(*this, kMethods, true, method, argc, args);
}

namespace {

using spindle::DocPtr;
using spindle::ElemPtr;

// Drawer indexes of getDrawerSettings; kNoDrawer makes the call do nothing.
constexpr int kNoDrawer = 0;

// The main input bin list. The bypass tray has no paper name in the device settings.
struct InputBinRow {
  std::u16string_view value;
  int drawerIndex;
  std::string_view drawerName;  // key prefix under "DrawerSettings"; "" for none
};

constexpr InputBinRow kInputBins[] = {
    {u"AUTO", kNoDrawer, ""},   {u"DRAWER1", 1, "Drawer1"},    {u"DRAWER2", 2, "Drawer2"},
    {u"DRAWER3", 3, "Drawer3"}, {u"DRAWER4", 4, "Drawer4"},    {u"LCF", 5, "LCF"},
    {u"BYPASSTRAY", 6, ""},     {u"EXTLCF", 7, "ExternalLCF"},
};

// The insert page's source list: the same drawers, spelt its own way.
struct InsertSourceRow {
  std::u16string_view value;
  int drawerIndex;
};

constexpr InsertSourceRow kInsertSources[] = {
    {u"AutoSelect", kNoDrawer},
    {u"Drawer1", 1},
    {u"Drawer2", 2},
    {u"Drawer3", 3},
    {u"Drawer4", 4},
    {u"LCF", 5},
    {u"Manual", 6},
    {u"ExternalLCF", 7},
};

// The media code a drawer reports and the value it selects in the main media type list
// and in an insert page's media list; "" leaves that list unchanged. The two lists spell
// the values differently and each knows some media the other does not.
struct MediaCodeRow {
  int code;
  std::u16string_view mediaType;
  std::u16string_view insertPageMedia;
};

constexpr int kTabPaperCode = 12;

constexpr MediaCodeRow kMediaCodes[] = {
    {0, u"", u""},
    {1, u"", u""},
    {2, u"", u""},
    {3, u"Thick1", u"Thick1"},
    {4, u"Thick2", u"Thick2"},
    {5, u"Thick3", u"Thick3"},
    {6, u"Thick4", u"Thick4"},
    {7, u"TRANSPARENCY", u"Transparency"},
    {8, u"", u""},
    {9, u"PLAIN", u"Plain"},
    {10, u"", u""},
    {11, u"", u""},
    {kTabPaperCode, u"Tab", u"Tab"},
    {13, u"Special1", u""},
    {14, u"Special2", u""},
    {15, u"Recycled", u"RecycledPaper"},
    {16, u"Thick2B", u"Thick2Back"},
    {17, u"Thick3B", u"Thick3Back"},
    {18, u"Special1B", u""},
    {19, u"Special2B", u""},
    {20, u"Thick1B", u"Thick1Back"},
    {21, u"Thick4B", u"Thick4Back"},
    {22, u"Plain1", u"Plain1"},
    {23, u"Plain2", u"Plain2"},
};

// The device settings name each drawer's paper under "DrawerSettings"/<drawer>"Paper"; a
// paper fed rotated is reported as the same name plus "-R".
constexpr std::string_view kDrawerSettingsBranch = "DrawerSettings";
constexpr std::string_view kPaperKeySuffix = "Paper";
constexpr std::string_view kRotatedSuffix = "-R";

// The first row whose `field` equals `key`; null when none does.
template <class Row, std::size_t N, class Key>
const Row* FindRow(const Row (&rows)[N], Key Row::*field, const Key& key) {
  for (const Row& row : rows) {
    if (row.*field == key) return &row;
  }
  return nullptr;
}

// The media code loaded in `drawerIndex`; nothing for no drawer or when the device
// cannot tell.
std::optional<int> DrawerMediaCode(const DocPtr& doc, int drawerIndex) {
  if (drawerIndex == kNoDrawer) return std::nullopt;
  int code = 0;
  if (!getDrawerSettings(doc.get(), drawerIndex, code)) return std::nullopt;
  return code;
}

// The selected value of the menu list `id`; nothing when the list is missing.
std::optional<Loom::wstring> SelectedValue(const DocPtr& doc, std::u16string_view id) {
  const ElemPtr list = spindle::FindById(doc, id);
  if (!list) return std::nullopt;
  return list->getValfromMenulist();
}

void Select(const DocPtr& doc, std::u16string_view listId, std::u16string_view value) {
  if (const ElemPtr list = spindle::FindById(doc, listId)) {
    list->selMenulistWithVal(Loom::wstring(value));
  }
}

// Tab paper shows the tab controls first; without them the media type stays as it is.
bool ShowTabPaperControls(const DocPtr& doc) {
  const ElemPtr caption = spindle::FindById(doc, u"str_BscPapTypTab");
  const ElemPtr tabFlag = spindle::FindById(doc, u"edt_isTabPrintMediaSize");
  if (!caption || !tabFlag) return false;
  caption->setAttr(Loom::kAttrHidden, Loom::wstring(spindle::kFalse));
  spindle::SetValue(tabFlag, spindle::kTrue);
  return true;
}

}  // namespace

bool xTabBasic::SetOSSettingsBasedPaperSize(spindle::CallArgs& args) {
  const DocPtr& doc = args.doc(0);
  const ElemPtr postcard = spindle::FindById(doc, u"JAPANESE_POSTCARD");
  const ElemPtr postcardPreview = spindle::FindById(doc, u"PPS_JPost");
  const ElemPtr a6 = spindle::FindById(doc, u"A6");
  const ElemPtr a6Preview = spindle::FindById(doc, u"PPS_A6");
  if (!postcard || !postcardPreview || !a6 || !a6Preview) return true;
  const bool japan = Loom::isJapaneseShipment();
  const Loom::wstring postcardHidden(spindle::BoolText(!japan));
  const Loom::wstring a6Hidden(spindle::BoolText(japan));
  postcard->setAttr(Loom::kAttrHidden, postcardHidden);
  postcardPreview->setAttr(Loom::kAttrHidden, postcardHidden);
  a6->setAttr(Loom::kAttrHidden, a6Hidden);
  a6Preview->setAttr(Loom::kAttrHidden, a6Hidden);
  return true;
}

bool xTabBasic::UpdatePageScaleRatio(spindle::CallArgs& args) {
  spindle::paper::UpdatePageScaleRatio(args.doc(0));
  return true;
}

bool xTabBasic::UpdateMediaTypeFromInputBin(spindle::CallArgs& args) {
  const DocPtr& doc = args.doc(0);
  const std::optional<Loom::wstring> bin = SelectedValue(doc, u"ePTKWPageInputBin");
  if (!bin) return true;
  const InputBinRow* row = FindRow(kInputBins, &InputBinRow::value, std::u16string_view(*bin));
  if (row == nullptr) return true;
  const std::optional<int> code = DrawerMediaCode(doc, row->drawerIndex);
  if (!code) return true;
  const MediaCodeRow* media = FindRow(kMediaCodes, &MediaCodeRow::code, *code);
  if (media == nullptr || media->mediaType.empty()) return true;
  if (media->code == kTabPaperCode && !ShowTabPaperControls(doc)) return true;
  Select(doc, u"ePTKWPageMediaType", media->mediaType);
  return true;
}

bool xTabBasic::UpdatePrintPaperSizeFromInputBin(spindle::CallArgs& args) {
  const DocPtr& doc = args.doc(0);
  const std::optional<Loom::wstring> bin = SelectedValue(doc, u"ePTKWPageInputBin");
  if (!bin) return true;
  const InputBinRow* row = FindRow(kInputBins, &InputBinRow::value, std::u16string_view(*bin));
  if (row == nullptr || row->drawerName.empty()) return true;
  const std::optional<Loom::string> paper = spindle::DeviceSetting(
      doc, kDrawerSettingsBranch, Loom::string(row->drawerName) + Loom::string(kPaperKeySuffix));
  if (!paper) return true;
  std::string_view name(*paper);
  // The name must be longer than the suffix: a bare "-R" is kept whole.
  if (name.size() > kRotatedSuffix.size() && name.ends_with(kRotatedSuffix)) {
    name.remove_suffix(kRotatedSuffix.size());
  }
  Select(doc, u"ePTKWPagePrintMediaSize",
         spindle::Widen(spindle::paper::PaperNameToMediaSizeKeyword(name)));
  return true;
}

bool xTabBasic::UpdateInsertPageMediaType(spindle::CallArgs& args) {
  const DocPtr& doc = args.doc(2);
  const std::optional<Loom::wstring> source = SelectedValue(doc, spindle::Widen(args.str(0)));
  if (!source) return true;
  const InsertSourceRow* row =
      FindRow(kInsertSources, &InsertSourceRow::value, std::u16string_view(*source));
  if (row == nullptr) return true;
  const std::optional<int> code = DrawerMediaCode(doc, row->drawerIndex);
  if (!code) return true;
  const MediaCodeRow* media = FindRow(kMediaCodes, &MediaCodeRow::code, *code);
  if (media == nullptr || media->insertPageMedia.empty()) return true;
  Select(doc, spindle::Widen(args.str(1)), media->insertPageMedia);
  return true;
}

bool xTabBasic::UpdateOutputBin(spindle::CallArgs& args) {
  const ElemPtr list = spindle::FindById(args.doc(0), u"ePTKWJobOutputBin");
  if (!list) return true;
  const Loom::wstring bin = list->getValfromMenulist();
  if (!bin.empty()) spindle::SetValue(list, bin);
  return true;
}
