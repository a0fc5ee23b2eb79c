// What the pages are told about the installed printer, as tables from the device's own
// settings and the driver's folders to the names the scripts test. Every comparison is
// exact and whole-string: a name with a trailing blank is another name.
#pragma once

#include <optional>
#include <string_view>

namespace spindle {

// "EXBP", "EXMASH" or, for any other model name (an empty one too), "Universal".
std::u16string_view ProductTypeOf(std::string_view modelName);
// "PS", "PCLXL" or "XPS" for exactly those names in upper or lower case; nothing else.
std::optional<std::u16string_view> PdlTypeOf(std::string_view outputPdl);
// "none", "saddle", "finisher", "hanging", "Job Separator", "Offset Stacker" or "other".
std::u16string_view FinisherTypeOf(std::u16string_view option);
// "PSCRIPT", "UNIDRV" or "XPS", the first found in the common settings folder's path;
// "" when none is.
std::u16string_view TechnologyOf(std::u16string_view commonSettingsFolder);

}  // namespace spindle
