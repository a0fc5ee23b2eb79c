#include "core/printer_facts.h"

#include <algorithm>
#include <iterator>

namespace spindle {
namespace {

template <class Text>
struct Row {
  Text key;
  std::u16string_view answer;
};

// The answer of the first row whose key is `key`, or nothing.
template <class Text, std::size_t N>
std::optional<std::u16string_view> Lookup(const Row<Text> (&rows)[N], Text key) {
  const auto row = std::find_if(std::begin(rows), std::end(rows),
                                [key](const Row<Text>& r) { return r.key == key; });
  if (row == std::end(rows)) return std::nullopt;
  return row->answer;
}

constexpr Row<std::string_view> kProducts[] = {
    {"KESTREL MODEL H COLOR", u"EXBP"},   {"KESTREL MODEL G COLOR", u"EXBP"},
    {"KESTREL MODEL F COLOR", u"EXBP"},   {"KESTREL MODEL E COLOR", u"EXMASH"},
    {"KESTREL MODEL D COLOR", u"EXMASH"}, {"KESTREL MODEL C COLOR", u"EXMASH"},
    {"KESTREL MODEL B COLOR", u"EXMASH"}, {"KESTREL MODEL A COLOR", u"EXMASH"},
};

constexpr Row<std::string_view> kPdls[] = {
    {"PS", u"PS"},       {"ps", u"PS"},   {"PCLXL", u"PCLXL"},
    {"pclxl", u"PCLXL"}, {"XPS", u"XPS"}, {"xps", u"XPS"},
};

constexpr Row<std::u16string_view> kFinishers[] = {
    {u"none", u"none"},
    {u"None", u"none"},
    {u"Saddle Stitch Finisher", u"saddle"},
    {u"Saddle Stitch Finisher (1 Tray)", u"saddle"},
    {u"Saddle Stitch Finisher (2 Trays)", u"saddle"},
    {u"Saddle Stitch Finisher (2 Trays + 1 Fixed Tray)", u"saddle"},
    {u"Finisher (2 Trays)", u"finisher"},
    {u"Finisher (2 Trays + 1 Fixed Tray)", u"finisher"},
    {u"Hanging Finisher (1 Tray)", u"hanging"},
    {u"Hanging Finisher (2 Trays)", u"hanging"},
    {u"Job Separator", u"Job Separator"},
    {u"Offset Stacker", u"Offset Stacker"},
};

// Tested in this order: a path naming two technologies gives the first of them here.
constexpr std::u16string_view kTechnologies[] = {u"PSCRIPT", u"UNIDRV", u"XPS"};

}  // namespace

std::u16string_view ProductTypeOf(std::string_view modelName) {
  return Lookup(kProducts, modelName).value_or(u"Universal");
}

std::optional<std::u16string_view> PdlTypeOf(std::string_view outputPdl) {
  return Lookup(kPdls, outputPdl);
}

std::u16string_view FinisherTypeOf(std::u16string_view option) {
  return Lookup(kFinishers, option).value_or(u"other");
}

std::u16string_view TechnologyOf(std::u16string_view commonSettingsFolder) {
  for (std::u16string_view technology : kTechnologies) {
    if (commonSettingsFolder.find(technology) != std::u16string_view::npos) return technology;
  }
  return u"";
}

}  // namespace spindle
