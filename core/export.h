// Marks the functions the shared library exports; everything else stays hidden.
#pragma once

#define SPINDLE_EXPORT __attribute__((visibility("default")))
