// A settings tree and its stored document: both directions walk with a work list.
#include <cstring>
#include <new>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "refhost/settings_build.h"
#include "refhost/settings_form.h"
#include "refhost/settings_tree.h"
#include "refhost/text.h"
#include "refhost/xml_text.h"

namespace refhost {
namespace {

constexpr char kEscape = '%';

int HexDigit(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  return -1;
}

}  // namespace

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

namespace {

// An empty value is written as no attribute at all; a key always is written, so that an
// item with the empty key is still found by its key.
void SetText(Loom::Dom::Node& node, const FormName& plain, const FormName& escaped,
             const Loom::string& text, bool writeEmpty) {
  if (text.empty() && !writeEmpty) return;
  if (XmlCanCarry(text)) {
    node.attributes().set(plain.wide, Utf16(text));
  } else {
    node.attributes().set(escaped.wide, EscapeBytes(text));
  }
}

// What the build reads of a stored document in the host's DOM (UTF-16 names and values).
struct DomReader {
  using Element = Loom::Dom::Node*;

  static bool Is(Element element, const FormName& name) { return element->getName() == name.wide; }
  static Loom::string Text(Element element, const FormName& plain, const FormName& escaped) {
    Loom::Dom::AttributeMap& attributes = element->attributes();
    if (attributes.contains(escaped.wide)) return UnescapeBytes(Utf8(attributes[escaped.wide]));
    return Loom::string(Utf8(attributes[plain.wide]));
  }
  static bool HasChildren(Element element) { return element->children().getNumChildren() > 0; }
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

  static bool Is(Element element, const FormName& name) {
    return std::strcmp(element.name(), name.narrow) == 0;
  }
  // pugixml keeps an attribute given twice twice; the host's DOM keeps the later value,
  // and so does this, so both readers build the same tree from the same text.
  static Loom::string Text(Element element, const FormName& plain, const FormName& escaped) {
    const char* text = "";
    const char* bytes = nullptr;
    for (const pugi::xml_attribute attribute : element.attributes()) {
      const std::string_view name = attribute.name();
      if (name == escaped.narrow) bytes = attribute.value();
      if (name == plain.narrow) text = attribute.value();
    }
    return bytes != nullptr ? UnescapeBytes(bytes) : Loom::string(text);
  }
  static bool HasChildren(Element element) { return element.first_child(); }
  template <class Visit>
  static void ForEachChild(Element element, const Visit& visit) {
    for (const pugi::xml_node child : element.children()) {
      if (child.type() == pugi::node_element) visit(child);
    }
  }
};

// The one build of a tree from a stored document, whichever reader holds it. Each pair's
// items are appended in document order when it is taken, so the order in which the pairs
// are taken does not matter: the build's index pass merges items of one key.
template <class Reader>
bool BuildSettings(typename Reader::Element root, SettingsNode& target) {
  if (!Reader::Is(root, kSettingsElement)) return false;
  SettingsBuild build(target);
  build.setValue(Reader::Text(root, kValueAttribute, kValueBytesAttribute));
  std::vector<std::pair<typename Reader::Element, SettingsNode*>> pending{{root, &target}};
  while (!pending.empty()) {
    // Named apart, not bound: clang 14 cannot capture a structured binding.
    const typename Reader::Element from = pending.back().first;
    SettingsNode* const to = pending.back().second;
    pending.pop_back();
    Reader::ForEachChild(from, [&](typename Reader::Element item) {
      if (!Reader::Is(item, kItemElement)) return;
      SettingsNode& node =
          build.append(*to, Reader::Text(item, kKeyAttribute, kKeyBytesAttribute),
                       Reader::Text(item, kValueAttribute, kValueBytesAttribute));
      if (Reader::HasChildren(item)) pending.emplace_back(item, &node);
    });
  }
  build.finish();
  return true;
}

}  // namespace

Loom::SmartPtr<Loom::Dom::Node> SettingsToDom(const SettingsNode& root) {
  Loom::SmartPtr<Loom::Dom::Node> settings = Loom::Dom::createNode(kSettingsElement.wide);
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
        Loom::SmartPtr<Loom::Dom::Node> item = Loom::Dom::createNode(kItemElement.wide);
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
