#include "refhost/xml_text.h"

#include <utf8.h>

#include <algorithm>
#include <array>
#include <cstdio>

#include "refhost/text.h"

namespace refhost {
namespace {

struct CodeRange {
  char32_t first;
  char32_t last;
};

// XML 1.0 (fifth edition) NameStartChar; NameChar adds kNameOnlyRanges.
constexpr std::array kNameStartRanges = {
    CodeRange{':', ':'},         CodeRange{'A', 'Z'},       CodeRange{'_', '_'},
    CodeRange{'a', 'z'},         CodeRange{0xC0, 0xD6},     CodeRange{0xD8, 0xF6},
    CodeRange{0xF8, 0x2FF},      CodeRange{0x370, 0x37D},   CodeRange{0x37F, 0x1FFF},
    CodeRange{0x200C, 0x200D},   CodeRange{0x2070, 0x218F}, CodeRange{0x2C00, 0x2FEF},
    CodeRange{0x3001, 0xD7FF},   CodeRange{0xF900, 0xFDCF}, CodeRange{0xFDF0, 0xFFFD},
    CodeRange{0x10000, 0xEFFFF},
};
constexpr std::array kNameOnlyRanges = {
    CodeRange{'-', '.'},     CodeRange{'0', '9'},       CodeRange{0xB7, 0xB7},
    CodeRange{0x300, 0x36F}, CodeRange{0x203F, 0x2040},
};
// XML 1.0 Char.
constexpr std::array kCharRanges = {
    CodeRange{0x9, 0xA},       CodeRange{0xD, 0xD},          CodeRange{0x20, 0xD7FF},
    CodeRange{0xE000, 0xFFFD}, CodeRange{0x10000, 0x10FFFF},
};

template <std::size_t N>
bool InRanges(char32_t c, const std::array<CodeRange, N>& ranges) {
  return std::any_of(ranges.begin(), ranges.end(),
                     [c](const CodeRange& r) { return c >= r.first && c <= r.last; });
}

// The code points of `text`; a lone surrogate comes out as itself (which no test passes).
template <class Visit>
void ForEachCodePoint(std::u16string_view text, const Visit& visit) {
  for (std::size_t i = 0; i < text.size(); ++i) {
    char32_t c = text[i];
    if (c >= 0xD800 && c <= 0xDBFF && i + 1 < text.size() && text[i + 1] >= 0xDC00 &&
        text[i + 1] <= 0xDFFF) {
      c = 0x10000 + ((c - 0xD800) << 10) + (text[++i] - 0xDC00);
    }
    if (!visit(c)) return;
  }
}

std::string CodePointName(char32_t c) {
  char text[16];
  std::snprintf(text, sizeof text, "U+%04X", static_cast<unsigned>(c));
  return text;
}

void CheckName(std::u16string_view name, const char* what) {
  if (name.empty()) throw XmlWriteError(std::string(what) + " name is empty");
  bool first = true;
  ForEachCodePoint(name, [&](char32_t c) {
    if (!InRanges(c, kNameStartRanges) && (first || !InRanges(c, kNameOnlyRanges))) {
      throw XmlWriteError(std::string(what) + " name holds " + CodePointName(c) +
                          ", which an XML name cannot");
    }
    first = false;
    return true;
  });
}

void CheckText(std::u16string_view text) {
  ForEachCodePoint(text, [](char32_t c) {
    if (!InRanges(c, kCharRanges)) {
      throw XmlWriteError("attribute value holds " + CodePointName(c) + ", which XML cannot carry");
    }
    return true;
  });
}

pugi::xml_node FirstElementFrom(pugi::xml_node node) {
  while (node && node.type() != pugi::node_element) node = node.next_sibling();
  return node;
}

bool TooManyAttributes(pugi::xml_node node) {
  int count = 0;
  for (pugi::xml_attribute a = node.first_attribute(); a; a = a.next_attribute()) {
    if (++count > kMaxAttributes) return true;
  }
  return false;
}

// The first element nested deeper than `maxDepth` below (and counting) `root`, or with
// more than kMaxAttributes attributes, or null; `deep` tells which. Walks by the tree's
// own links, so any depth is fine.
pugi::xml_node FirstBeyondLimits(pugi::xml_node root, int maxDepth, bool& deep) {
  pugi::xml_node node = root;
  int depth = 1;
  while (true) {
    deep = depth > maxDepth;
    if (deep || TooManyAttributes(node)) return node;
    if (pugi::xml_node child = FirstElementFrom(node.first_child())) {
      node = child;
      ++depth;
      continue;
    }
    while (node != root && !FirstElementFrom(node.next_sibling())) {
      node = node.parent();
      --depth;
    }
    if (node == root) return pugi::xml_node();
    node = FirstElementFrom(node.next_sibling());
  }
}

std::string DepthFault(int maxDepth) {
  return "elements nested deeper than " + std::to_string(maxDepth) + " levels";
}

struct StringWriter final : pugi::xml_writer {
  void write(const void* data, std::size_t size) override {
    text.append(static_cast<const char*>(data), size);
  }
  std::string text;
};

}  // namespace

bool ParseXmlText(std::string_view xml, pugi::xml_document& document, int maxDepth,
                  std::string& error, int& line) {
  // Checked up front so that a bad byte is a parse error with a line, not an exception
  // from the UTF-16 conversion of a name or value.
  const auto invalid = utf8::find_invalid(xml.begin(), xml.end());
  if (invalid != xml.end()) {
    error = "invalid UTF-8";
    line = LineAt(xml, invalid - xml.begin());
    return false;
  }
  const pugi::xml_parse_result result =
      document.load_buffer(xml.data(), xml.size(), pugi::parse_default, pugi::encoding_utf8);
  if (!result) {
    error = result.description();
    line = LineAt(xml, result.offset);
    return false;
  }
  bool deep = false;
  if (const pugi::xml_node beyond =
          FirstBeyondLimits(document.document_element(), maxDepth, deep)) {
    error = deep ? DepthFault(maxDepth)
                 : "an element with more than " + std::to_string(kMaxAttributes) + " attributes";
    line = LineAt(xml, beyond.offset_debug());
    document.reset();
    return false;
  }
  return true;
}

bool XmlCanCarry(std::string_view text) {
  if (!utf8::is_valid(text.begin(), text.end())) return false;
  for (auto it = text.begin(); it != text.end();) {
    if (!InRanges(static_cast<char32_t>(utf8::unchecked::next(it)), kCharRanges)) return false;
  }
  return true;
}

pugi::xml_node AppendCheckedElement(pugi::xml_node parent, std::u16string_view name, int depth) {
  if (depth > kMaxXmlDepth) throw XmlWriteError(DepthFault(kMaxXmlDepth));
  CheckName(name, "element");
  return parent.append_child(Utf8(name).c_str());
}

void AppendCheckedAttribute(pugi::xml_node element, std::u16string_view name,
                            std::u16string_view value) {
  CheckName(name, "attribute");
  CheckText(value);
  element.append_attribute(Utf8(name).c_str()).set_value(Utf8(value).c_str());
}

std::string SaveXmlText(const pugi::xml_document& document) {
  StringWriter writer;
  document.save(writer, "  ", pugi::format_default, pugi::encoding_utf8);
  return std::move(writer.text);
}

}  // namespace refhost
