#include "settings/profiles.h"

bool xProfiles::call(const char*, int, xarg_entry*, xarg_entry*) { return false; }
