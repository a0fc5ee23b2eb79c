#include "tools/loomsim/library_call.h"

#include <setjmp.h>
#include <signal.h>

#include <exception>
#include <iterator>
#include <utility>

#include "host/xclass.h"

namespace loomsim {
namespace {

struct Fault {
  int signal;
  const char* text;
};
constexpr Fault kFaults[] = {
    {SIGSEGV, "invalid memory access (SIGSEGV)"},
    {SIGBUS, "bus error (SIGBUS)"},
    {SIGFPE, "arithmetic fault (SIGFPE)"},
    {SIGILL, "illegal instruction (SIGILL)"},
};

// The innermost call in progress, which a fault jumps back to.
sigjmp_buf* g_innermost = nullptr;
// Where the innermost call in progress keeps the reason it matched nothing.
std::optional<std::string>* g_unmatched = nullptr;

void OnFault(int signal) {
  if (g_innermost != nullptr) siglongjmp(*g_innermost, signal);
  // Not inside a call: the fault is the runner's own, and ends it as it would have.
  ::signal(signal, SIG_DFL);
  raise(signal);
}

// Sends the faults to OnFault while the outermost call runs.
class FaultHandlers {
 public:
  FaultHandlers() {
    struct sigaction action = {};
    action.sa_handler = OnFault;
    sigemptyset(&action.sa_mask);
    for (std::size_t i = 0; i < std::size(kFaults); ++i) {
      sigaction(kFaults[i].signal, &action, &previous_[i]);
    }
  }
  ~FaultHandlers() {
    for (std::size_t i = 0; i < std::size(kFaults); ++i) {
      sigaction(kFaults[i].signal, &previous_[i], nullptr);
    }
  }
  FaultHandlers(const FaultHandlers&) = delete;
  FaultHandlers& operator=(const FaultHandlers&) = delete;

 private:
  struct sigaction previous_[std::size(kFaults)];
};

std::string FaultText(int signal) {
  for (const Fault& fault : kFaults) {
    if (fault.signal == signal) return fault.text;
  }
  return "signal " + std::to_string(signal);
}

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

CallOutcome CallLibrary(ObjectFinder finder, const std::string& object, const std::string& method,
                        refhost::Args& args) {
  sigjmp_buf* const outer = g_innermost;
  std::optional<FaultHandlers> handlers;
  if (outer == nullptr) handlers.emplace();
  sigjmp_buf here;
  std::optional<std::string>* const outerUnmatched = g_unmatched;
  if (const int signal = sigsetjmp(here, 1); signal != 0) {
    g_innermost = outer;
    g_unmatched = outerUnmatched;
    CallOutcome crashed;
    crashed.objectFound = true;
    crashed.fault = FaultText(signal);
    return crashed;
  }
  g_innermost = &here;
  CallOutcome outcome = Call(finder, object, method, args);
  g_innermost = outer;
  return outcome;
}

std::string OutcomeText(const CallOutcome& outcome, const std::string& object) {
  if (outcome.fault) return "crashed: " + *outcome.fault;
  if (outcome.exception) return "exception: " + *outcome.exception;
  if (!outcome.objectFound) return "no object " + object;
  return outcome.result ? "true" : "false";
}

}  // namespace loomsim
