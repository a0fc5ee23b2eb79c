// The simulated operating-system user (refhost/user_registry.h): keys of the current
// user's registry hive, a failure of the next key deletion, and the network user name.
// Each file starts with an empty hive, no pending failure and no network user name (the
// name lookup fails, as for a user without a network logon).
//
// Registry key paths are written as the registry writes them, with single backslashes
// and no escapes: registry user "Software\Spindle\Kestrel" present.
#include <optional>
#include <string>
#include <string_view>

#include "refhost/user_registry.h"
#include "tools/loomsim/grammar.h"
#include "tools/loomsim/host_text.h"
#include "tools/loomsim/scenario.h"
#include "tools/loomsim/text_values.h"

namespace loomsim {
namespace {

constexpr std::string_view kKeyPath =
    "a quoted registry key path: names joined by single '\\', no escapes";

struct RegistryKey {
  std::u16string path;
  std::string written;  // the path as the scenario wrote it, for the echo
};

// "user" and a key path in double quotes, taken as it stands: a key path is full of
// backslashes and never holds a '"'.
RegistryKey ParseUserKey(Cursor& cursor) {
  cursor.Expect("user", "user (the current user's hive) and a quoted key path");
  const std::string_view rest = cursor.Rest();
  const std::size_t close = rest.starts_with('"') ? rest.find('"', 1) : std::string_view::npos;
  if (close == std::string_view::npos) throw ParseError(std::string(kKeyPath), std::string(rest));
  const std::string_view path = rest.substr(1, close - 1);
  // Every name between the separators must be there: "A\\B" or a trailing '\' name none.
  bool emptyName = false;
  for (std::size_t start = 0; start != std::string_view::npos;) {
    const std::size_t separator = path.find('\\', start);
    emptyName |= separator == start || start == path.size();
    start = separator == std::string_view::npos ? separator : separator + 1;
  }
  const std::optional<std::u16string> wide = WideText(path);
  if (emptyName || !wide) throw ParseError(std::string(kKeyPath), std::string(rest));
  cursor.Advance(close + 1);
  return {*wide, std::string(path)};
}

std::string KeyText(const RegistryKey& key) { return "user \"" + key.written + "\""; }

Parsed ParseRegistry(StatementInput& input) {  // registry user "Software\Spindle\Drv" present
  Cursor& cursor = input.cursor();
  const RegistryKey key = ParseUserKey(cursor);
  cursor.Expect("present", "present after the key path");
  return {"registry " + KeyText(key) + " present",
          [key](Scenario&) { refhost::setUserRegistryKey(key.path, true); }};
}

Parsed ParseRegistryFail(StatementInput&) {
  return {"registryfail", [](Scenario&) { refhost::failNextUserRegistryDeletion(); }};
}

Parsed ParseNetUser(StatementInput& input) {  // netuser "jsmith"
  const std::u16string name = WideQuotedText(input.cursor(), "the quoted network user name");
  return {"netuser " + Quote(name), [name](Scenario&) { refhost::setNetworkUserName(name); }};
}

Parsed ParseRegistryExpectation(StatementInput& input) {
  Cursor& cursor = input.cursor();
  const RegistryKey key = ParseUserKey(cursor);
  const bool present = cursor.Accept("present");
  if (!present && !cursor.Accept("absent")) cursor.Fail("present or absent after the key path");
  return {"expect registry " + KeyText(key) + (present ? " present" : " absent"),
          [key, present](Scenario& scenario) {
            const bool exists = refhost::userRegistryKeyExists(key.path);
            scenario.Check(exists == present, exists ? "present" : "absent");
          }};
}

void StartUser(Scenario&) { refhost::resetUserSimulation(); }

constexpr StatementForm kForms[] = {
    {"registry", "registry user \"KEY\\PATH\" present", ParseRegistry},
    {"registryfail", "registryfail", ParseRegistryFail},
    {"netuser", "netuser \"name\"", ParseNetUser},
    {"expect registry", "expect registry user \"KEY\\PATH\" present|absent",
     ParseRegistryExpectation},
};

}  // namespace

extern const Facility kUserFacility{"the user's registry and network name", kForms, StartUser};

}  // namespace loomsim
