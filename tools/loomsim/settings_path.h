// Settings paths as scenarios write them: keys joined by '/'. A key holding a '/', a
// blank, a quote or '=' (or an empty key) is written as quoted text:
//   user "Custom Paper Size"/Width = "210"
#pragma once

#include <string>
#include <vector>

#include "tools/loomsim/cursor.h"

namespace loomsim {

// The keys of the path at the cursor; throws ParseError when there is none.
std::vector<std::string> ParseSettingsPath(Cursor& cursor);
// The path as ParseSettingsPath reads it, with keys quoted only where needed.
std::string SettingsPathText(const std::vector<std::string>& keys);

}  // namespace loomsim
