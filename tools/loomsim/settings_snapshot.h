// What a call did to a settings tree: the tree's content before and after, compared.
#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "host/settings.h"

namespace loomsim {

// Every node below the root as (path as settings_path.h writes it, value), in tree order.
using SettingsSnapshot = std::vector<std::pair<std::string, std::string>>;

SettingsSnapshot TakeSettingsSnapshot(Loom::Services::PersistentItem& root);

// Appends one line per node added, changed or removed, `tree` naming the tree:
//   + user PATH = "value"
//   ~ user PATH = "value" (was "old")
//   - user PATH (was "old")
void DiffSettings(std::string_view tree, const SettingsSnapshot& before,
                  const SettingsSnapshot& after, std::vector<std::string>& lines);

}  // namespace loomsim
