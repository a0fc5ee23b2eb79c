// A settings tree and its stored document: both directions walk with a work list.
#include <cstring>
#include <deque>
#include <iterator>
#include <new>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "refhost/settings_tree.h"
#include "refhost/text.h"
#include "refhost/xml_text.h"

namespace refhost {
namespace {

constexpr char16_t kSettingsElement[] = u"settings";
constexpr char16_t kItemElement[] = u"item";
constexpr char16_t kKeyAttribute[] = u"key";
constexpr char16_t kValueAttribute[] = u"value";
// A key or value that XML cannot carry as it is (bytes that are not UTF-8, control
// characters, U+FFFE, U+FFFF) is stored under these instead, with every byte outside
// printable ASCII, and '%' itself, written as %XX: the file stays well-formed and the
// bytes come back exactly.
constexpr char16_t kKeyBytesAttribute[] = u"key-bytes";
constexpr char16_t kValueBytesAttribute[] = u"value-bytes";
constexpr char kEscape = '%';

Loom::wstring EscapeBytes(std::string_view text) {
  constexpr char kHex[] = "0123456789ABCDEF";
  Loom::wstring escaped;
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte >= ' ' && byte < 0x7F && c != kEscape) {
      escaped.push_back(byte);
    } else {
      escaped += {char16_t(kEscape), char16_t(kHex[byte >> 4]), char16_t(kHex[byte & 0xF])};
    }
  }
  return escaped;
}

int HexDigit(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  return -1;
}

// A '%' not followed by two hex digits stands for itself.
Loom::string UnescapeBytes(std::string_view text) {
  Loom::string bytes;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const int high = text[i] == kEscape && i + 2 < text.size() ? HexDigit(text[i + 1]) : -1;
    const int low = high >= 0 ? HexDigit(text[i + 2]) : -1;
    if (low >= 0) {
      bytes.push_back(static_cast<char>(high * 16 + low));
      i += 2;
    } else {
      bytes.push_back(text[i]);
    }
  }
  return bytes;
}

// An empty value is written as no attribute at all; a key always is written, so that an
// item with the empty key is still found by its key.
void SetText(Loom::Dom::Node& node, const char16_t* plain, const char16_t* escaped,
             const Loom::string& text, bool writeEmpty) {
  if (text.empty() && !writeEmpty) return;
  if (XmlCanCarry(text)) {
    node.attributes().set(plain, Utf16(text));
  } else {
    node.attributes().set(escaped, EscapeBytes(text));
  }
}

// The names of the stored form, as each reader spells them.
struct Name {
  const char* narrow;
  const char16_t* wide;
};
constexpr Name kSettings{"settings", kSettingsElement};
constexpr Name kItem{"item", kItemElement};
constexpr Name kKey{"key", kKeyAttribute};
constexpr Name kKeyBytes{"key-bytes", kKeyBytesAttribute};
constexpr Name kValue{"value", kValueAttribute};
constexpr Name kValueBytes{"value-bytes", kValueBytesAttribute};

// What the build reads of a stored document in the host's DOM (UTF-16 names and values).
struct DomReader {
  using Element = Loom::Dom::Node*;

  static bool Is(Element element, const Name& name) { return element->getName() == name.wide; }
  static Loom::string Text(Element element, const Name& plain, const Name& escaped) {
    Loom::Dom::AttributeMap& attributes = element->attributes();
    if (attributes.contains(escaped.wide)) return UnescapeBytes(Utf8(attributes[escaped.wide]));
    return Loom::string(Utf8(attributes[plain.wide]));
  }
  static std::size_t ChildCount(Element element) { return element->children().getNumChildren(); }
  static bool HasChildren(Element element) { return ChildCount(element) > 0; }
  template <class Visit>
  static void ForEachChild(Element element, const Visit& visit) {
    Loom::Dom::ChildVector& children = element->children();
    for (std::size_t i = 0; i < children.getNumChildren(); ++i) visit(children[i]);
  }
};

// The same of a document parsed by pugixml, whose names and values are UTF-8 already:
// ParseXmlText has checked the text and its character references.
struct PugiReader {
  using Element = pugi::xml_node;

  static bool Is(Element element, const Name& name) {
    return std::strcmp(element.name(), name.narrow) == 0;
  }
  // pugixml keeps an attribute given twice twice; the host's DOM keeps the later value,
  // and so does this, so both readers build the same tree from the same text.
  static Loom::string Text(Element element, const Name& plain, const Name& escaped) {
    const char* text = "";
    const char* bytes = nullptr;
    for (const pugi::xml_attribute attribute : element.attributes()) {
      const std::string_view name = attribute.name();
      if (name == escaped.narrow) bytes = attribute.value();
      if (name == plain.narrow) text = attribute.value();
    }
    return bytes != nullptr ? UnescapeBytes(bytes) : Loom::string(text);
  }
  static std::size_t ChildCount(Element element) {
    return static_cast<std::size_t>(std::distance(element.begin(), element.end()));
  }
  static bool HasChildren(Element element) { return element.first_child(); }
  template <class Visit>
  static void ForEachChild(Element element, const Visit& visit) {
    for (const pugi::xml_node child : element.children()) {
      if (child.type() == pugi::node_element) visit(child);
    }
  }
};

// The one build of a tree from a stored document, whichever reader holds it.
template <class Reader>
bool BuildSettings(typename Reader::Element root, SettingsNode& target) {
  if (!Reader::Is(root, kSettings)) return false;
  target.setValue(Reader::Text(root, kValue, kValueBytes));
  // First in, first out: items that merge into one node are read in document order, so
  // the later value wins and merged children keep the order they had in the file.
  std::deque<std::pair<typename Reader::Element, SettingsNode*>> pending{{root, &target}};
  while (!pending.empty()) {
    // Named apart, not bound: clang 14 cannot capture a structured binding.
    const typename Reader::Element from = pending.front().first;
    SettingsNode* const to = pending.front().second;
    pending.pop_front();
    to->reserveChildren(Reader::ChildCount(from));
    Reader::ForEachChild(from, [&](typename Reader::Element item) {
      if (!Reader::Is(item, kItem)) return;
      Loom::string key = Reader::Text(item, kKey, kKeyBytes);
      SettingsNode* node = to->findChild(key);
      if (node == nullptr) node = &to->appendChild(std::move(key));
      node->setValue(Reader::Text(item, kValue, kValueBytes));
      if (Reader::HasChildren(item)) pending.emplace_back(item, node);
    });
  }
  return true;
}

}  // namespace

Loom::SmartPtr<Loom::Dom::Node> SettingsToDom(const SettingsNode& root) {
  Loom::SmartPtr<Loom::Dom::Node> settings = Loom::Dom::createNode(kSettingsElement);
  if (!settings) return nullptr;
  SetText(*settings, kValueAttribute, kValueBytesAttribute, root.value(), false);
  // Each pair's children are appended in order when it is taken, so the order in which
  // the pairs are taken does not matter.
  std::vector<std::pair<const SettingsNode*, Loom::Dom::Node*>> pending{{&root, settings.get()}};
  try {
    while (!pending.empty()) {
      const auto [from, to] = pending.back();
      pending.pop_back();
      for (const SettingsNode* child = from->firstChild(); child != nullptr;
           child = child->nextSibling()) {
        Loom::SmartPtr<Loom::Dom::Node> item = Loom::Dom::createNode(kItemElement);
        if (!item) throw std::bad_alloc();
        SetText(*item, kKeyAttribute, kKeyBytesAttribute, child->key(), true);
        SetText(*item, kValueAttribute, kValueBytesAttribute, child->value(), false);
        pending.emplace_back(child, item.get());
        to->children().append(std::move(item));
      }
    }
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
  return settings;
}

bool SettingsFromDom(Loom::Dom::Node& root, SettingsNode& target) {
  return BuildSettings<DomReader>(&root, target);
}

bool SettingsFromXml(const pugi::xml_node& root, SettingsNode& target) {
  return BuildSettings<PugiReader>(root, target);
}

}  // namespace refhost
