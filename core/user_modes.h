// The two modes that decide which controls a page offers: administrator (the user has
// administrator rights) and control panel (the sheet was opened from the printers folder,
// and the user is an administrator). The utilities object and the GUI settings object
// both ask here, so the two always agree.
#pragma once

#include "core/dispatch.h"

namespace spindle {

bool IsAdministrator();
// An administrator, and the top-level window that holds the document's root window has a
// class name containing "StubWindow" (the printers folder's host window). False for a
// null document.
bool IsControlPanel(const DocPtr& doc);

}  // namespace spindle
