// What a call did to the settings trees, learnt from the trees themselves: each node a
// call sets, adds or removes is reported by the host (change_observer.h), and only those
// paths are compared, so the cost follows what changed, not the size of the trees.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "host/settings.h"
#include "refhost/change_observer.h"

namespace loomsim {

class SettingsChanges {
 public:
  // Watches `tree` (changes of other trees are passed over); `name` names it in the lines.
  SettingsChanges(std::string name, const Loom::Services::PersistentSettings& tree);

  // Takes one settings change the host reported.
  void Note(const refhost::Change& change);

  // Appends one line per node whose value or presence differs between the start and now,
  // paths written as settings_path.h writes them; nodes still there in tree order first,
  // then the removed ones in the order they had:
  //   + user PATH = "value"
  //   ~ user PATH = "value" (was "old")
  //   - user PATH (was "old")
  // The root's own value is not reported.
  void Report(Loom::Services::PersistentSettings& tree, std::vector<std::string>& lines) const;

 private:
  // A path as it was when the call first touched it.
  struct Before {
    std::vector<std::string> keys;
    bool existed;
    std::string value;
    std::vector<std::uint64_t> place;  // the order numbers from the root down
  };

  void Touch(const refhost::SettingsNode& top, bool existed);

  std::string name_;
  const Loom::Services::PersistentSettings* tree_;
  std::unordered_map<std::string, Before> touched_;  // by path text
};

}  // namespace loomsim
