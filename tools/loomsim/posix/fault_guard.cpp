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

void OnFault(int signal) {
  if (g_innermost != nullptr) siglongjmp(*g_innermost, signal);
  // Not inside a guard: the fault is the runner's own, and ends it as it would have.
  ::signal(signal, SIG_DFL);
  raise(signal);
}

// Sends the faults to OnFault while the outermost guard runs.
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

}  // namespace

std::optional<std::string> RunCatchingFaults(const std::function<void()>& call) {
  sigjmp_buf* const outer = g_innermost;
  std::optional<FaultHandlers> handlers;
  if (outer == nullptr) handlers.emplace();
  sigjmp_buf here;
  // The signal mask is saved and restored, so the fault's signal is not left blocked.
  if (const int signal = sigsetjmp(here, 1); signal != 0) {
    g_innermost = outer;
    return FaultText(signal);
  }
  g_innermost = &here;
  call();
  g_innermost = outer;
  return std::nullopt;
}

}  // namespace loomsim
