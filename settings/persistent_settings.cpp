#include "settings/persistent_settings.h"

bool xPersistentSettings::call(const char*, int, xarg_entry*, xarg_entry*) { return false; }
