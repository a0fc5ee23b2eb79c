#include "tools/loomsim/library_call.h"

#include <setjmp.h>
#include <signal.h>

#include <exception>
#include <iterator>

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

// The handlers there were before the runner's, by the position of their fault in kFaults.
struct sigaction g_previous[std::size(kFaults)];

void OnFault(int signal) {
  if (g_innermost != nullptr) siglongjmp(*g_innermost, signal);
  // Not inside a call: the fault is the runner's own, and goes where it would have gone.
  for (std::size_t i = 0; i < std::size(kFaults); ++i) {
    if (kFaults[i].signal == signal) sigaction(signal, &g_previous[i], nullptr);
  }
  raise(signal);
}

// Sends the faults to OnFault from the first call on, for the rest of the run: outside a
// call OnFault ends the runner as the fault would have, so the handlers can stay.
void InstallFaultHandlersOnce() {
  static const bool installed = [] {
    struct sigaction action = {};
    action.sa_handler = OnFault;
    sigemptyset(&action.sa_mask);
    for (std::size_t i = 0; i < std::size(kFaults); ++i) {
      sigaction(kFaults[i].signal, &action, &g_previous[i]);
    }
    return true;
  }();
  (void)installed;
}

std::string FaultText(int signal) {
  for (const Fault& fault : kFaults) {
    if (fault.signal == signal) return fault.text;
  }
  return "signal " + std::to_string(signal);
}

CallOutcome Call(ObjectFinder finder, const std::string& object, const std::string& method,
                 refhost::Args& args) {
  CallOutcome outcome;
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
  return outcome;
}

}  // namespace

CallOutcome CallLibrary(ObjectFinder finder, const std::string& object, const std::string& method,
                        refhost::Args& args) {
  InstallFaultHandlersOnce();
  sigjmp_buf* const outer = g_innermost;
  sigjmp_buf here;
  // The signal mask is not saved (a system call per call): only the fault that jumps back
  // changed it, by blocking itself while its handler ran, so that one is unblocked here.
  if (const int signal = sigsetjmp(here, 0); signal != 0) {
    sigset_t fault;
    sigemptyset(&fault);
    sigaddset(&fault, signal);
    sigprocmask(SIG_UNBLOCK, &fault, nullptr);
    g_innermost = outer;
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
