#include "refhost/properties.h"

#include <charconv>
#include <string_view>

#include "refhost/text.h"

namespace refhost {

void Properties::set(const std::string& key, const std::string& utf8Value) {
  values_[key] = utf8Value;
}

void Properties::unset(const std::string& key) { values_.erase(key); }

std::vector<std::string> Properties::keys() const {
  std::vector<std::string> keys;
  keys.reserve(values_.size());
  for (const auto& entry : values_) keys.push_back(entry.first);
  return keys;
}

const std::string* Properties::find(const Loom::string& key) const {
  const auto found = values_.find(std::string_view(key));
  return found == values_.end() ? nullptr : &found->second;
}

bool Properties::exists(const Loom::string& key) const { return find(key) != nullptr; }

Loom::wstring Properties::getString(const Loom::string& key) const {
  const std::string* value = find(key);
  return value ? Utf16(*value) : Loom::wstring();
}

int Properties::getInt(const Loom::string& key) const {
  const std::string* value = find(key);
  if (value == nullptr) return 0;
  std::string_view text = *value;
  while (!text.empty() && (text.front() == ' ' || text.front() == '\t')) text.remove_prefix(1);
  // from_chars takes a '-' but no '+'; "+-1" stays no number.
  if (text.starts_with('+') && !text.substr(1).starts_with('-')) text.remove_prefix(1);
  int number = 0;
  const std::from_chars_result parsed =
      std::from_chars(text.data(), text.data() + text.size(), number);
  return parsed.ec == std::errc() ? number : 0;
}

}  // namespace refhost
