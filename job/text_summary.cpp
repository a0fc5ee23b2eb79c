#include "job/text_summary.h"

bool xTextSummary::call(const char*, int, xarg_entry*, xarg_entry*) { return false; }
