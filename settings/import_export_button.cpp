#include "settings/import_export_button.h"

#include "core/dispatch.h"

bool xImportExportButton::call(const char* method, int argc, xarg_entry* args, xarg_entry*) {
  return spindle::Dispatch<xImportExportButton>(*this, {}, false, method, argc, args);
}
