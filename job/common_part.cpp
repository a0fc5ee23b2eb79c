#include "job/common_part.h"

bool xCommonPart::call(const char*, int, xarg_entry*, xarg_entry*) { return false; }
