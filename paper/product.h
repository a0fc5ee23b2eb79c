// Which product the document's printer is, as the per-product margins of the page-size
// table need it.
#pragma once

#include "core/dispatch.h"

namespace spindle::paper {

// The product code keyword of the document's printer, from the device setting
// "PRODUCTCODE"/"ModelName" (compared lower-cased): Loom::kProductCodeUniversal,
// Loom::kProductCodeKestrel, or Loom::kProductCodeUnknown for any other model and when the
// document, its window or the setting is missing.
int GetProductCode(const DocPtr& doc);

// The position i (0 .. 10) for which the driver SDK's get_productCodeKW(i) is `code`;
// Loom::kProductCount when none is.
int ProductIndex(int code);

}  // namespace spindle::paper
