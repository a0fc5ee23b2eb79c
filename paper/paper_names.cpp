#include "paper/paper_names.h"

#include <array>

namespace spindle::paper {
namespace {

struct PaperNameRow {
  // The device's spellings of one size; unused places are empty.
  std::array<std::string_view, 3> names;
  std::string_view keyword;
};

constexpr std::string_view kDefaultKeyword = "ePTKWPageMediaSize_ISOA4";

constexpr PaperNameRow kPaperNames[] = {
    {{"A4"}, "ePTKWPageMediaSize_ISOA4"},
    {{"A5"}, "ePTKWPageMediaSize_ISOA5"},
    {{"A3"}, "ePTKWPageMediaSize_ISOA3"},
    {{"A6"}, "ePTKWPageMediaSize_ISOA6"},
    {{"B4"}, "ePTKWPageMediaSize_JISB4"},
    {{"B5"}, "ePTKWPageMediaSize_JISB5"},
    {{"Folio", "A4_PLUS"}, "ePTKWPageMediaSize_OtherMetricA4Plus"},
    {{"A3-Wide", "A3Wide"}, "ePTKWPageMediaSize_NorthAmericaArchitectureBSheet"},
    {{"Postcard", "JAPANESE_POSTCARD"}, "ePTKWPageMediaSize_JapanHagakiPostcard"},
    {{"Letter", "LETTER"}, "ePTKWPageMediaSize_NorthAmericaLetter"},
    {{"LEGAL"}, "ePTKWPageMediaSize_NorthAmericaLegal"},
    {{"Ledger", "TABLOID"}, "ePTKWPageMediaSize_NorthAmericaTabloid"},
    {{"STATEMENT"}, "ePTKWPageMediaSize_NorthAmericaStatement"},
    {{"Computer"}, "ePTKWPageMediaSize_Computer"},
    {{"LG13", "13\"LG", "LG_13"}, "ePTKWPageMediaSize_NorthAmericaGermanLegalFanfold"},
    {{"SQ85", "8.5\"SQ", "Square_85"}, "ePTKWPageMediaSize_8_5Square"},
    {{"1319inch", "x1319"}, "ePTKWPageMediaSize_13x19inch"},
    {{"16K", "K_16"}, "ePTKWPageMediaSize_ROC16K"},
    {{"8K", "K_8"}, "ePTKWPageMediaSize_ROC8K"},
    {{"320450mm", "SRA3"}, "ePTKWPageMediaSize_ISOSRA3"},
    {{"320460mm", "(320x460mm)", "CMBPS"}, "ePTKWPageMediaSize_320x460mm"},
    {{"A0"}, "ePTKWPageMediaSize_ISOA0"},
    {{"A1"}, "ePTKWPageMediaSize_ISOA1"},
    {{"A2"}, "ePTKWPageMediaSize_ISOA2"},
};

}  // namespace

std::string_view PaperNameToMediaSizeKeyword(std::string_view paperName) {
  for (const PaperNameRow& row : kPaperNames) {
    for (const std::string_view name : row.names) {
      if (!name.empty() && name == paperName) return row.keyword;
    }
  }
  return kDefaultKeyword;
}

}  // namespace spindle::paper
