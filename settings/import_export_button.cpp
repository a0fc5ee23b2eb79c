#include "settings/import_export_button.h"

bool xImportExportButton::call(const char*, int, xarg_entry*, xarg_entry*) { return false; }
