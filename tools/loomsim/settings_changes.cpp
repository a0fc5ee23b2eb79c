#include "tools/loomsim/settings_changes.h"

#include <algorithm>
#include <utility>

#include "refhost/settings_tree.h"
#include "tools/loomsim/settings_path.h"
#include "tools/loomsim/text_values.h"

namespace loomsim {
namespace {

using refhost::SettingsNode;

std::vector<std::string> KeysOf(const SettingsNode& node) {
  std::vector<std::string> keys;
  for (const Loom::string& key : node.path()) keys.emplace_back(key);
  return keys;
}

std::vector<std::uint64_t> PlaceOf(const SettingsNode& node) {
  std::vector<std::uint64_t> place;
  for (const SettingsNode* at = &node; at->parent() != nullptr; at = at->parent()) {
    place.push_back(at->order());
  }
  std::reverse(place.begin(), place.end());
  return place;
}

// A reported node at `keys` from the root of `tree`, or null.
const SettingsNode* Find(Loom::Services::PersistentSettings& tree,
                         const std::vector<std::string>& keys) {
  if (keys.empty()) return nullptr;
  auto* node = static_cast<const SettingsNode*>(tree.find(Loom::string(keys.front())));
  for (std::size_t i = 1; node != nullptr && i < keys.size(); ++i) node = node->findChild(keys[i]);
  return node;
}

}  // namespace

SettingsChanges::SettingsChanges(std::string name, const Loom::Services::PersistentSettings& tree)
    : name_(std::move(name)), tree_(&tree) {}

void SettingsChanges::Note(const refhost::Change& change) {
  using Kind = refhost::Change::Kind;
  if (change.settings != tree_ || change.setting->parent() == nullptr) return;
  switch (change.kind) {
    case Kind::kSettingChanged: {
      // A path first touched by a new value was there, untouched, when the call began.
      std::vector<std::string> keys = KeysOf(*change.setting);
      std::string path = SettingsPathText(keys);
      if (touched_.contains(path)) return;
      touched_.emplace(
          std::move(path),
          Before{std::move(keys), true, std::string(change.oldSetting), PlaceOf(*change.setting)});
      break;
    }
    case Kind::kSettingAdded:
      Touch(*change.setting, false);
      break;
    case Kind::kSettingRemoved:
      Touch(*change.setting, true);
      break;
    default:
      break;
  }
}

// Every node of the subtree under `top`: a path first touched by a removal was there when
// the call began, one first touched by an addition was not.
void SettingsChanges::Touch(const SettingsNode& top, bool existed) {
  std::vector<std::string> topKeys = KeysOf(top);
  std::vector<std::uint64_t> topPlace = PlaceOf(top);
  std::vector<std::pair<const SettingsNode*, std::size_t>> pending{{&top, topKeys.size()}};
  std::vector<std::string> keys(topKeys.begin(), topKeys.end() - 1);
  std::vector<std::uint64_t> place(topPlace.begin(), topPlace.end() - 1);
  while (!pending.empty()) {
    const auto [node, depth] = pending.back();
    pending.pop_back();
    keys.resize(depth - 1);
    place.resize(depth - 1);
    keys.emplace_back(node->key());
    place.push_back(node->order());
    std::string path = SettingsPathText(keys);
    if (!touched_.contains(path)) {
      touched_.emplace(std::move(path),
                       Before{keys, existed, existed ? std::string(node->value()) : "",
                              existed ? place : std::vector<std::uint64_t>()});
    }
    std::vector<const SettingsNode*> children;
    for (const SettingsNode* child = node->firstChild(); child != nullptr;
         child = child->nextSibling()) {
      children.push_back(child);
    }
    for (auto child = children.rbegin(); child != children.rend(); ++child) {
      pending.emplace_back(*child, depth + 1);
    }
  }
}

void SettingsChanges::Report(Loom::Services::PersistentSettings& tree,
                             std::vector<std::string>& lines) const {
  struct Line {
    std::vector<std::uint64_t> place;
    std::string text;
  };
  std::vector<Line> present, removed;
  const std::string prefix = name_ + " ";
  for (const auto& [path, before] : touched_) {
    const SettingsNode* now = Find(tree, before.keys);
    if (now == nullptr) {
      if (before.existed) {
        removed.push_back(
            {before.place, "- " + prefix + path + " (was " + ReportValue(before.value) + ")"});
      }
      continue;
    }
    const std::string value(now->value());
    if (!before.existed) {
      present.push_back({PlaceOf(*now), "+ " + prefix + path + " = " + ReportValue(value)});
    } else if (value != before.value) {
      present.push_back({PlaceOf(*now), "~ " + prefix + path + " = " + ReportValue(value) + " (was " +
                                            ReportValue(before.value) + ")"});
    }
  }
  const auto byPlace = [](const Line& a, const Line& b) { return a.place < b.place; };
  std::sort(present.begin(), present.end(), byPlace);
  std::sort(removed.begin(), removed.end(), byPlace);
  for (Line& line : present) lines.push_back(std::move(line.text));
  for (Line& line : removed) lines.push_back(std::move(line.text));
}

}  // namespace loomsim
