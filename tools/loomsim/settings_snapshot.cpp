#include "tools/loomsim/settings_snapshot.h"

#include <map>

#include "tools/loomsim/settings_path.h"
#include "tools/loomsim/text_values.h"

namespace loomsim {
namespace {

void Collect(Loom::Services::PersistentItem& node, std::vector<std::string>& keys,
             SettingsSnapshot& snapshot) {
  for (std::size_t i = 0; i < node.getNumChildren(); ++i) {
    Loom::Services::PersistentItem& child = node.childAt(i);
    keys.emplace_back(child.key());
    snapshot.emplace_back(SettingsPathText(keys), std::string(Loom::string(child)));
    Collect(child, keys, snapshot);
    keys.pop_back();
  }
}

std::map<std::string_view, std::string_view> Index(const SettingsSnapshot& snapshot) {
  std::map<std::string_view, std::string_view> index;
  for (const auto& [path, value] : snapshot) index.emplace(path, value);
  return index;
}

}  // namespace

SettingsSnapshot TakeSettingsSnapshot(Loom::Services::PersistentItem& root) {
  SettingsSnapshot snapshot;
  std::vector<std::string> keys;
  Collect(root, keys, snapshot);
  return snapshot;
}

void DiffSettings(std::string_view tree, const SettingsSnapshot& before,
                  const SettingsSnapshot& after, std::vector<std::string>& lines) {
  const auto oldValues = Index(before);
  const auto newValues = Index(after);
  const std::string prefix = std::string(tree) + " ";
  for (const auto& [path, value] : after) {
    const auto old = oldValues.find(path);
    if (old == oldValues.end()) {
      lines.push_back("+ " + prefix + path + " = " + ReportValue(value));
    } else if (old->second != value) {
      lines.push_back("~ " + prefix + path + " = " + ReportValue(value) + " (was " +
                      ReportValue(old->second) + ")");
    }
  }
  for (const auto& [path, value] : before) {
    if (!newValues.contains(path)) {
      lines.push_back("- " + prefix + path + " (was " + ReportValue(value) + ")");
    }
  }
}

}  // namespace loomsim
