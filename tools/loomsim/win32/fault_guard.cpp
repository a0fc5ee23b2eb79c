#include "tools/loomsim/fault_guard.h"

#include <csetjmp>
#include <csignal>
#include <iterator>

namespace loomsim {
namespace {

// The C run-time's signals: MinGW's start-up code turns access violations, arithmetic
// and illegal-instruction exceptions into them. Windows has no bus error.
struct Fault {
  int signal;
  const char* text;
};
constexpr Fault kFaults[] = {
    {SIGSEGV, "invalid memory access (SIGSEGV)"},
    {SIGFPE, "arithmetic fault (SIGFPE)"},
    {SIGILL, "illegal instruction (SIGILL)"},
};

// The innermost guard in progress, which a fault jumps back to.
std::jmp_buf* g_innermost = nullptr;

void OnFault(int signal) {
  if (g_innermost != nullptr) std::longjmp(*g_innermost, signal);
  std::signal(signal, SIG_DFL);
  std::raise(signal);
}

// Sends the faults to OnFault while the outermost guard runs. The C run-time resets a
// handler to the default when it calls it, so every guard installs them afresh.
class FaultHandlers {
 public:
  FaultHandlers() {
    for (std::size_t i = 0; i < std::size(kFaults); ++i) {
      previous_[i] = std::signal(kFaults[i].signal, OnFault);
    }
  }
  ~FaultHandlers() {
    for (std::size_t i = 0; i < std::size(kFaults); ++i) {
      std::signal(kFaults[i].signal, previous_[i]);
    }
  }
  FaultHandlers(const FaultHandlers&) = delete;
  FaultHandlers& operator=(const FaultHandlers&) = delete;

 private:
  void (*previous_[std::size(kFaults)])(int);
};

std::string FaultText(int signal) {
  for (const Fault& fault : kFaults) {
    if (fault.signal == signal) return fault.text;
  }
  return "signal " + std::to_string(signal);
}

}  // namespace

std::optional<std::string> RunCatchingFaults(const std::function<void()>& call) {
  std::jmp_buf* const outer = g_innermost;
  std::optional<FaultHandlers> handlers;
  if (outer == nullptr) handlers.emplace();
  std::jmp_buf here;
  if (const int signal = setjmp(here); signal != 0) {
    g_innermost = outer;
    return FaultText(signal);
  }
  g_innermost = &here;
  call();
  g_innermost = outer;
  return std::nullopt;
}

}  // namespace loomsim
