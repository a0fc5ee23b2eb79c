#include "paper/product.h"

#include <algorithm>
#include <optional>
#include <string_view>

#include "core/elements.h"
#include "host/codes.h"
#include "host/driver_sdk.h"

namespace spindle::paper {
namespace {

constexpr std::string_view kUniversalModel = "universal";

// Substrings of the lower-cased model name that make a printer of the Kestrel family,
// searched in this order.
constexpr std::string_view kKestrelModelKeys[] = {
    "kestrel-mod-h", "kestrel-mod-g", "kestrel-mod-f", "kestrel-mod-e",
    "kestrel-mod-d", "kestrel-mod-c", "kestrel-mod-b", "kestrel-mod-a",
};

}  // namespace

int GetProductCode(const DocPtr& doc) {
  std::optional<Loom::string> model = DeviceSetting(doc, "PRODUCTCODE", "ModelName");
  if (!model) return Loom::kProductCodeUnknown;
  // ASCII only: model names are ASCII, and a UTF-8 byte must stay what it is.
  std::transform(model->begin(), model->end(), model->begin(), [](char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
  });
  const std::string_view name(*model);
  if (name == kUniversalModel) return Loom::kProductCodeUniversal;
  for (const std::string_view key : kKestrelModelKeys) {
    if (name.find(key) != std::string_view::npos) return Loom::kProductCodeKestrel;
  }
  return Loom::kProductCodeUnknown;
}

int ProductIndex(int code) {
  for (int i = 0; i < Loom::kProductCount; ++i) {
    if (get_productCodeKW(i) == code) return i;
  }
  return Loom::kProductCount;
}

}  // namespace spindle::paper
