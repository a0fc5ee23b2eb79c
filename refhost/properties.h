// refhost::Properties: the printer and driver properties of a document, set by tests and
// the scenario runner ("loom.driver.name", "loom.user.path", ...).
#pragma once

#include <map>
#include <string>
#include <vector>

#include "host/properties.h"

namespace refhost {

class Properties final : public Loom::PropertyManager {
 public:
  Properties() = default;

  // Sets `key` to the UTF-8 text `utf8Value` (replacing an earlier value).
  void set(const std::string& key, const std::string& utf8Value);
  // Makes `key` not set; an unknown key is no error.
  void unset(const std::string& key);
  // The keys that are set, in ascending byte order.
  std::vector<std::string> keys() const;

  bool exists(const Loom::string& key) const override;
  // The value as UTF-16; "" when not set. Throws utfcpp's exception when it is not UTF-8.
  Loom::wstring getString(const Loom::string& key) const override;
  // The leading decimal integer of the value: optional blanks, an optional sign, digits
  // ("600dpi" is 600). 0 when not set, without digits, or outside the range of int.
  int getInt(const Loom::string& key) const override;

 private:
  ~Properties() override = default;

  const std::string* find(const Loom::string& key) const;

  std::map<std::string, std::string, std::less<>> values_;
};

}  // namespace refhost
