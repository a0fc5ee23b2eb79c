#include "job/customisation.h"

bool xCustomisation::call(const char*, int, xarg_entry*, xarg_entry*) { return false; }
