// The driver's stored dialog defaults for the current user: a serialiser file in the
// user's directory, named after the driver's configuration file ("cfg.xml" gives
// "cfgdefpr.xml"), holding the cleaned controls of the page it was made for.
#pragma once

#include <string_view>

#include "core/dispatch.h"

namespace spindle::job_internal {

// The text that stands for the whole sheet rather than one tab.
inline constexpr std::string_view kAllTabs = "ALL";

// Applies the stored defaults to `doc`: every stored control for `tab` "ALL", else only
// those inside the element `tab`. Nothing when no property manager is found (the
// document's or an owner's), the configuration file name has no ".xml", or the defaults
// file is missing or names no page.
void ApplyStoredDefaults(const DocPtr& doc, std::string_view tab);

}  // namespace spindle::job_internal
