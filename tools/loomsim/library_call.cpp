#include "tools/loomsim/library_call.h"

#include <exception>
#include <optional>
#include <string>
#include <utility>

#include "host/xclass.h"
#include "tools/loomsim/fault_guard.h"

namespace loomsim {
namespace {

// Where the innermost call in progress keeps the reason it matched nothing.
std::optional<std::string>* g_unmatched = nullptr;

CallOutcome Call(ObjectFinder finder, const std::string& object, const std::string& method,
                 refhost::Args& args) {
  CallOutcome outcome;
  std::optional<std::string>* const outerUnmatched = std::exchange(g_unmatched, &outcome.unmatched);
  try {
    xClass* target = finder(object.c_str());
    if (target == nullptr) return outcome;
    outcome.objectFound = true;
    outcome.result = target->call(method.c_str(), args.count(), args.records(), nullptr);
  } catch (const std::exception& error) {
    outcome.exception = error.what();
  } catch (...) {
    outcome.exception = "an exception that is not a std::exception";
  }
  g_unmatched = outerUnmatched;
  return outcome;
}

}  // namespace

void NoteUnmatchedCall(const SpindleUnmatchedCall* call) {
  if (g_unmatched != nullptr) *g_unmatched = call->reason;
}

void InstallDiagnosticsHook(void* setHook) {
  if (setHook != nullptr)
    reinterpret_cast<decltype(&setDiagnosticsHook)>(setHook)(NoteUnmatchedCall);
}

CallOutcome CallLibrary(ObjectFinder finder, const std::string& object, const std::string& method,
                        refhost::Args& args) {
  CallOutcome outcome;
  std::optional<std::string>* const outerUnmatched = g_unmatched;
  std::optional<std::string> fault =
      RunCatchingFaults([&] { outcome = Call(finder, object, method, args); });
  if (fault) {
    g_unmatched = outerUnmatched;  // the fault jumped past Call's own restoring
    outcome = CallOutcome{};
    outcome.objectFound = true;
    outcome.fault = std::move(fault);
  }
  return outcome;
}

std::string OutcomeText(const CallOutcome& outcome, const std::string& object) {
  if (outcome.fault) return "crashed: " + *outcome.fault;
  if (outcome.exception) return "exception: " + *outcome.exception;
  if (!outcome.objectFound) return "no object " + object;
  return outcome.result ? "true" : "false";
}

}  // namespace loomsim
