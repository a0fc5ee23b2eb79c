// The open and save dialogs that pick a settings file for the pages.
#pragma once

#include <optional>
#include <string_view>

#include "core/dispatch.h"

namespace spindle {

enum class BrowseMode { kOpen, kSave };

// "open" and "save", exactly; nothing for any other text.
std::optional<BrowseMode> BrowseModeOf(std::string_view mode);

// Shows the dialog of `mode` over the document's window with the script's filter (parts
// separated by ';'). The chosen path, or nothing when the dialog was cancelled or failed.
std::optional<Loom::wstring> BrowseForFile(const DocPtr& doc, BrowseMode mode,
                                           std::string_view filter);

}  // namespace spindle
