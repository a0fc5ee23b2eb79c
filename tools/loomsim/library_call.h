// One call into the library, made as the host makes it: findObject, then xClass::call
// with a record list built by refhost::Args.
//
// Nothing a scenario passes may end the runner. A C++ exception that escapes the library
// (utfcpp's "Invalid UTF-8", the Math object's "integer division fault") is caught and
// becomes the outcome of the call. So does a fault (an invalid memory access, a bus
// error, an arithmetic or illegal-instruction trap): the call jumps back here, skipping
// whatever the library had not finished, so the library's state after a fault cannot be
// trusted and the caller stops the scenario.
#pragma once

#include <optional>
#include <string>

#include "core/spindleui.h"
#include "refhost/args.h"

namespace loomsim {

using ObjectFinder = xClass* (*)(const char* name);

struct CallOutcome {
  bool objectFound = false;
  bool result = false;                   // false also when the object is absent or threw
  std::optional<std::string> exception;  // the message of an exception that escaped
  std::optional<std::string> fault;      // what the library did: "invalid memory access"
  // Why no method matched, as the library's diagnostics hook said.
  std::optional<std::string> unmatched;
};

// The diagnostics hook the runner gives the library: it hands the reason to the call in
// progress.
void NoteUnmatchedCall(const SpindleUnmatchedCall* call);

// Gives NoteUnmatchedCall to a loaded library through `setHook`, its exported
// setDiagnosticsHook as the loader found it. A library without the hook (null) still
// runs; its calls just come without reasons.
void InstallDiagnosticsHook(void* setHook);

// findObject(`object`), then call(`method`, `args`) when the object exists. Calls may
// nest (a call the library makes back through the script environment).
CallOutcome CallLibrary(ObjectFinder finder, const std::string& object, const std::string& method,
                        refhost::Args& args);

// "true", "false", "no object NAME", "exception: MESSAGE" or "crashed: FAULT".
std::string OutcomeText(const CallOutcome& outcome, const std::string& object);

}  // namespace loomsim
