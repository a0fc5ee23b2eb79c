#include "settings/dev_settings.h"

bool xDevSettings::call(const char*, int, xarg_entry*, xarg_entry*) { return false; }
