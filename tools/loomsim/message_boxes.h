// Message boxes the library shows while a scenario runs.
//
// The runner does not simulate the operating system itself. The host's OS simulation
// feeds every message box it shows into Shown, through a connection its facility makes
// in its start hook (grammar.h); the runner reports each box with the call that showed it
// and checks it with `expect message`.
#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace loomsim {

class MessageBoxes {
 public:
  // A message box with `text` (UTF-8) was shown.
  void Shown(std::string_view text) { shown_.emplace_back(text); }
  // The texts shown since the last Take, in order; forgets them.
  std::vector<std::string> Take() { return std::exchange(shown_, {}); }

 private:
  std::vector<std::string> shown_;
};

}  // namespace loomsim
