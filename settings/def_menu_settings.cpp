#include "settings/def_menu_settings.h"

bool xdefMenuSettings::call(const char*, int, xarg_entry*, xarg_entry*) { return false; }
