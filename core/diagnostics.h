// The diagnostics hook's side of the dispatcher: explaining a call that matched no row.
//
// The dispatcher looks at the hook only after every row has failed to match, so a call
// that matches costs the same with or without a hook, and an unmatched one costs one
// test while the hook is null. Everything here runs only for a set hook.
#pragma once

#include <cstddef>
#include <string>

#include "core/spindleui.h"

namespace spindle {

struct Signature;

// The host's hook; null unless setDiagnosticsHook set one.
extern SpindleDiagnosticsHook g_diagnosticsHook;

// A method table seen as its signatures alone, whatever the object's class.
struct SignatureRows {
  const void* table;
  std::size_t count;
  const Signature& (*at)(const void* table, std::size_t index);
};

// The name `object` is registered under; "?" for an object the registry did not make.
const char* RegisteredName(const xClass* object);

// Why a call to `objectName` matched none of `rows`: the nearest row (same name with
// another count or kinds, else a name differing only in case or by one or two letters)
// and the first argument it does not take, written for people, and tells the hook.
void ReportUnmatched(const char* objectName, const SignatureRows& rows, const char* method,
                     int argc, const xarg_entry* args);

}  // namespace spindle
