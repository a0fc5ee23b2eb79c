// The library's exported interface, as the host and sibling driver libraries see it:
// the object factory and the element helpers they call directly.
#pragma once

#include "core/export.h"
#include "host/loom_base.h"
#include "host/xclass.h"
#include "host/xul.h"

// The script object registered under `name` (exact, case-sensitive), created on the
// first request and the same on every later one. Null for a null or unknown name, and
// when the host cannot allocate the object (the next request tries again).
extern "C" SPINDLE_EXPORT xClass* findObject(const char* name);

// A script call that matched no method of its object, as the diagnostics hook sees it.
// Every pointer lives only while the hook runs.
struct SpindleUnmatchedCall {
  const char* object;  // the object's registered name
  const char* method;  // as the script gave it; null when it gave none
  int argc;
  const xarg_entry* args;
  // The nearest method of the object's table; null when none is near.
  const char* nearest;
  // The first argument the nearest method does not take as given; -1 when the kinds are
  // not what differs.
  int differingArgument;
  // All of it in one line, for the people who maintain the pages: "no method matched
  // Math.rnd(document, double): did you mean round(document, number)?"
  const char* reason;
};
using SpindleDiagnosticsHook = void (*)(const SpindleUnmatchedCall* call);

// Sets the function told of every call that matches no method (null, the default, turns
// it off and leaves the dispatcher exactly as fast as without it). Returns the previous.
extern "C" SPINDLE_EXPORT SpindleDiagnosticsHook setDiagnosticsHook(SpindleDiagnosticsHook hook);

// The element with `id` in `doc`, searched as the host's findElement does (so "args"
// resolves to the document's script-argument element); null for a null document or
// when nothing is found. Exported under its plain name like the others, although its
// types are C++: its callers are C++ and look it up by that name, so clang's warning
// about a C++ return type under C linkage does not apply.
#if defined(__clang__)
#pragma clang diagnostic push
#pragma clang diagnostic ignored "-Wreturn-type-c-linkage"
#endif
extern "C" SPINDLE_EXPORT Loom::SmartPtr<Loom::XUL::xXULElem> getXULElembyID(
    Loom::wstring id, Loom::SmartPtr<Loom::XUL::xXULDoc> doc);
#if defined(__clang__)
#pragma clang diagnostic pop
#endif

// Replaces the items of the item list `targetId` in `targetDoc` by copies of the items
// of `sourceId` in `sourceDoc`, except the source's first item.
extern "C" SPINDLE_EXPORT void copyMenulistItems(Loom::wstring targetId, Loom::wstring sourceId,
                                                 Loom::SmartPtr<Loom::XUL::xXULDoc> targetDoc,
                                                 Loom::SmartPtr<Loom::XUL::xXULDoc> sourceDoc);

// Which print job types the account settings allow: (universal driver, user
// authentication, private restriction, hold restriction) into (paper, private, hold,
// proof, schedule, box). Outputs a combination does not decide keep the caller's values.
extern "C" SPINDLE_EXPORT void getPrintJobFlagByAccoutSettings(
    bool universal, bool userAuthentication, bool privateRestriction, bool holdRestriction,
    bool& paper, bool& privatePrint, bool& hold, bool& proof, bool& schedule, bool& box);
