// Marks the functions the shared library exports; everything else stays hidden.
#pragma once

// A DLL exports by declaration; an ELF library by visibility (the rest is built hidden).
#ifdef _WIN32
#define SPINDLE_EXPORT __declspec(dllexport)
#else
#define SPINDLE_EXPORT __attribute__((visibility("default")))
#endif
