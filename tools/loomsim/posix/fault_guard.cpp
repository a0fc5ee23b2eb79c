#include "tools/loomsim/fault_guard.h"

#include <setjmp.h>
#include <signal.h>

#include <iterator>

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

// The innermost guard in progress, which a fault jumps back to.
sigjmp_buf* g_innermost = nullptr;

// The handlers there were before the runner's, by the position of their fault in kFaults.
struct sigaction g_previous[std::size(kFaults)];

void OnFault(int signal) {
  if (g_innermost != nullptr) siglongjmp(*g_innermost, signal);
  // Not inside a guard: the fault is the runner's own, and goes where it would have gone.
  for (std::size_t i = 0; i < std::size(kFaults); ++i) {
    if (kFaults[i].signal == signal) sigaction(signal, &g_previous[i], nullptr);
  }
  raise(signal);
}

// Sends the faults to OnFault from the first guard on, for the rest of the run: outside a
// guard OnFault ends the runner as the fault would have, so the handlers can stay.
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

}  // namespace

std::optional<std::string> RunCatchingFaults(const std::function<void()>& call) {
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
    return FaultText(signal);
  }
  g_innermost = &here;
  call();
  g_innermost = outer;
  return std::nullopt;
}

}  // namespace loomsim
