#include "tools/loomsim/settings_path.h"

#include <algorithm>

#include "tools/loomsim/text_values.h"

namespace loomsim {
namespace {

// Characters an unquoted key may hold besides letters, digits, '_' and '-'.
constexpr std::string_view kKeyChars = ".:$+,;@&%'()[]{}!?*~|\\<>^`";

bool NeedsQuotes(std::string_view key) {
  return key.empty() || !std::all_of(key.begin(), key.end(), [](char c) {
           return IsNameChar(c) || kKeyChars.find(c) != std::string_view::npos;
         });
}

}  // namespace

std::vector<std::string> ParseSettingsPath(Cursor& cursor) {
  std::vector<std::string> keys;
  do {
    if (cursor.AtText()) {
      keys.push_back(cursor.Text("a settings key"));
    } else {
      keys.push_back(cursor.Name("a settings path (keys joined by '/')", kKeyChars));
    }
  } while (cursor.Accept("/"));
  return keys;
}

std::string SettingsPathText(const std::vector<std::string>& keys) {
  std::string text;
  for (const std::string& key : keys) {
    if (!text.empty()) text += '/';
    text += NeedsQuotes(key) ? Quote(key) : key;
  }
  return text;
}

}  // namespace loomsim
