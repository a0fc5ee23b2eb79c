// The simulated user registry hive and network user name.
#include "refhost/user_registry.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "host/os.h"

namespace refhost {
namespace {

struct UserSimulation {
  // Every existing key, parents included, in the spelling it was first created with.
  std::vector<std::u16string> keys;
  bool failNextDeletion = false;
  std::vector<std::u16string> deletions;
  std::optional<std::u16string> networkUserName;
};

UserSimulation& State() {
  static UserSimulation state;
  return state;
}

// The registry compares key names without regard to ASCII letter case.
std::u16string Folded(std::u16string_view path) {
  std::u16string folded(path);
  for (char16_t& c : folded) {
    if (c >= u'A' && c <= u'Z') c = static_cast<char16_t>(c - u'A' + u'a');
  }
  while (!folded.empty() && folded.back() == u'\\') folded.pop_back();
  return folded;
}

bool IsKeyOrBelow(std::u16string_view key, std::u16string_view ancestor) {
  const std::u16string k = Folded(key);
  const std::u16string a = Folded(ancestor);
  return k == a || (k.size() > a.size() && k.starts_with(a) && k[a.size()] == u'\\');
}

bool HasSubkeys(std::u16string_view keyPath) {
  const std::u16string folded = Folded(keyPath);
  return std::any_of(State().keys.begin(), State().keys.end(), [&](const std::u16string& key) {
    return Folded(key) != folded && IsKeyOrBelow(key, keyPath);
  });
}

}  // namespace

void resetUserSimulation() { State() = UserSimulation(); }

void setUserRegistryKey(std::u16string_view keyPath, bool present) {
  std::vector<std::u16string>& keys = State().keys;
  if (!present) {
    std::erase_if(keys, [&](const std::u16string& key) { return IsKeyOrBelow(key, keyPath); });
    return;
  }
  // The key and each of its parents, from the top down.
  for (std::size_t end = 0; end != std::u16string_view::npos;) {
    end = keyPath.find(u'\\', end + 1);
    const std::u16string_view key = keyPath.substr(0, end);
    if (!key.empty() && !userRegistryKeyExists(key)) keys.emplace_back(key);
  }
}

bool userRegistryKeyExists(std::u16string_view keyPath) {
  const std::u16string folded = Folded(keyPath);
  return std::any_of(State().keys.begin(), State().keys.end(),
                     [&](const std::u16string& key) { return Folded(key) == folded; });
}

std::vector<std::u16string> userRegistryKeys() { return State().keys; }

void failNextUserRegistryDeletion() { State().failNextDeletion = true; }

const std::vector<std::u16string>& userRegistryDeletions() { return State().deletions; }

void setNetworkUserName(std::u16string_view name) {
  State().networkUserName = std::u16string(name);
}

void clearNetworkUserName() { State().networkUserName.reset(); }

}  // namespace refhost

namespace Loom::OS {

bool deleteUserRegistryKey(const wstring& keyPath) {
  refhost::UserSimulation& state = refhost::State();
  const std::u16string_view key(keyPath);
  state.deletions.emplace_back(key);
  if (std::exchange(state.failNextDeletion, false)) return false;
  if (!refhost::userRegistryKeyExists(key) || refhost::HasSubkeys(key)) return false;
  refhost::setUserRegistryKey(key, false);
  return true;
}

bool networkUserName(wstring& name) {
  const std::optional<std::u16string>& stored = refhost::State().networkUserName;
  if (!stored) return false;
  name.assign(stored->begin(), stored->end());
  return true;
}

}  // namespace Loom::OS
