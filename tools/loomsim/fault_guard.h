// Catching the faults of a call into the library (an invalid memory access, a bus error,
// an arithmetic or illegal-instruction trap), so that they end the call and not the
// runner. The operating system's part, one implementation per platform in posix/ and
// win32/.
#pragma once

#include <functional>
#include <optional>
#include <string>

namespace loomsim {

// Runs `call`. When a fault cuts it short, execution jumps back here, skipping whatever
// the call had not finished, and the fault is described ("invalid memory access
// (SIGSEGV)"); otherwise nothing. Guards nest: a fault returns to the innermost one.
std::optional<std::string> RunCatchingFaults(const std::function<void()>& call);

}  // namespace loomsim
