// The stored form of a settings tree (refhost/README.md), shared by its writer and its
// readers: the element and attribute names, and the escape of keys and values that XML
// cannot carry.
//
// A key or value that XML cannot carry as it is (bytes that are not UTF-8, control
// characters, U+FFFE, U+FFFF) is stored under "key-bytes" / "value-bytes" instead of
// "key" / "value", with every byte outside printable ASCII, and '%' itself, written as
// %XX: the file stays well-formed and the bytes come back exactly.
#pragma once

#include <string_view>

#include "host/loom_base.h"

namespace refhost {

// A name as each reader spells it: pugixml and the text reader in UTF-8, the DOM in UTF-16.
struct FormName {
  const char* narrow;
  const char16_t* wide;
};
inline constexpr FormName kSettingsElement{"settings", u"settings"};
inline constexpr FormName kItemElement{"item", u"item"};
inline constexpr FormName kKeyAttribute{"key", u"key"};
inline constexpr FormName kKeyBytesAttribute{"key-bytes", u"key-bytes"};
inline constexpr FormName kValueAttribute{"value", u"value"};
inline constexpr FormName kValueBytesAttribute{"value-bytes", u"value-bytes"};

// `text` with its bytes escaped, as written under a "-bytes" attribute.
Loom::wstring EscapeBytes(std::string_view text);
// The bytes an escaped attribute stands for; a '%' not followed by two hex digits stands
// for itself.
Loom::string UnescapeBytes(std::string_view text);

}  // namespace refhost
